// SPDX-License-Identifier: MIT
// What is painted when, and every pixel of it, which a slow model says one by one.
#include "tests/ui/battery.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

using namespace kor_test;
using kortools::ui::HatchPattern;
using kortools::ui::Pen;
using kortools::ui::Picture;

namespace {

unsigned int rgb(CRGBColor const &color)
{
    return static_cast<unsigned int>(color.GetRGB()) & 0xFFFFFFU;
}

// One call, and the colour that it gives a pixel.
struct Operation {
    std::string name;
    std::function<void(CDC &)> draw;
    std::function<std::optional<CRGBColor>(CXPoint const &)> model;
};

class Scene {
public:
    explicit Scene(unsigned seed)
        : m_random(seed)
    {
        m_picture.size = { 9, 7 };
        for (int i = 0; i < 63; ++i)
            m_picture.pixels.emplace_back(pick(0, 255), pick(0, 255), pick(0, 255), pick(0, 255));
    }
    void add_all(int count)
    {
        for (int i = 0; i < count; ++i)
            add(i);
    }
    void draw(CDC &dc) const
    {
        for (Operation const &operation : m_operations)
            operation.draw(dc);
    }

    // What is wrong in a picture, inside a rectangle.
    std::string compare(Picture const &picture, Picture const &before, CXRect const &rect) const
    {
        for (int y = 0; y < picture.size.cy; ++y) {
            for (int x = 0; x < picture.size.cx; ++x) {
                CRGBColor color = before.at(x, y);
                std::string name = "nothing";
                for (Operation const &operation : m_operations) {
                    auto const drawn = operation.model({ x, y });
                    if (!drawn || !rect.PtInRect({ x, y }))
                        continue;
                    color = *drawn;
                    name = operation.name;
                }
                if (rgb(picture.at(x, y)) != rgb(color))
                    return line("at", x, y, std::hex, rgb(picture.at(x, y)), "is not", rgb(color),
                        "as drawn by", name);
            }
        }
        return {};
    }

private:
    int pick(int low, int high) { return std::uniform_int_distribution(low, high)(m_random); }
    void add(int kind)
    {
        CRGBColor const color(pick(0, 255), pick(0, 255), pick(0, 255));
        CXRect const rect(
            CXPoint(pick(-30, 180), pick(-30, 130)), CXSize(pick(1, 70), pick(1, 70)));
        std::string const shown = testing::PrintToString(rect);
        auto const on_edge = [rect](CXPoint const &at) {
            CXRect inner = rect;
            inner.DeflateRect(1, 1);
            return rect.PtInRect(at) && !inner.PtInRect(at);
        };
        if (kind % 4 == 0) {
            m_operations.push_back({ "fill " + shown, [=](CDC &dc) { dc.FillRect(rect, color); },
                [=](CXPoint const &at) { return keep(color, rect.PtInRect(at)); } });
        } else if (kind % 4 == 1) {
            HatchPattern const pattern { 0x01, 0x82, 0x44, 0x28, 0x13, 0xFF, 0, 0x80 };
            auto const is_set = [=](CXPoint const &at) {
                return rect.PtInRect(at)
                    && (pattern[std::size_t(at.y % 8)] >> (7 - at.x % 8) & 1) != 0;
            };
            m_operations.push_back(
                { "pattern " + shown, [=](CDC &dc) { dc.FillPattern(rect, pattern, color); },
                    [=](CXPoint const &at) { return keep(color, is_set(at)); } });
        } else if (kind % 4 == 2) {
            m_operations.push_back({ "frame " + shown,
                [=](CDC &dc) {
                    dc.DrawFrame(rect, { color, Pen::Line::Solid });
                },
                [=](CXPoint const &at) { return keep(color, on_edge(at)); } });
        } else {
            add_pixels(rect);
        }
    }
    static std::optional<CRGBColor> keep(CRGBColor const &color, bool is_drawn)
    {
        return is_drawn ? std::optional(color) : std::nullopt;
    }
    void add_pixels(CXRect const &rect)
    {
        CXPoint const corner(pick(0, 8), pick(0, 6));
        CXRect const part(corner, CXSize(pick(1, 9 - corner.x), pick(1, 7 - corner.y)));
        auto const model = [=, this](CXPoint const &at) -> std::optional<CRGBColor> {
            if (!rect.PtInRect(at))
                return std::nullopt;
            double const x = (at.x - rect.left + 0.5) * part.Width() / rect.Width();
            double const y = (at.y - rect.top + 0.5) * part.Height() / rect.Height();
            return m_picture.at(part.left + int(x), part.top + int(y));
        };
        m_operations.push_back(
            { "pixels " + testing::PrintToString(rect) + testing::PrintToString(part),
                [=, this](CDC &dc) { dc.DrawPixels(rect, m_picture.view(), part); }, model });
    }

    std::mt19937 m_random;
    std::vector<Operation> m_operations;
    Picture m_picture;
};

class Painting : public Windows {
protected:
    // What there is to see after `draw` drew the whole view, on white.
    template <class Draw> Picture paint(Draw const &draw)
    {
        recorder.draw = [&](CDC &dc, CXRect const &) {
            dc.FillRect({ 0, 0, 2000, 2000 }, CRGBColor(255, 255, 255));
            draw(dc);
        };
        view().Invalidate(true);
        settle();
        recorder.draw = {};
        return frame->CaptureView();
    }
    Picture paint_white()
    {
        return paint([](CDC &) {});
    }
    static std::vector<CXPoint> find_changes(Picture const &one, Picture const &other)
    {
        std::vector<CXPoint> changes;
        EXPECT_EQ(one.size, other.size);
        for (int y = 0; y < one.size.cy; ++y) {
            for (int x = 0; x < one.size.cx; ++x) {
                if (rgb(one.at(x, y)) != rgb(other.at(x, y)))
                    changes.emplace_back(x, y);
            }
        }
        return changes;
    }
};

} // namespace

TEST_F(Painting, HappensOnceForWhatIsInvalid)
{
    using Rects = std::vector<CXRect>;
    auto const take = [this] { return std::exchange(recorder.paints, {}); };
    settle();
    EXPECT_EQ(take(), Rects {});
    view().InvalidateRect({ 10, 20, 30, 40 }, true);
    view().InvalidateRect({ 50, 5, 60, 31 }, false);
    settle();
    EXPECT_EQ(take(), (Rects { { 10, 5, 60, 40 } }));
    view().InvalidateRect({ -10, -20, 31, 4000 }, false);
    view().UpdateWindow();
    EXPECT_EQ(take(), (Rects { { 0, 0, 31, 200 } }));
    view().UpdateWindow();
    view().InvalidateRect({ 300, 0, 310, 10 }, true);
    view().InvalidateRect({ 7, 7, 7, 20 }, true);
    settle();
    EXPECT_EQ(take(), Rects {});
    view().Invalidate(false);
    settle();
    EXPECT_EQ(take(), (Rects { { 0, 0, 300, 200 } }));
    view().SetRedraw(false);
    view().Invalidate(true);
    view().UpdateWindow();
    settle();
    EXPECT_EQ(take(), Rects {});
    view().SetRedraw(true);
    view().Invalidate(true);
    settle();
    EXPECT_EQ(take(), (Rects { { 0, 0, 300, 200 } }));
}

TEST_F(Painting, SetsExactlyThePixelsOfTheModel)
{
    Picture const white = paint_white();
    for (unsigned seed = 0; seed < 6; ++seed) {
        Scene scene(seed);
        scene.add_all(24);
        Picture const all = paint([&](CDC &dc) { scene.draw(dc); });
        EXPECT_EQ(scene.compare(all, white, { 0, 0, 300, 200 }), "") << seed;

        Scene other(seed + 100); // in a part only
        other.add_all(24);
        recorder.draw = [&](CDC &dc, CXRect const &) { other.draw(dc); };
        recorder.paints.clear();
        view().InvalidateRect({ 40, 30, 121, 93 }, false);
        settle();
        recorder.draw = {};
        ASSERT_EQ(recorder.paints.size(), 1U);
        EXPECT_EQ(other.compare(frame->CaptureView(), all, recorder.paints[0]), "") << seed;
    }
}

TEST_F(Painting, DrawsLinesThroughTheNearestPixels)
{
    Picture const white = paint_white();
    CXPoint const ends[] = { { 10, 10 }, { 60, 10 }, { 60, 90 }, { 99, 10 }, { 41, 53 }, { 3, 3 } };
    for (CXPoint const &from : ends) {
        for (CXPoint const &to : ends) {
            for (Pen::Line const kind : { Pen::Line::Solid, Pen::Line::Dotted }) {
                SCOPED_TRACE(testing::PrintToString(from) + testing::PrintToString(to));
                Picture const drawn = paint([&](CDC &dc) {
                    dc.DrawLine(from, to, { CRGBColor(0, 0, 99), kind });
                });
                auto const changed = find_changes(white, drawn);
                CXSize const way = to - from;
                int const length = std::max(std::abs(way.cx), std::abs(way.cy));
                if (kind == Pen::Line::Solid) {
                    EXPECT_EQ(changed.size(), std::size_t(length));
                } else {
                    EXPECT_LE(changed.size() * 4, std::size_t(length) * 3 + 8);
                    EXPECT_GE(changed.size() * 4, std::size_t(length));
                }
                for (CXPoint const &at : changed) {
                    CXSize const off = at - from;
                    double const cross = double(off.cx) * way.cy - double(off.cy) * way.cx;
                    EXPECT_LE(std::abs(cross), 0.5001 * length); // half a pixel across
                    EXPECT_NE(at, to);
                    EXPECT_EQ(rgb(drawn.at(at.x, at.y)), rgb(CRGBColor(0, 0, 99)));
                }
            }
        }
    }
    CXRect const rect(20, 30, 61, 72);
    auto const dots = find_changes(white, paint([&](CDC &dc) {
        dc.DrawFrame(rect, { CRGBColor(0, 0, 0), Pen::Line::Dotted });
    }));
    EXPECT_TRUE(dots.size() >= 40 && dots.size() <= 125) << dots.size(); // of 164
    for (CXPoint const &at : dots)
        EXPECT_TRUE(rect.PtInRect(at) && !CXRect(21, 31, 60, 71).PtInRect(at));
}

TEST_F(Painting, WritesTextInItsExtent)
{
    auto const width
        = [this](wchar_t const *text, int length) { return view().GetTextWidth(text, length); };
    EXPECT_EQ(width(L"", 0), 0);
    EXPECT_EQ(width(L"&MMMx", 3), width(L"&MM", 3)); // no more is read, "&" is a letter
    EXPECT_GT(width(L"&MM", 3), width(L"MM", 2));
    EXPECT_GT(width(L"\u00E9\u0416", 2), width(L"\u00E9", 1));
    EXPECT_NEAR(
        width(L"The quick", 9) + width(L" brown fox", 10), width(L"The quick brown fox", 19), 3);
    if (!driver.has_fonts())
        return;
    Picture const white = paint_white();
    auto const write = [&](wchar_t const *text, int length) {
        auto const changes = find_changes(white, paint([&](CDC &dc) {
            dc.DrawString({ 60, 50 }, text, length, CRGBColor(200, 0, 0));
        }));
        int const slack = 2; // letters may hang over
        CXRect const extent(60 - slack, 50 - slack, 60 + width(text, length) + slack, 50 + 40);
        for (CXPoint const &at : changes)
            EXPECT_TRUE(extent.PtInRect(at)) << testing::PrintToString(at);
        return changes.size();
    };
    EXPECT_EQ(write(L"   ", 3), 0U);
    std::size_t const two = write(L"&Mmmm", 2);
    EXPECT_GT(two, 10U);
    EXPECT_GT(write(L"&Mmmm", 5), two);
}

TEST_F(Painting, ShowsARubberBandAboveAll)
{
    recorder.draw = [&](CDC &dc, CXRect const &) {
        dc.FillRect({ 0, 0, 300, 200 }, CRGBColor(255, 255, 255));
        dc.FillRect({ 50, 40, 150, 140 }, CRGBColor(0, 255, 255));
    };
    view().Invalidate(true);
    settle();
    Picture const plain = frame->CaptureView();
    for (CXRect const &band : { CXRect(10, 10, 90, 80), CXRect(30, 20, 200, 180) }) {
        view().ShowRubberBand(band); // replaces the one before
        for (bool const paints_below : { false, true }) {
            if (paints_below)
                view().Invalidate(true);
            settle();
            auto const changed = find_changes(plain, frame->CaptureView());
            EXPECT_GE(changed.size(), std::size_t(band.Width() + band.Height()) / 4);
            CXRect inside = band;
            inside.DeflateRect(3, 3);
            for (CXPoint const &at : changed)
                EXPECT_TRUE(band.PtInRect(at) && !inside.PtInRect(at))
                    << testing::PrintToString(at);
        }
    }
    view().HideRubberBand();
    settle();
    EXPECT_EQ(find_changes(plain, frame->CaptureView()).size(), 0U);
}

TEST_F(Painting, FollowsWhatIsScrolled)
{
    make_frame(ViewKind::Scrolling, { 200, 150 });
    CXPoint pos;
    auto const model = [&](int x, int y) {
        return CRGBColor((x + pos.x) / 10 * 10 % 256, (y + pos.y) / 10 * 10 % 256, 99);
    };
    recorder.draw = [&](CDC &dc, CXRect const &invalid) {
        for (int y = -(pos.y % 10); y < 300; y += 10) {
            for (int x = -(pos.x % 10); x < 300; x += 10) {
                CXRect const tile(x, y, x + 10, y + 10);
                if (!(tile & invalid).IsRectEmpty())
                    dc.FillRect(tile, model(x, y));
            }
        }
    };
    recorder.on_event = [&](std::string const &text) {
        if (text.starts_with("across"))
            pos.x = std::stoi(text.substr(7));
        if (text.starts_with("down to"))
            pos.y = std::stoi(text.substr(8));
    };
    view().GetScrollView()->SetScrollSizes({ 900, 800 }, { 10, 10 });
    settle();
    auto const check = [&] {
        settle();
        Picture const seen = frame->CaptureView();
        int wrong = 0;
        for (int y = 0; y < seen.size.cy; ++y) {
            for (int x = 0; x < seen.size.cx; ++x)
                wrong += rgb(seen.at(x, y)) != rgb(model(x, y));
        }
        EXPECT_EQ(wrong, 0) << testing::PrintToString(pos);
    };
    check();
    pos = { 33, 44 };
    view().GetScrollView()->ScrollToPosition(pos);
    check();
    driver.scroll(*frame, ScrollBar::Vertical, 125);
    driver.scroll(*frame, ScrollBar::Horizontal, 27);
    check();
    EXPECT_EQ(pos, CXPoint(27, 125));
    frame->SetViewSize({ 260, 190 });
    check();
}
