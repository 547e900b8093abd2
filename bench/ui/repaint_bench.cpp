// SPDX-License-Identifier: MIT
// What it takes to show a picture of 4096 x 4096 pixels anew while it is scrolled by a little, by a
// page, and zoomed, in a view of the Qt back end, in a QGraphicsView and in a label within a
// QScrollArea. Off screen: what the window system adds is the same for all.
#include "kortools/graphics/kor_coord.h"
#include "kortools/ui/back_end.h"
#include "kortools/ui/qt/back_end.h"

#include <QApplication>
#include <QGraphicsPixmapItem>
#include <QGraphicsView>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <random>

using namespace kortools::ui;

namespace {

constexpr int picture_size = 4096;
constexpr CXSize view_size(1280, 800);

Picture const &get_picture()
{
    static Picture const picture = [] {
        Picture made { {}, { picture_size, picture_size } };
        std::mt19937 random(1);
        made.pixels.reserve(std::size_t(picture_size) * picture_size);
        for (int i = 0; i < picture_size * picture_size; ++i)
            made.pixels.emplace_back(static_cast<unsigned long>(random() & 0xFFFFFFU));
        return made;
    }();
    return picture;
}

QPixmap make_pixmap()
{
    QImage image(picture_size, picture_size, QImage::Format_RGB32);
    for (int y = 0; y < picture_size; ++y) {
        auto *const row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < picture_size; ++x) {
            CRGBColor const &color = get_picture().at(x, y);
            row[x] = qRgb(color[0], color[1], color[2]);
        }
    }
    return QPixmap::fromImage(image);
}

BackEnd &get_back_end()
{
    static BackEnd &back_end = []() -> BackEnd & {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return qt::install_back_end();
    }();
    return back_end;
}

void paint_now(QWidget &widget)
{
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(widget.window(), &request);
}

void show(QWidget &widget)
{
    widget.resize(view_size.cx, view_size.cy);
    widget.show();
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

// As a program shows a picture.
class KorView : public WindowHandler {
public:
    KorView()
        : m_frame(get_back_end().CreateViewFrame(*this, ViewKind::Scrolling, L"A picture"))
    {
        m_frame->SetViewSize(view_size);
        m_coord.Init(&m_frame->GetView(), get_picture().size);
        m_frame->Show(true);
        for (int i = 0; i < 3; ++i)
            get_back_end().PumpMessages();
    }
    void OnSize(CXSize const &client) override { m_coord.ClientSizeChange(client); }
    void OnPaint(CDC &dc, CXRect const &) override
    {
        m_coord.EraseBackground(&dc, 0x808080, 0);
        CRect part;
        m_coord.GetVisDoc(part);
        CRect target = part;
        m_coord.DocToViewport(target);
        dc.DrawPixels(target, get_picture().view(), part);
    }
    void scroll_to(CXPoint const &position)
    {
        CSize distance = CSize(position) - m_coord.GetScrollPos();
        m_coord.Scroll(distance);
    }
    void zoom(double zoom) { m_coord.SetZoom(static_cast<float>(zoom), 0); }
    void paint() { m_frame->GetView().UpdateWindow(); }
    QWidget &get_client() { return *qt::get_widget(m_frame->GetView()); }

private:
    std::unique_ptr<ViewFrame> m_frame;
    CKorCoord m_coord;
};

class GraphicsView {
public:
    GraphicsView()
    {
        get_back_end();
        m_scene.addPixmap(make_pixmap());
        m_view.setScene(&m_scene);
        m_view.setFrameShape(QFrame::NoFrame);
        m_view.setAlignment(Qt::AlignLeft | Qt::AlignTop);
        m_view.setTransformationAnchor(QGraphicsView::NoAnchor); // the origin stays, as elsewhere
        show(m_view);
    }
    void scroll_to(CXPoint const &position)
    {
        m_view.horizontalScrollBar()->setValue(position.x);
        m_view.verticalScrollBar()->setValue(position.y);
    }
    void zoom(double zoom) { m_view.setTransform(QTransform::fromScale(zoom, zoom)); }
    void paint() { paint_now(m_view); }
    QWidget &get_client() { return *m_view.viewport(); }

private:
    QGraphicsScene m_scene;
    QGraphicsView m_view;
};

class ScrollArea {
public:
    ScrollArea()
    {
        get_back_end();
        m_label = new QLabel;
        m_label->setPixmap(make_pixmap());
        m_label->setScaledContents(true);
        m_area.setWidget(m_label);
        m_area.setFrameShape(QFrame::NoFrame);
        show(m_area);
    }
    void scroll_to(CXPoint const &position)
    {
        m_area.horizontalScrollBar()->setValue(position.x);
        m_area.verticalScrollBar()->setValue(position.y);
    }
    void zoom(double zoom)
    {
        m_label->resize(
            static_cast<int>(picture_size * zoom), static_cast<int>(picture_size * zoom));
    }
    void paint() { paint_now(m_area); }
    QWidget &get_client() { return *m_area.viewport(); }

private:
    QScrollArea m_area;
    QLabel *m_label;
};

// Whether the picture is where it was scrolled to.
template <class View> bool shows(View &view, CXPoint const &position)
{
    QImage const seen = view.get_client().grab().toImage();
    for (int const at : { 0, 333, 700 }) {
        CRGBColor const &color = get_picture().at(position.x + at, position.y + at);
        if (seen.pixel(at, at) != qRgb(color[0], color[1], color[2]))
            return false;
    }
    return true;
}

template <class View> void scroll(benchmark::State &state, int step)
{
    View view;
    CXPoint position;
    int direction = step;
    for (auto _ : state) {
        position += CXPoint(direction, direction);
        if (position.x + direction < 0 || position.x + direction > 2500)
            direction = -direction;
        view.scroll_to(position);
        view.paint();
    }
    if (!shows(view, position))
        state.SkipWithError("shows something else");
}

template <class View> void zoom(benchmark::State &state, double one, double other)
{
    View view;
    bool is_other = false;
    for (auto _ : state) {
        is_other = !is_other;
        view.zoom(is_other ? other : one);
        view.paint();
    }
    view.zoom(1);
    if (!shows(view, {}))
        state.SkipWithError("shows something else");
}

template <class View> void scroll_a_little(benchmark::State &state)
{
    scroll<View>(state, 16);
}

template <class View> void scroll_a_page(benchmark::State &state)
{
    scroll<View>(state, 1250);
}

template <class View> void zoom_in(benchmark::State &state)
{
    zoom<View>(state, 2, 3);
}

template <class View> void zoom_out(benchmark::State &state)
{
    zoom<View>(state, 0.5, 0.4);
}

#define REPAINT(function, name, view, library)                                                     \
    BENCHMARK(function<view>)->Name(name "/" library)->Unit(benchmark::kMicrosecond)

REPAINT(scroll_a_little, "scroll by 16 pixels", KorView, "KorTools");
REPAINT(scroll_a_little, "scroll by 16 pixels", GraphicsView, "QGraphicsView");
REPAINT(scroll_a_little, "scroll by 16 pixels", ScrollArea, "QScrollArea");
REPAINT(scroll_a_page, "scroll by a page", KorView, "KorTools");
REPAINT(scroll_a_page, "scroll by a page", GraphicsView, "QGraphicsView");
REPAINT(scroll_a_page, "scroll by a page", ScrollArea, "QScrollArea");
REPAINT(zoom_out, "zoom 1/2 and 2/5", KorView, "KorTools");
REPAINT(zoom_out, "zoom 1/2 and 2/5", GraphicsView, "QGraphicsView");
REPAINT(zoom_out, "zoom 1/2 and 2/5", ScrollArea, "QScrollArea");

// A label would make the whole picture larger first.
REPAINT(zoom_in, "zoom 2 and 3", KorView, "KorTools");
REPAINT(zoom_in, "zoom 2 and 3", GraphicsView, "QGraphicsView");

} // namespace

BENCHMARK_MAIN();
