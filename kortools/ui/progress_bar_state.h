// SPDX-License-Identifier: MIT
// What a progress bar stands at, without its window: range, position, and the sub-ranges that map
// the steps of a part of an operation onto a part of the bar.
//
// One thread reports (everything that changes the state), another may read the numbers meanwhile to
// show them. Each number is whole, but they are not read as of one instant: the next tick of the
// display corrects what does not fit.
#pragma once

#include "kortools/archive/archive.h"
#include "kortools/core/array.h"

#include <atomic>

namespace kortools::ui {

// A value that one thread may write while another reads it.
template <class T> class Shared {
public:
    Shared(T value)
        : m_value(value)
    {
    }
    operator T() const { return m_value.load(std::memory_order_relaxed); }
    Shared &operator=(T value)
    {
        m_value.store(value, std::memory_order_relaxed);
        return *this;
    }
    T exchange(T value) { return m_value.exchange(value, std::memory_order_relaxed); }

private:
    std::atomic<T> m_value;
};

class ProgressBarState {
public:
    // The bar's clock starts at `now` (milliseconds). A range of no width is made one unit wide;
    // one that changes leaves the bar without a position (-1).
    void set_range(int low, int high, long long now);

    int get_pos() const { return m_pos; }
    int get_step() const { return m_step; }
    long long get_start() const { return m_start; } // of the clock, in milliseconds

    void set_step(int step) { m_step = step != 0 ? step : 1; }

    // The position within the range. At its lower end the clock starts again.
    int limit(int pos, long long now);

    // Would this position show? Bars move in steps of `step` per cent of `high`.
    bool is_visible_move(int pos) const;

    void move_to(int pos); // as it is: limited by limit(), or not at all
    void move_by(int delta) { move_to(static_cast<int>(static_cast<unsigned>(m_pos) + delta)); }

    // Has the position changed since the last call?
    bool take_change() { return m_has_changed.exchange(false); }

    // Per cent of `high`, 0 to 100.
    int get_percent() const;

    // --- Sub-ranges, a stack

    int get_sub_range_count() const { return m_sub_ranges.GetSize(); }

    // The topmost sub-range gets `step_count` steps on the part of the bar that the next step(s) of
    // the one below, or of the bar, stand for. Returns its index.
    int push_sub_range(int step_count);

    // Remembers the position in steps, and returns the one of the bar. There must be a sub-range.
    int enter_step(int pos);

    // How many steps the next sub-range is to cover.
    void set_next_step_count(int count);

    // Throws CXInvalidArgException for a negative index.
    int get_end(int index) const { return m_sub_ranges[index].end; }

    void drop_sub_range();          // the topmost one; there must be one
    void cut_sub_ranges(int count); // to so many

private:
    struct SubRange {
        int start = 0;           // position of the bar
        int pos = 0;             // in steps
        int end = 0;             // position of the bar
        float scale = 0;         // units of the bar for a step
        int next_step_count = 0; // of the sub-range above; 0: one step
    };

    Shared<int> m_low { 0 };
    Shared<int> m_high { 100 };
    Shared<int> m_pos { -1 };
    Shared<int> m_step { 1 }; // never 0
    Shared<long long> m_start { 0 };
    Shared<bool> m_has_changed { false };

    // Of the reporting thread.
    CXArray<SubRange> m_sub_ranges; // the last one is the topmost
    int m_next_step_count = 0;      // units of the bar; 0: up to its end
};

} // namespace kortools::ui
