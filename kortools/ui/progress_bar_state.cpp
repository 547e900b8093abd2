// SPDX-License-Identifier: MIT
#include "kortools/ui/progress_bar_state.h"

#include "kortools/platform/wrap.h"

#include <algorithm>
#include <cmath>
#include <limits>

using kortools::platform::wrap_add;
using kortools::platform::wrap_subtract;

namespace kortools::ui {
namespace {

// Truncates; what an int cannot hold becomes the nearest number that it can, no number 0.
int to_int(float value)
{
    constexpr float limit = 2147483648.0F; // 2^31, the first that is too large
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<int>::max();
    return value < -limit ? std::numeric_limits<int>::min() : static_cast<int>(value);
}

// `high` may be 0, though no caller should say so: everything is then the same small part.
long long get_part(int pos, int high)
{
    return 100LL * pos / (high != 0 ? high : std::numeric_limits<int>::max());
}

} // namespace

void ProgressBarState::set_range(int low, int high, long long now)
{
    m_start = now;
    if (high == low)
        high = wrap_add(low, 1);
    if (low == m_low && high == m_high)
        return;
    m_low = low;
    m_high = high;
    move_to(-1);
}

int ProgressBarState::limit(int pos, long long now)
{
    int const low = m_low;
    int const high = m_high;
    int const limited = pos < low ? low : std::min(pos, high);
    if (pos < low || limited == low)
        m_start = now;
    return limited;
}

bool ProgressBarState::is_visible_move(int pos) const
{
    int const high = m_high;
    int const step = m_step;
    return get_part(pos, high) / step != get_part(m_pos, high) / step;
}

void ProgressBarState::move_to(int pos)
{
    m_pos = pos;
    m_has_changed = true;
}

int ProgressBarState::get_percent() const
{
    return static_cast<int>(std::clamp(get_part(m_pos, m_high), 0LL, 100LL));
}

int ProgressBarState::push_sub_range(int step_count)
{
    SubRange added;
    if (m_sub_ranges.IsEmpty()) {
        added.start = m_pos;
        added.end = m_next_step_count != 0 ? wrap_add(m_pos, m_next_step_count) : int(m_high);
        added.scale = (static_cast<float>(added.end) - static_cast<float>(added.start))
            / static_cast<float>(step_count);
    } else {
        SubRange const &top = m_sub_ranges[m_sub_ranges.GetUpperBound()];
        added.start
            = to_int(static_cast<float>(top.pos) * top.scale + static_cast<float>(top.start));
        float const span = top.next_step_count != 0
            ? static_cast<float>(top.next_step_count) * top.scale
            : top.scale;
        float const end = static_cast<float>(added.start) + span;
        added.end = to_int(end);
        added.scale = (end - static_cast<float>(added.start)) / static_cast<float>(step_count);
    }
    return m_sub_ranges.Add(added);
}

int ProgressBarState::enter_step(int pos)
{
    SubRange &top = m_sub_ranges[m_sub_ranges.GetUpperBound()];
    top.pos = pos;
    return wrap_add(to_int(static_cast<float>(pos) * top.scale), top.start);
}

// Too large a count is cut by the count itself, not by the position: kept as it has always been.
void ProgressBarState::set_next_step_count(int count)
{
    if (m_sub_ranges.IsEmpty()) {
        bool const is_beyond = static_cast<long long>(m_pos) + count > m_high;
        m_next_step_count = is_beyond ? wrap_subtract(m_high, count) : count;
        return;
    }
    SubRange &top = m_sub_ranges[m_sub_ranges.GetUpperBound()];
    float const span = static_cast<float>(count) * top.scale;
    bool const is_beyond = to_int(static_cast<float>(top.pos) + span) > top.end;
    top.next_step_count = is_beyond ? to_int(static_cast<float>(top.end) - span) : count;
}

void ProgressBarState::drop_sub_range()
{
    cut_sub_ranges(m_sub_ranges.GetUpperBound());
    if (m_sub_ranges.IsEmpty()) {
        m_next_step_count = m_pos > m_high ? int(m_high) : 0;
        return;
    }
    SubRange &top = m_sub_ranges[m_sub_ranges.GetUpperBound()];
    top.next_step_count = top.pos > top.end ? top.end : 0;
}

void ProgressBarState::cut_sub_ranges(int count)
{
    m_sub_ranges.SetSize(count);
}

} // namespace kortools::ui
