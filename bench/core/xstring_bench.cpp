// SPDX-License-Identifier: MIT
// CXTString<wchar_t> beside std::wstring, QString and ICU's UnicodeString. The same operation on
// the same text; the last two hold it in half the bytes on Linux. Each row checks its result.
#include "kortools/core/conversion.h"
#include "kortools/core/xstring.h"

#include <QString>
#include <benchmark/benchmark.h>
#include <unicode/unistr.h>

#include <clocale>
#include <cstdlib>
#include <random>
#include <string>

namespace {

struct Kor {
    using String = CXTString<wchar_t>;
    static String make(std::wstring const &text) { return text.c_str(); }
    static String copy(std::wstring const &text)
    {
        return { text.data(), static_cast<int>(text.size()) };
    }
    static std::size_t length(String const &text)
    {
        return static_cast<std::size_t>(text.GetLength());
    }
    static void append(String &text, wchar_t ch) { text += ch; }
    static long long find(String const &text, wchar_t ch) { return text.Find(ch); }
    static long long find(String const &text, String const &part) { return text.Find(part); }
    static void replace(String &text, String const &old, String const &replacement)
    {
        text.Replace(old, replacement);
    }
    static int compare(String const &a, String const &b) { return a.Compare(b); }
    static String from_utf8(std::string const &text) { return text.c_str(); }
    static std::size_t utf8_length(String const &text)
    {
        return static_cast<std::size_t>(CXTString<char>(text).GetLength());
    }
};

struct Std {
    using String = std::wstring;
    static String make(std::wstring const &text) { return text.c_str(); }
    static String copy(std::wstring const &text) { return { text.data(), text.size() }; }
    static std::size_t length(String const &text) { return text.size(); }
    static void append(String &text, wchar_t ch) { text += ch; }
    static long long find(String const &text, wchar_t ch)
    {
        return static_cast<long long>(text.find(ch));
    }
    static long long find(String const &text, String const &part)
    {
        return static_cast<long long>(text.find(part));
    }
    static void replace(String &text, String const &old, String const &replacement)
    {
        for (std::size_t at = 0; (at = text.find(old, at)) != String::npos;
             at += replacement.size())
            text.replace(at, old.size(), replacement);
    }
    static int compare(String const &a, String const &b) { return a.compare(b); }
    static String from_utf8(std::string const &text)
    {
        String result(text.size(), L'\0');
        result.resize(std::mbstowcs(result.data(), text.c_str(), text.size() + 1));
        return result;
    }
    static std::size_t utf8_length(String const &text)
    {
        std::string result(text.size() * 4, '\0');
        result.resize(std::wcstombs(result.data(), text.c_str(), result.size() + 1));
        return result.size();
    }
};

struct Qt {
    using String = QString;
    static String make(std::wstring const &text) { return QString::fromStdWString(text); }
    static std::size_t length(String const &text) { return static_cast<std::size_t>(text.size()); }
    static void append(String &text, wchar_t ch) { text += QChar(static_cast<char16_t>(ch)); }
    static long long find(String const &text, wchar_t ch)
    {
        return text.indexOf(QChar(static_cast<char16_t>(ch)));
    }
    static long long find(String const &text, String const &part) { return text.indexOf(part); }
    static void replace(String &text, String const &old, String const &replacement)
    {
        text.replace(old, replacement);
    }
    static int compare(String const &a, String const &b) { return a.compare(b); }
    static String from_utf8(std::string const &text) { return QString::fromUtf8(text.c_str()); }
    static std::size_t utf8_length(String const &text)
    {
        return static_cast<std::size_t>(text.toUtf8().size());
    }
};

struct Icu {
    using String = icu::UnicodeString;
    static String make(std::wstring const &text)
    {
        return String::fromUTF32(reinterpret_cast<UChar32 const *>(text.c_str()), -1);
    }
    static std::size_t length(String const &text)
    {
        return static_cast<std::size_t>(text.length());
    }
    static void append(String &text, wchar_t ch) { text += static_cast<char16_t>(ch); }
    static long long find(String const &text, wchar_t ch)
    {
        return text.indexOf(static_cast<char16_t>(ch));
    }
    static long long find(String const &text, String const &part) { return text.indexOf(part); }
    static void replace(String &text, String const &old, String const &replacement)
    {
        text.findAndReplace(old, replacement);
    }
    static int compare(String const &a, String const &b) { return a.compare(b); }
    static String from_utf8(std::string const &text) { return String::fromUTF8(text); }
    static std::size_t utf8_length(String const &text)
    {
        std::string result;
        text.toUTF8String(result);
        return result.size();
    }
};

// Words of small letters. The needle and its first letter alone occur all over; the whole needle
// is at the end only, as is '!'.
constexpr wchar_t needle[] = L"needle!";

std::wstring make_text(benchmark::State const &state)
{
    std::mt19937 random(1);
    std::wstring text(static_cast<std::size_t>(state.range(0)) - 7, L' ');
    for (wchar_t &ch : text)
        ch = random() % 6 ? static_cast<wchar_t>('a' + random() % 26) : L' ';
    return text + needle;
}

void check(benchmark::State &state, bool right)
{
    if (!right)
        state.SkipWithError("wrong result");
}

void count_characters(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class S> void BM_Construct(benchmark::State &state)
{
    std::wstring const source = make_text(state);
    typename S::String const original = S::make(source);
    bool right = true;
    for (auto _ : state) {
        if constexpr (std::is_same_v<S, Qt>) {
            QString const copy(original.constData(), original.size());
            right &= S::length(copy) == source.size();
        } else if constexpr (std::is_same_v<S, Icu>) {
            icu::UnicodeString const copy(original.getBuffer(), original.length());
            right &= S::length(copy) == source.size();
        } else {
            typename S::String const copy = S::copy(source);
            right &= S::length(copy) == source.size();
        }
    }
    check(state, right);
    count_characters(state);
}

template <class S> void BM_ConstructEmpty(benchmark::State &state)
{
    bool right = true;
    for (auto _ : state) {
        typename S::String text;
        benchmark::DoNotOptimize(text);
        right &= S::length(text) == 0;
    }
    check(state, right);
}

template <class S> void BM_AppendCharacters(benchmark::State &state)
{
    std::wstring const source = make_text(state);
    typename S::String const expected = S::make(source);
    bool right = true;
    for (auto _ : state) {
        typename S::String text;
        for (wchar_t const ch : source)
            S::append(text, ch);
        right &= text == expected;
    }
    check(state, right);
    count_characters(state);
}

template <class S> void BM_Concatenate(benchmark::State &state)
{
    typename S::String const part = S::make(make_text(state));
    typename S::String const other = S::make(L"\\");
    bool right = true;
    for (auto _ : state) {
        typename S::String const joined = part + other + part;
        right &= S::length(joined) == 2 * S::length(part) + 1;
    }
    check(state, right);
    count_characters(state);
}

template <class S> void BM_FindCharacter(benchmark::State &state)
{
    typename S::String const text = S::make(make_text(state));
    bool right = true;
    for (auto _ : state) {
        benchmark::DoNotOptimize(text); // else the search is moved out of the loop
        right &= S::find(text, L'!') == state.range(0) - 1;
    }
    check(state, right);
    count_characters(state);
}

template <class S> void BM_FindText(benchmark::State &state)
{
    typename S::String const text = S::make(make_text(state));
    typename S::String const part = S::make(needle);
    bool right = true;
    for (auto _ : state) {
        benchmark::DoNotOptimize(text);
        right &= S::find(text, part) == state.range(0) - 7;
    }
    check(state, right);
    count_characters(state);
}

// One character in six, by two: the text grows. The copy that it starts from is part of the time.
template <class S> void BM_ReplaceAll(benchmark::State &state)
{
    std::wstring model = make_text(state);
    typename S::String const text = S::make(model);
    typename S::String const old = S::make(L" ");
    typename S::String const replacement = S::make(L", ");
    Std::replace(model, L" ", L", ");
    typename S::String const expected = S::make(model);
    bool right = true;
    for (auto _ : state) {
        typename S::String edited = text;
        S::replace(edited, old, replacement);
        right &= edited == expected;
    }
    check(state, right);
    count_characters(state);
}

template <class S> void BM_Compare(benchmark::State &state)
{
    std::wstring source = make_text(state);
    typename S::String const a = S::make(source);
    source.back() = L'?';
    typename S::String const b = S::make(source);
    bool right = true;
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        right &= S::compare(a, b) < 0;
    }
    check(state, right);
    count_characters(state);
}

// In UTF-8: ASCII, and text in which every eighth character is another.
std::wstring make_wide(benchmark::State const &state)
{
    std::wstring text = make_text(state);
    for (std::size_t i = 3; state.range(1) && i < text.size(); i += 8)
        text[i] = i % 16 == 3 ? L'\u00E9' : L'\u20AC';
    return text;
}

std::string make_utf8(benchmark::State const &state)
{
    return Qt::make(make_wide(state)).toStdString();
}

template <class S> void BM_NarrowToWide(benchmark::State &state)
{
    std::string const narrow = make_utf8(state);
    typename S::String const expected = S::make(make_wide(state));
    bool right = true;
    for (auto _ : state)
        right &= S::from_utf8(narrow) == expected;
    check(state, right);
    count_characters(state);
}

template <class S> void BM_WideToNarrow(benchmark::State &state)
{
    typename S::String const wide = S::make(make_wide(state));
    std::size_t const expected = make_utf8(state).size();
    bool right = true;
    for (auto _ : state)
        right &= S::utf8_length(wide) == expected;
    check(state, right);
    count_characters(state);
}

void sizes(benchmark::internal::Benchmark *row)
{
    row->ArgName("length")->Arg(8)->Arg(64)->Arg(1024)->Arg(65536);
}

void sizes_and_texts(benchmark::internal::Benchmark *row)
{
    row->ArgNames({ "length", "mixed" })->ArgsProduct({ { 8, 64, 1024, 65536 }, { 0, 1 } });
}

void no_sizes(benchmark::internal::Benchmark *) { }

#define KOR_BENCHMARK_ALL(operation, arguments)                                                    \
    BENCHMARK(operation<Kor>)->Name(#operation "_CXTString")->Apply(arguments);                    \
    BENCHMARK(operation<Std>)->Name(#operation "_StdWString")->Apply(arguments);                   \
    BENCHMARK(operation<Qt>)->Name(#operation "_QString")->Apply(arguments);                       \
    BENCHMARK(operation<Icu>)->Name(#operation "_UnicodeString")->Apply(arguments)

KOR_BENCHMARK_ALL(BM_ConstructEmpty, no_sizes);
KOR_BENCHMARK_ALL(BM_Construct, sizes);
KOR_BENCHMARK_ALL(BM_AppendCharacters, sizes);
KOR_BENCHMARK_ALL(BM_Concatenate, sizes);
KOR_BENCHMARK_ALL(BM_FindCharacter, sizes);
KOR_BENCHMARK_ALL(BM_FindText, sizes);
KOR_BENCHMARK_ALL(BM_ReplaceAll, sizes);
KOR_BENCHMARK_ALL(BM_Compare, sizes);
KOR_BENCHMARK_ALL(BM_NarrowToWide, sizes_and_texts);
KOR_BENCHMARK_ALL(BM_WideToNarrow, sizes_and_texts);

} // namespace

int main(int argc, char **argv)
{
    std::setlocale(LC_ALL, "C.UTF-8");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
