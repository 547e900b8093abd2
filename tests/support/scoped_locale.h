// SPDX-License-Identifier: MIT
// Sets the process's C locale while it lives.
#pragma once

#include <clocale>
#include <initializer_list>

class ScopedLocale {
public:
    // The first of `names` that the system has; none leaves the locale as it is.
    explicit ScopedLocale(std::initializer_list<char const *> names)
    {
        for (char const *const name : names) {
            m_is_set = std::setlocale(LC_ALL, name) != nullptr;
            if (m_is_set)
                break;
        }
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, "C"); }
    ScopedLocale(ScopedLocale const &) = delete;
    ScopedLocale &operator=(ScopedLocale const &) = delete;

    explicit operator bool() const { return m_is_set; }

private:
    bool m_is_set = false;
};
