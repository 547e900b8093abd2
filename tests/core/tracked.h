// SPDX-License-Identifier: MIT
// A value that counts its objects and its steps, and throws at a chosen step.
#pragma once

#include <climits>
#include <ostream>
#include <utility>

struct StepFailure { };

inline int s_alive = 0;
inline int s_copies = 0;
inline int s_steps_left = INT_MAX; // steps until one throws

inline void count_step()
{
    if (--s_steps_left < 0) {
        s_steps_left = INT_MAX;
        throw StepFailure();
    }
}

// Whether it moves without throwing, moves with the risk of throwing, or only copies.
enum class Moving { Safe, Throwing, None };

template <Moving moving> class Tracked {
public:
    Tracked(int value = 0)
        : m_value(value)
    {
        count_step();
        ++s_alive;
    }
    Tracked(Tracked const &other)
        : Tracked(other.m_value)
    {
        ++s_copies;
    }
    Tracked(Tracked &&other) noexcept(moving == Moving::Safe) requires(moving != Moving::None)
        : m_value(take(other))
    {
        ++s_alive;
    }
    Tracked &operator=(Tracked const &other)
    {
        count_step();
        ++s_copies;
        m_value = other.m_value;
        return *this;
    }
    Tracked &operator=(Tracked &&other) noexcept(moving == Moving::Safe) requires(
        moving != Moving::None)
    {
        m_value = take(other);
        return *this;
    }
    ~Tracked() { --s_alive; }

    int GetValue() const { return m_value; }
    bool operator==(Tracked const &) const = default;
    friend void PrintTo(Tracked const &element, std::ostream *out) { *out << element.m_value; }

private:
    static int take(Tracked &other) noexcept(moving == Moving::Safe)
    {
        if constexpr (moving == Moving::Throwing)
            count_step();
        return std::exchange(other.m_value, -1);
    }

    int m_value;
};

using SafeMover = Tracked<Moving::Safe>;
using RiskyMover = Tracked<Moving::Throwing>;
using Copier = Tracked<Moving::None>;
