// SPDX-License-Identifier: MIT
// The time zone of the process, for the length of a test.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace kor_test {

class ProcessZone {
public:
    explicit ProcessZone(std::string const &zone)
    {
        if (char const *const before = std::getenv("TZ"))
            m_before = before;
        set(zone);
    }
    ~ProcessZone() { set(m_before); }
    ProcessZone(ProcessZone const &) = delete;
    ProcessZone &operator=(ProcessZone const &) = delete;

private:
    static void set(std::optional<std::string> const &zone)
    {
#ifdef _WIN32
        _putenv(("TZ=" + zone.value_or("")).c_str());
        _tzset();
#else
        zone ? setenv("TZ", zone->c_str(), 1) : unsetenv("TZ");
        tzset();
#endif
    }

    std::optional<std::string> m_before;
};

} // namespace kor_test
