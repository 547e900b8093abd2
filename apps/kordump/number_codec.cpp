// SPDX-License-Identifier: MIT
#include "apps/kordump/number_codec.h"

#include "apps/kordump/text_codec.h"

#include <bit>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>

namespace kordump {
namespace {

constexpr long long last_time = 253402300799; // 9999-12-31 23:59:59

template <typename Number> std::string print_number(Number number)
{
    char text[40];
    auto const end = std::to_chars(text, text + sizeof text, number).ptr;
    return { text, end };
}

// A JSON reader takes "-0" for an integer, which has no sign then.
std::string print_finite(double value, std::string text)
{
    return value == 0 && std::signbit(value) ? "-0.0" : std::move(text);
}

std::string print_special(unsigned int digits, unsigned long long bits, double value)
{
    if (std::isinf(value))
        return value < 0 ? "\"-inf\"" : "\"inf\"";
    char text[24];
    std::snprintf(text, sizeof text, "\"0x%0*llX\"", static_cast<int>(digits), bits);
    return text;
}

std::string print_float(std::uint32_t bits)
{
    constexpr std::uint32_t quiet_nan = 0x7FC00000;
    if (bits == quiet_nan)
        return "\"nan\"";
    float const value = std::bit_cast<float>(bits);
    if (!std::isfinite(value))
        return print_special(8, bits, value);
    std::string text = print_number(value);
    // The digits are read as a double first; rounding twice could give the neighbour.
    if (static_cast<float>(std::strtod(text.c_str(), nullptr)) != value)
        text = print_number(static_cast<double>(value));
    return print_finite(value, std::move(text));
}

std::string print_double(unsigned long long bits)
{
    constexpr unsigned long long quiet_nan = 0x7FF8000000000000;
    if (bits == quiet_nan)
        return "\"nan\"";
    double const value = std::bit_cast<double>(bits);
    return std::isfinite(value) ? print_finite(value, print_number(value))
                                : print_special(16, bits, value);
}

// Seconds since 1970 as a date; 0 means no date and stays a number.
std::string print_time(long long seconds)
{
    if (seconds <= 0 || seconds > last_time)
        return print_number(seconds);
    using namespace std::chrono;
    sys_seconds const time { std::chrono::seconds(seconds) };
    auto const day = floor<days>(time);
    year_month_day const date(day);
    hh_mm_ss const clock(time - day);
    char text[40];
    std::snprintf(text, sizeof text, "\"%04d-%02u-%02uT%02d:%02d:%02dZ\"",
        static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
        static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return text;
}

[[noreturn]] void refuse(Json const &value, std::string_view wanted)
{
    std::string text = value.is_structured()
        ? value.type_name()
        : value.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (text.size() > 40)
        text = text.substr(0, 40) + "...";
    throw std::runtime_error(text + " is no " + std::string(wanted));
}

unsigned long long parse_time(Json const &value)
{
    using namespace std::chrono;
    auto const &text = value.get_ref<std::string const &>();
    int year_number, hours_number, minutes_number, seconds_number, end = 0;
    unsigned month_number, day_number;
    int const found = std::sscanf(text.c_str(), "%4d-%2u-%2uT%2d:%2d:%2dZ%n", &year_number,
        &month_number, &day_number, &hours_number, &minutes_number, &seconds_number, &end);
    year_month_day const date { year(year_number), month(month_number), day(day_number) };
    if (found != 6 || end != static_cast<int>(text.size()) || !date.ok())
        refuse(value, "time like \"2026-01-31T23:59:59Z\"");
    auto const time
        = sys_days(date) + hours(hours_number) + minutes(minutes_number) + seconds(seconds_number);
    return static_cast<unsigned long long>(time.time_since_epoch() / 1s);
}

long long parse_signed(Json const &value, long long minimum, long long maximum)
{
    bool const fits = value.is_number_unsigned()
        ? value.get<unsigned long long>() <= static_cast<unsigned long long>(maximum)
        : value.is_number_integer() && value.get<long long>() >= minimum
            && value.get<long long>() <= maximum;
    if (!fits)
        refuse(value, "integer from " + std::to_string(minimum) + " to " + std::to_string(maximum));
    return value.get<long long>();
}

template <typename Integer> unsigned long long parse_integer(Json const &value)
{
    using Limits = std::numeric_limits<Integer>;
    if constexpr (Limits::is_signed)
        return static_cast<std::make_unsigned_t<Integer>>(
            parse_signed(value, Limits::min(), Limits::max()));
    else
        return parse_number(value, Limits::max());
}

// `Bits` has the size of `Float`.
template <typename Float, typename Bits> unsigned long long parse_float(Json const &value)
{
    if (value.is_number()) {
        double const number = value.get<double>();
        auto const narrow = static_cast<Float>(number);
        if (std::isinf(narrow))
            refuse(value, "float of " + std::to_string(sizeof(Float)) + " bytes");
        return std::bit_cast<Bits>(narrow);
    }
    if (!value.is_string())
        refuse(value, "float");
    auto const &text = value.get_ref<std::string const &>();
    constexpr Float infinity = std::numeric_limits<Float>::infinity();
    if (text == "inf" || text == "-inf")
        return std::bit_cast<Bits>(text == "inf" ? infinity : -infinity);
    if (text == "nan")
        return std::bit_cast<Bits>(std::numeric_limits<Float>::quiet_NaN());
    if (!text.starts_with("0x"))
        refuse(value, "float");
    Bits bits = 0;
    auto const [end, error] = std::from_chars(text.data() + 2, text.data() + text.size(), bits, 16);
    if (error != std::errc() || end != text.data() + text.size())
        refuse(value, "float");
    return bits;
}

} // namespace

std::string print_plain(FieldType type, unsigned long long bits)
{
    switch (type) {
    case FieldType::Bool:
        return bits == 0 ? "false" : bits == 1 ? "true" : print_number(bits);
    case FieldType::I8:
        return print_number(static_cast<int>(static_cast<std::int8_t>(bits)));
    case FieldType::I16:
        return print_number(static_cast<std::int16_t>(bits));
    case FieldType::I32:
        return print_number(static_cast<std::int32_t>(bits));
    case FieldType::I64:
        return print_number(static_cast<std::int64_t>(bits));
    case FieldType::Time:
        return print_time(static_cast<std::int64_t>(bits));
    case FieldType::F32:
        return print_float(static_cast<std::uint32_t>(bits));
    case FieldType::F64:
        return print_double(bits);
    default:
        return print_number(bits);
    }
}

unsigned long long parse_plain(FieldType type, Json const &value)
{
    switch (type) {
    case FieldType::Bool:
        return value.is_boolean() ? value.get<bool>() : parse_number(value, 0xFF);
    case FieldType::I8:
        return parse_integer<std::int8_t>(value);
    case FieldType::I16:
        return parse_integer<std::int16_t>(value);
    case FieldType::I32:
        return parse_integer<std::int32_t>(value);
    case FieldType::Time:
        return value.is_string() ? parse_time(value) : parse_integer<std::int64_t>(value);
    case FieldType::I64:
        return parse_integer<std::int64_t>(value);
    case FieldType::F32:
        return parse_float<float, std::uint32_t>(value);
    case FieldType::F64:
        return parse_float<double, std::uint64_t>(value);
    case FieldType::U8:
        return parse_integer<std::uint8_t>(value);
    case FieldType::U16:
    case FieldType::WideChar:
        return parse_integer<std::uint16_t>(value);
    case FieldType::U32:
        return parse_integer<std::uint32_t>(value);
    default:
        return parse_integer<std::uint64_t>(value);
    }
}

unsigned long long parse_number(Json const &value, unsigned long long maximum)
{
    if (!value.is_number_unsigned() || value.get<unsigned long long>() > maximum)
        refuse(value, "integer from 0 to " + std::to_string(maximum));
    return value.get<unsigned long long>();
}

unsigned int parse_code(Json const &value)
{
    if (!value.is_string())
        return static_cast<unsigned int>(parse_number(value, 0xFFFFFFFF));
    auto const &text = value.get_ref<std::string const &>();
    if (text.size() != 4)
        throw std::runtime_error("'" + text + "' does not have four characters");
    unsigned int number = 0;
    for (char const ch : text)
        number = number << 8 | static_cast<unsigned char>(ch);
    return number;
}

} // namespace kordump
