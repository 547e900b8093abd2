// SPDX-License-Identifier: MIT
// Format() beside swprintf, snprintf and QString::asprintf. Every row ends with a string object
// that holds the text, as a user would have it; one object is used over and over.
#include "kortools/core/xstring.h"

#include <QString>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

class KorToolsWide {
public:
    using Char = wchar_t;
    template <typename... A> void format(wchar_t const *text, A... args)
    {
        m_text.Format(text, args...);
    }
    int get_length() const { return m_text.GetLength(); }

private:
    CXTString<wchar_t> m_text;
};

class KorToolsNarrow {
public:
    using Char = char;
    template <typename... A> void format(char const *text, A... args)
    {
        m_text.Format(text, args...);
    }
    int get_length() const { return m_text.GetLength(); }

private:
    CXTString<char> m_text;
};

class Swprintf {
public:
    using Char = wchar_t;
    template <typename... A> void format(wchar_t const *text, A... args)
    {
        wchar_t buffer[256];
        m_text.assign(buffer, static_cast<std::size_t>(std::swprintf(buffer, 256, text, args...)));
    }
    int get_length() const { return static_cast<int>(m_text.size()); }

private:
    std::wstring m_text;
};

class Snprintf {
public:
    using Char = char;
    template <typename... A> void format(char const *text, A... args)
    {
        char buffer[256];
        m_text.assign(
            buffer, static_cast<std::size_t>(std::snprintf(buffer, sizeof buffer, text, args...)));
    }
    int get_length() const { return static_cast<int>(m_text.size()); }

private:
    std::string m_text;
};

class QtAsprintf {
public:
    using Char = char;
    template <typename... A> void format(char const *text, A... args)
    {
        m_text = QString::asprintf(text, args...);
    }
    int get_length() const { return static_cast<int>(m_text.size()); }

private:
    QString m_text;
};

// One text in both widths.
struct Literal {
    char const *narrow;
    wchar_t const *wide;
};

template <typename T> T const *pick(Literal const &literal)
{
    if constexpr (sizeof(T) == 1)
        return literal.narrow;
    else
        return literal.wide;
}

template <typename T, typename V> V pick(V value)
{
    return value;
}

template <typename F, typename... A>
void run(benchmark::State &state, int length, Literal const &format, A... args)
{
    using Char = typename F::Char;
    F formatter;
    for (auto _ : state) {
        formatter.format(pick<Char>(format), pick<Char>(args)...);
        benchmark::DoNotOptimize(formatter);
        if (formatter.get_length() != length) {
            state.SkipWithError("wrong length");
            break;
        }
    }
}

template <typename F, typename... A>
void add_row(
    std::string const &row, std::string const &library, int length, Literal format, A... args)
{
    benchmark::RegisterBenchmark((row + "/" + library).c_str(),
        [=](benchmark::State &state) { run<F>(state, length, format, args...); });
}

#define KOR_LITERAL(text)                                                                          \
    Literal                                                                                        \
    {                                                                                              \
        text, L##text                                                                              \
    }

template <typename F> void add_rows(std::string const &width, std::string const &library)
{
    auto const row = [&width](char const *name) { return "format/" + width + "/" + name; };
    add_row<F>(row("integer"), library, 13, KOR_LITERAL("%d of %d (RGB)"), 7, 24);
    add_row<F>(row("hexadecimal"), library, 10, KOR_LITERAL("0x%08x"), 0x1234ABCDU);
    add_row<F>(row("large_integer"), library, 19, KOR_LITERAL("%lld Bytes"), 1234567890123LL);
    add_row<F>(row("fixed_point"), library, 10, KOR_LITERAL("%.2f Kb"), 1023.999 * 3);
    add_row<F>(row("general"), library, 23, KOR_LITERAL("%.17g %g"), 0.1, 1.5);
    Literal const folder = KOR_LITERAL("C:\\Users\\someone\\Documents");
    add_row<F>(row("text"), library, 36, Literal { "%s\\%s", L"%ls\\%ls" }, folder,
        KOR_LITERAL("scene.kor"));
    add_row<F>(row("table_row"), library, 48,
        Literal { "%-24s|%8d|%12.3f|%c", L"%-24ls|%8d|%12.3f|%c" }, KOR_LITERAL("vertices"), 123456,
        3.14159, 'x');
}

} // namespace

int main(int argc, char **argv)
{
    add_rows<KorToolsWide>("wide", "KorTools");
    add_rows<Swprintf>("wide", "swprintf");
    add_rows<QtAsprintf>("wide", "QString");
    add_rows<KorToolsNarrow>("narrow", "KorTools");
    add_rows<Snprintf>("narrow", "snprintf");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
