// SPDX-License-Identifier: MIT
// The string utilities beside what Qt has for the same: in one pass over a text, or over arrays of
// names. Where Qt has no function of that name, the row holds the few calls that a user would
// write.
#include "kortools/archive/archive.h"
#include "kortools/data/time_text.h"
#include "kortools/text/clean_text.h"
#include "kortools/text/labels.h"
#include "kortools/text/resource_strings.h"
#include "kortools/text/string_arrays.h"

#include <QDateTime>
#include <QKeySequence>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

namespace {

using String = CXTString<wchar_t>;

template <class Run> void add(char const *row, Run run)
{
    benchmark::RegisterBenchmark(row, [=](benchmark::State &state) {
        bool right = true;
        for (auto _ : state)
            right &= run();
        if (!right)
            state.SkipWithError("wrong result");
    });
}

QString remove_diacritics(QString const &text)
{
    QString result;
    for (QChar const ch : text.normalized(QString::NormalizationForm_D)) {
        if (ch.category() != QChar::Mark_NonSpacing)
            result += ch;
    }
    return result;
}

void add_texts()
{
    // 110 characters of which some change, as in the rows' names.
    std::wstring accents;
    std::wstring menu;
    std::wstring markup;
    for (int i = 0; i < 10; ++i) {
        accents += L"\xE9"
                   L"t\xE9 et \xE0 No\xEBl";
        menu += L"&Save as ..";
        markup += L"<b>ab</b>c ";
    }
    String const text = accents;
    QString const qt_text = QString::fromStdWString(accents);
    String const plain = [&] {
        String result = text;
        RemoveDiacritics(result);
        return result;
    }();
    QString const qt_plain = QString::fromStdWString(std::wstring(plain));
    add("text/remove_diacritics/KorTools", [=] {
        String copy = text;
        RemoveDiacritics(copy);
        return copy == plain;
    });
    add("text/remove_diacritics/Qt", [=] { return remove_diacritics(qt_text) == qt_plain; });
    String const labels = menu;
    QString const qt_labels = QString::fromStdWString(menu);
    add("text/remove_mnemonics/KorTools", [=] { return CleanText(labels).GetLength() == 100; });
    add("text/remove_mnemonics/Qt", [=] { return QString(qt_labels).remove('&').size() == 100; });
    String const marked = markup;
    QString const qt_marked = QString::fromStdWString(markup);
    QRegularExpression const tag("<[^>]*>");
    add("text/remove_markup/KorTools", [=] { return CleanEnhancedText(marked).GetLength() == 40; });
    add("text/remove_markup/Qt", [=] { return QString(qt_marked).remove(tag).size() == 40; });
}

// The same text in upper and lower case, with the word that is looked for at its end.
void add_searches()
{
    std::wstring capitals;
    for (int i = 0; i < 10; ++i)
        capitals += L"ROUND TABL ";
    capitals += L"Table";
    String const text = capitals;
    String const lowered = LowerCaseString(text);
    QString const qt_text = QString::fromStdWString(capitals);
    QString const qt_lowered = qt_text.toLower();
    add("text/lower_case/KorTools", [=] { return LowerCaseString(text) == lowered; });
    add("text/lower_case/Qt", [=] { return qt_text.toLower() == qt_lowered; });
    add("text/compare_no_case/KorTools", [=] { return StringCompare(text, lowered, true) == 0; });
    add("text/compare_no_case/Qt",
        [=] { return qt_text.compare(qt_lowered, Qt::CaseInsensitive) == 0; });
    add("text/find/KorTools", [=] { return StringFind(text, L"Table") == 110; });
    add("text/find/Qt", [=] { return qt_text.indexOf(QString("Table")) == 110; });
    add("text/find_no_case/KorTools", [=] { return StringFindNoCase(text, L"table") == 110; });
    add("text/find_no_case/Qt",
        [=] { return qt_text.indexOf(QString("table"), 0, Qt::CaseInsensitive) == 110; });
    add("text/remove_no_case/KorTools", [=] {
        String copy = text;
        return StringRemoveNoCase(copy, L"round") == 10;
    });
    add("text/remove_no_case/Qt",
        [=] { return QString(qt_text).remove("round", Qt::CaseInsensitive).size() == 65; });
}

std::wstring make_name(unsigned i)
{
    return (i % 2 ? L"Box " : L"box ") + std::to_wstring(i * 2654435761U % 100000);
}

void add_arrays(unsigned count)
{
    CXArray<String> names;
    QStringList qt_names;
    for (unsigned i = 0; i < count; ++i) {
        names.Add(make_name(i));
        qt_names.append(QString::fromStdWString(make_name(i)));
    }
    auto const row = [&](char const *name, char const *library) {
        return "array/" + (name + ("/" + std::to_string(count))) + '/' + library;
    };
    int const last = static_cast<int>(count) - 1;
    String const wanted = names[last];
    QString const qt_wanted = qt_names[last];
    add(row("sort_no_case", "KorTools").c_str(), [=] {
        CXArray<String> copy = names;
        SortStringArray(copy, compareStringsNoCase);
        return copy[0].CompareNoCase(copy[last]) < 0;
    });
    add(row("sort_no_case", "Qt").c_str(), [=] {
        QStringList copy = qt_names;
        copy.sort(Qt::CaseInsensitive);
        return copy[0].compare(copy[last], Qt::CaseInsensitive) < 0;
    });
    add(row("sort", "KorTools").c_str(), [=] {
        CXArray<String> copy = names;
        SortStringArray(copy, compareStringsCase);
        return copy[0] < copy[last];
    });
    add(row("sort", "Qt").c_str(), [=] {
        QStringList copy = qt_names;
        copy.sort();
        return copy[0] < copy[last];
    });
    add(row("find", "KorTools").c_str(), [=] { return FindInStringArray(names, wanted) == last; });
    add(row("find", "Qt").c_str(), [=] { return qt_names.indexOf(qt_wanted) == last; });
    add(row("find_no_case", "KorTools").c_str(),
        [=] { return FindInStringArray(names, wanted, true) == last; });
    add(row("find_no_case", "Qt").c_str(), [=] {
        auto const found = std::ranges::find_if(qt_names,
            [&](QString const &name) { return name.compare(qt_wanted, Qt::CaseInsensitive) == 0; });
        return found - qt_names.begin() == last;
    });
    add(row("to_set", "KorTools").c_str(), [=] {
        CHashTable<String> set;
        StringToHash(names, set);
        return set.IsFound(wanted) != 0;
    });
    add(row("to_set", "Qt").c_str(),
        [=] { return QSet<QString>(qt_names.begin(), qt_names.end()).contains(qt_wanted); });
}

void add_labels()
{
    String const fields = L"first field|second|third one|x";
    QString const qt_fields = "first field|second|third one|x";
    add("label/split/KorTools", [=] {
        CXArray<String> array;
        return ExtractString(fields, array) == 4;
    });
    add("label/split/Qt", [=] { return qt_fields.split('|').size() == 4; });
    add("label/file_size/KorTools", [] { return GetFileSizeString(7654321).GetLength() == 7; });
    QLocale const locale = QLocale::c();
    add("label/file_size/Qt", [=] {
        return locale.formattedDataSize(7654321, 2, QLocale::DataSizeTraditionalFormat).size() == 7;
    });
    add("label/format/KorTools",
        [] { return FormatString(L"%s: %d of %d", L"mesh", 7, 12).GetLength() == 13; });
    add("label/format/Qt",
        [] { return QString::asprintf("%s: %d of %d", "mesh", 7, 12).size() == 13; });
    add("label/key/KorTools",
        [] { return Key2String(0x74, keyControl | keyShift).GetLength() == 13; });
    add("label/key/Qt", [] {
        QKeySequence const keys(Qt::CTRL | Qt::SHIFT | Qt::Key_F5);
        return keys.toString(QKeySequence::NativeText).size() == 13;
    });
    // In the user's locale, which differs between the two in its blanks only.
    CXTime const time(1700000000);
    QDateTime const qt_time = QDateTime::fromSecsSinceEpoch(1700000000);
    QLocale const user = QLocale::system();
    add("label/date/KorTools", [=] { return GetFileDateString(time).GetLength() > 10; });
    add("label/date/Qt", [=] {
        QString const date = user.toString(qt_time.date(), QLocale::ShortFormat);
        return (date + ' ' + user.toString(qt_time.time(), "HH:mm")).size() > 10;
    });
}

} // namespace

int main(int argc, char **argv)
{
    add_texts();
    add_searches();
    add_arrays(100);
    add_arrays(10000);
    add_labels();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
