// SPDX-License-Identifier: MIT
// Conversion of text beside what a user would pick instead. Row names are
// <operation>/<text>/<characters>/<library>; all libraries of a row convert the same text into a
// string of their own kind, and the length of what they give is checked.
#include "kortools/core/conversion.h"

#include <QString>
#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <clocale>
#include <codecvt>
#include <cwchar>
#include <locale>
#include <map>
#include <memory>
#include <string>

namespace {

std::wstring make_text(std::wstring const &sentence, std::size_t length)
{
    std::wstring text;
    while (text.size() < length)
        text += sentence;
    text.resize(length);
    return text;
}

std::map<std::string, std::wstring> const sentences {
    { "ascii", L"The quick brown fox jumps over the lazy dog 0123456789. " },
    { "french", L"Dès Noël, où un zéphyr haï me vêt de glaçons würmiens, je dîne. " },
    { "cyrillic", L"Съешь же ещё этих мягких французских булок, да выпей чаю. " },
    { "japanese", L"いろはにほへとちりぬるを、我が世誰ぞ常ならむ。有為の奥山今日越えて" },
};

struct Sample {
    std::wstring wide;
    std::u16string units;
    std::string utf8;
    std::string ansi; // in `page`
    int page = 1252;
};

Sample make_sample(std::string const &name, std::size_t length)
{
    Sample sample;
    sample.wide = make_text(sentences.at(name), length);
    sample.units.assign(sample.wide.begin(), sample.wide.end());
    sample.page = name == "cyrillic" ? 1251 : name == "japanese" ? 932 : 1252;
    sample.utf8 = static_cast<char const *>(XCW2A(sample.wide.c_str(), xEncodingUTF8));
    sample.ansi = static_cast<char const *>(XCW2A(sample.wide.c_str(), sample.page));
    return sample;
}

void check(benchmark::State &state, std::size_t length, std::size_t expected)
{
    if (length != expected)
        state.SkipWithError("wrong length");
}

template <typename F> void run(benchmark::State &state, Sample const &sample, F convert)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(convert());
    state.SetItemsProcessed(state.iterations() * static_cast<long>(sample.wide.size()));
}

using Run = void (*)(benchmark::State &, Sample const &);

// --- UTF-8 to text of the library's own kind

void decode_kortools(benchmark::State &state, Sample const &sample)
{
    run(state, sample, [&] {
        XCA2W const text(sample.utf8.c_str(), xEncodingUTF8);
        check(state, static_cast<std::size_t>(text.GetText().GetLength()), sample.wide.size());
        return text.GetText()[0];
    });
}
void decode_qt(benchmark::State &state, Sample const &sample)
{
    run(state, sample, [&] {
        QString const text = QString::fromUtf8(sample.utf8.c_str());
        check(state, static_cast<std::size_t>(text.size()), sample.units.size());
        return text[0].unicode();
    });
}
void decode_icu(benchmark::State &state, Sample const &sample)
{
    run(state, sample, [&] {
        auto const text = icu::UnicodeString::fromUTF8(sample.utf8.c_str());
        check(state, static_cast<std::size_t>(text.length()), sample.units.size());
        return text[0];
    });
}
void decode_codecvt(benchmark::State &state, Sample const &sample)
{
    std::wstring_convert<std::codecvt_utf8<wchar_t>> converter;
    run(state, sample, [&] {
        std::wstring const text = converter.from_bytes(sample.utf8.c_str());
        check(state, text.size(), sample.wide.size());
        return text[0];
    });
}
void decode_mbstowcs(benchmark::State &state, Sample const &sample)
{
    run(state, sample, [&] {
        std::wstring text(std::mbstowcs(nullptr, sample.utf8.c_str(), 0), L'\0');
        std::mbstowcs(text.data(), sample.utf8.c_str(), text.size());
        check(state, text.size(), sample.wide.size());
        return text[0];
    });
}

// --- And back

void encode_kortools(benchmark::State &state, Sample const &sample)
{
    run(state, sample, [&] {
        XCW2A const text(sample.wide.c_str(), xEncodingUTF8);
        check(state, static_cast<std::size_t>(text.GetText().GetLength()), sample.utf8.size());
        return text.GetText()[0];
    });
}
void encode_qt(benchmark::State &state, Sample const &sample)
{
    QString const source = QString::fromStdWString(sample.wide);
    run(state, sample, [&] {
        QByteArray const text = source.toUtf8();
        check(state, static_cast<std::size_t>(text.size()), sample.utf8.size());
        return text[0];
    });
}
void encode_icu(benchmark::State &state, Sample const &sample)
{
    icu::UnicodeString const source(sample.units.data(), static_cast<int>(sample.units.size()));
    run(state, sample, [&] {
        std::string text;
        source.toUTF8String(text);
        check(state, text.size(), sample.utf8.size());
        return text[0];
    });
}
void encode_codecvt(benchmark::State &state, Sample const &sample)
{
    std::wstring_convert<std::codecvt_utf8<wchar_t>> converter;
    run(state, sample, [&] {
        std::string const text = converter.to_bytes(sample.wide.c_str());
        check(state, text.size(), sample.utf8.size());
        return text[0];
    });
}
void encode_wcstombs(benchmark::State &state, Sample const &sample)
{
    run(state, sample, [&] {
        std::string text(std::wcstombs(nullptr, sample.wide.c_str(), 0), '\0');
        std::wcstombs(text.data(), sample.wide.c_str(), text.size());
        check(state, text.size(), sample.utf8.size());
        return text[0];
    });
}

// --- Another code page to wide text and back

struct CloseConverter {
    void operator()(UConverter *converter) const { ucnv_close(converter); }
};

std::unique_ptr<UConverter, CloseConverter> open_converter(int page)
{
    UErrorCode error = U_ZERO_ERROR;
    std::string const name = page == 932 ? "windows-31j" : "windows-" + std::to_string(page);
    return { ucnv_open(name.c_str(), &error), {} };
}

void narrow_to_wide_kortools(benchmark::State &state, Sample const &sample)
{
    run(state, sample, [&] {
        XCA2W const text(sample.ansi.c_str(), sample.page);
        check(state, static_cast<std::size_t>(text.GetText().GetLength()), sample.wide.size());
        return text.GetText()[0];
    });
}
void narrow_to_wide_icu(benchmark::State &state, Sample const &sample)
{
    auto const converter = open_converter(sample.page);
    run(state, sample, [&] {
        UErrorCode error = U_ZERO_ERROR;
        icu::UnicodeString const text(
            sample.ansi.c_str(), static_cast<int>(sample.ansi.size()), converter.get(), error);
        check(state, static_cast<std::size_t>(text.length()), sample.units.size());
        return text[0];
    });
}
void wide_to_narrow_kortools(benchmark::State &state, Sample const &sample)
{
    run(state, sample, [&] {
        XCW2A const text(sample.wide.c_str(), sample.page);
        check(state, static_cast<std::size_t>(text.GetText().GetLength()), sample.ansi.size());
        return text.GetText()[0];
    });
}
void wide_to_narrow_icu(benchmark::State &state, Sample const &sample)
{
    auto const converter = open_converter(sample.page);
    icu::UnicodeString const source(sample.units.data(), static_cast<int>(sample.units.size()));
    run(state, sample, [&] {
        UErrorCode error = U_ZERO_ERROR;
        std::string text(sample.units.size() * 2, '\0');
        int const count
            = source.extract(text.data(), static_cast<int>(text.size()), converter.get(), error);
        text.resize(static_cast<std::size_t>(count));
        check(state, text.size(), sample.ansi.size());
        return text[0];
    });
}

// --- UTF-8 to UTF-16 in a buffer of the caller

void to_utf16_kortools(benchmark::State &state, Sample const &sample)
{
    auto const target = std::make_unique<unsigned short[]>(sample.utf8.size() + 1);
    auto const *const source = reinterpret_cast<unsigned char const *>(sample.utf8.c_str());
    run(state, sample, [&] {
        int const count = xUTF8ToUTF16(source, target.get());
        check(state, static_cast<std::size_t>(count), sample.units.size() + 1);
        return target[0];
    });
}
void to_utf16_icu(benchmark::State &state, Sample const &sample)
{
    auto const target = std::make_unique<UChar[]>(sample.utf8.size() + 1);
    run(state, sample, [&] {
        UErrorCode error = U_ZERO_ERROR;
        int count = 0;
        u_strFromUTF8(target.get(), static_cast<int>(sample.utf8.size()) + 1, &count,
            sample.utf8.c_str(), -1, &error);
        check(state, static_cast<std::size_t>(count), sample.units.size());
        return target[0];
    });
}

struct Row {
    char const *operation;
    char const *library;
    Run run;
};

constexpr Row rows[] = {
    { "utf8_to_wide", "KorTools", decode_kortools },
    { "utf8_to_wide", "QString", decode_qt },
    { "utf8_to_wide", "ICU", decode_icu },
    { "utf8_to_wide", "std_codecvt", decode_codecvt },
    { "utf8_to_wide", "mbstowcs", decode_mbstowcs },
    { "wide_to_utf8", "KorTools", encode_kortools },
    { "wide_to_utf8", "QString", encode_qt },
    { "wide_to_utf8", "ICU", encode_icu },
    { "wide_to_utf8", "std_codecvt", encode_codecvt },
    { "wide_to_utf8", "wcstombs", encode_wcstombs },
    { "code_page_to_wide", "KorTools", narrow_to_wide_kortools },
    { "code_page_to_wide", "ICU", narrow_to_wide_icu },
    { "wide_to_code_page", "KorTools", wide_to_narrow_kortools },
    { "wide_to_code_page", "ICU", wide_to_narrow_icu },
    { "utf8_to_utf16", "KorTools", to_utf16_kortools },
    { "utf8_to_utf16", "ICU", to_utf16_icu },
};

} // namespace

int main(int argc, char **argv)
{
    std::setlocale(LC_CTYPE, "C.UTF-8"); // for the C library's rows
    benchmark::Initialize(&argc, argv);
    for (auto const &[text, sentence] : sentences) {
        for (std::size_t const length : { 20U, 1000U, 100000U }) {
            Sample const sample = make_sample(text, length);
            for (Row const &row : rows) {
                std::string const name = std::string(row.operation) + '/' + text + '/'
                    + std::to_string(length) + '/' + row.library;
                benchmark::RegisterBenchmark(name.c_str(),
                    [row, sample](benchmark::State &state) { row.run(state, sample); });
            }
        }
    }
    benchmark::RunSpecifiedBenchmarks();
}
