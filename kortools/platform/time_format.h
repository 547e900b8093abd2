// SPDX-License-Identifier: MIT
// strftime for wide text as the current Windows runtime has it in the "C" locale, on both systems.
//
//   %a %A %b %B %h        names of the day and the month, short and long
//   %d %e %j %m %y %Y %C  day of the month (%e: a blank before one digit) and of the year, month,
//                         year of the century, year, century
//   %H %I %M %S %p        hour of 24 and of 12, minute, second, AM or PM
//   %u %w %U %W           day of the week from 1 Monday or 0 Sunday; week of the year from its
//                         first Sunday or Monday
//   %G %g %V              ISO 8601 year, year of its century, and week
//   %c %D %F %r %R %T %x %X   combinations of these
//   %z %Z %n %t %%        offset from UTC (+hhmm), name of the zone, line feed, tab, per cent sign
//
// E and O after the per cent sign are ignored before the letters that standard C lists. A # takes
// leading zeros and blanks away, makes %x a long date and %c a long date with the time, and is
// ignored otherwise.
#pragma once

#include <cstddef>
#include <ctime>

namespace kortools::platform {

struct TimeToFormat {
    std::tm fields;    // as calendar.h set them
    long long seconds; // the instant they were made from
    bool is_utc;       // the fields are UTC, not local time
};

// Writes the text, terminated, to `target`. Returns its length, or -1 when the text is longer than
// `capacity` - 1 or a code does not exist; the target is then undefined. Lengths are counted in
// UTF-16 units against the capacity, and in wide characters in the result.
int format_time(
    wchar_t *target, std::size_t capacity, wchar_t const *format, TimeToFormat const &time);

} // namespace kortools::platform
