// SPDX-License-Identifier: MIT
#include "kortools/files/compact_path.h"

#include "kortools/files/path_text.h"
#include "kortools/files/text_cut.h"
#include "kortools/platform/shell_paths.h"

#include <algorithm>
#include <atomic>

using namespace kortools::files;

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;
using View = std::wstring_view;

constexpr int length_without_window = 15; // characters
constexpr int window_margin = 10;         // pixels
constexpr View ellipsis = L"...";

std::atomic<WindowMeasure const *> s_measure { nullptr };

// Makes a path narrow enough, by what can be measured of it.
class Compactor {
public:
    Compactor(WindowMeasure const &measure, CWnd *window, int width)
        : m_measure(measure)
        , m_window(window)
        , m_width(width)
    {
    }

    String compact(View path) const
    {
        if (fits(path))
            return to_string(path);
        std::size_t const separator = path.rfind(L'\\');
        bool const has_directory = separator != View::npos;
        View const directory = path.substr(0, has_directory ? separator : 0);
        View const name = path.substr(directory.size());
        if (String const bare = join({}, name, {}); has_directory && fits(bare.GetView()))
            return longest(directory, {}, name);
        View const separators = name.substr(0, has_directory);
        String start = has_directory ? to_string(ellipsis) : String();
        start += separators;
        return longest(name.substr(separators.size()), start.GetView(), {});
    }

private:
    bool fits(View text) const
    {
        return m_measure.get_text_width(m_window, text.data(), static_cast<int>(text.size()))
            <= m_width;
    }

    static String join(View start, View end, View before)
    {
        String text = to_string(before);
        text += start;
        text += ellipsis;
        text += end;
        return text;
    }

    // As many characters of `text` as fit, with "..." behind them, between the other two.
    String longest(View text, View before, View behind) const
    {
        std::size_t least = 0;
        for (std::size_t most = text.size(); least < most;) {
            std::size_t const middle = (least + most + 1) / 2;
            if (fits(join(text.substr(0, middle), behind, before).GetView()))
                least = middle;
            else
                most = middle - 1;
        }
        return join(cut_text(text, static_cast<long long>(least)), behind, before);
    }

    WindowMeasure const &m_measure;
    CWnd *m_window;
    int m_width; // pixels
};

} // namespace

WindowMeasure const *kortools::files::set_window_measure(WindowMeasure const *measure)
{
    return s_measure.exchange(measure);
}

CXTString<wchar_t> fileCompactPath(CXTString<wchar_t> const &name, int maxLength)
{
    if (name.GetLength() <= maxLength)
        return name;
    std::wstring_view const path = view_of(name);
    String result = to_string(path.substr(0, platform::strip_to_root(path).length));
    fileSlashTerminate(result);
    result += ellipsis;
    result += cut_front(path, std::max(maxLength, 10) - 3);
    return result;
}

CXTString<wchar_t> fileCompactPath(CXTString<wchar_t> const &name, CWnd *window, int width)
{
    WindowMeasure const *const measure = s_measure.load();
    if (window == nullptr || measure == nullptr)
        return fileCompactPath(name, length_without_window);
    int const room = width != 0 ? width : measure->get_client_width(window) - window_margin;
    View const shown = cut_text(view_of(name), platform::max_path_units - 1);
    return Compactor(*measure, window, room).compact(shown);
}
