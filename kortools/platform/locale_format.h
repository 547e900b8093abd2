// SPDX-License-Identifier: MIT
// Dates and times as the user's locale writes them.
#pragma once

#include "kortools/platform/civil_time.h"

#include <string>

namespace kortools::platform {

enum class DateLength { Short, Long };

// `locale` is a name such as fr-FR or fr_FR.UTF-8; empty is the user's, which on Linux is that of
// LC_ALL, LC_TIME or LANG in the environment. Names that are not known give some other locale's
// result on Linux and nothing on Windows.
//
// The date of the record; empty for a day that does not exist and for years before 1601.
std::wstring format_date(
    DateTime const &date, DateLength length, std::string const &locale = std::string());

// Hours and minutes on the clock of 24 hours, with the number of digits and the marker that the
// locale has for its own clock: 14:05 PM for en-US. Empty for a time that does not exist.
std::wstring format_time_of_day(DateTime const &time, std::string const &locale = std::string());

} // namespace kortools::platform
