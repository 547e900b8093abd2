// SPDX-License-Identifier: MIT
// The string matcher beside two engines for regular expressions, in a list of 100 000 names: how
// long it takes to find all that match what a user typed. Each engine gets the patterns that its
// user would write for the same question, and must find as many names.
#include "kortools/archive/archive.h"
#include "kortools/text/string_match.h"

#include <QRegularExpression>
#include <benchmark/benchmark.h>
#include <re2/re2.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int name_count = 100000;

// "Old oak table 00017.kor": one to four words and a number.
std::vector<std::string> const &get_names()
{
    static std::vector<std::string> const s_names = [] {
        char const *const words[] = { "Table", "chair", "Lamp", "oak", "leg", "drawer", "Old",
            "small", "window", "tabletop", "steel", "handle", "Timber", "terrace", "shelf" };
        std::mt19937 random(3);
        std::vector<std::string> names(name_count);
        for (std::size_t i = 0; i < names.size(); ++i) {
            for (auto left = 1 + random() % 4; left > 0; --left)
                names[i] += words[random() % std::size(words)] + std::string(" ");
            names[i] += std::to_string(i) + ".kor";
        }
        return names;
    }();
    return s_names;
}

// What a user looks for: all of the patterns must be found in a name, and `absent` must not.
struct Question {
    char const *row;
    wchar_t const *expression;
    std::vector<char const *> patterns;
    char const *absent = nullptr;
};

class Ours {
public:
    explicit Ours(Question const &question)
    {
        m_match.PrepareMatch(question.expression);
        for (std::string const &name : get_names())
            m_names.emplace_back(std::wstring(name.begin(), name.end()));
    }
    long count()
    {
        return std::ranges::count_if(
            m_names, [&](CXTString<wchar_t> const &name) { return m_match.Match(name); });
    }

private:
    CXStringMatch m_match;
    std::vector<CXTString<wchar_t>> m_names;
};

// Pattern: made from a text, and with a matches(name). Name: made from a text.
template <class Pattern, class Name> class Engine {
public:
    explicit Engine(Question const &question)
        : m_absent(question.absent ? std::make_unique<Pattern>(question.absent) : nullptr)
    {
        for (char const *const pattern : question.patterns)
            m_patterns.push_back(std::make_unique<Pattern>(pattern));
        for (std::string const &name : get_names())
            m_names.push_back(Name(name.c_str()));
    }
    long count() const
    {
        return std::ranges::count_if(m_names, [&](Name const &name) {
            return std::ranges::all_of(m_patterns, [&](auto const &pattern) {
                return pattern->matches(name);
            }) && !(m_absent && m_absent->matches(name));
        });
    }

private:
    std::vector<std::unique_ptr<Pattern>> m_patterns;
    std::unique_ptr<Pattern> m_absent;
    std::vector<Name> m_names;
};

class RE2Pattern {
public:
    explicit RE2Pattern(char const *text)
        : m_pattern(text, get_options())
    {
    }
    bool matches(std::string const &name) const { return RE2::PartialMatch(name, m_pattern); }

private:
    static RE2::Options get_options()
    {
        RE2::Options options;
        options.set_case_sensitive(false);
        options.set_never_capture(true);
        return options;
    }

    RE2 m_pattern;
};

class QtPattern {
public:
    explicit QtPattern(char const *text)
        : m_pattern(
            text, QRegularExpression::CaseInsensitiveOption | QRegularExpression::DontCaptureOption)
    {
        m_pattern.optimize();
    }
    bool matches(QString const &name) const { return m_pattern.match(name).hasMatch(); }

private:
    QRegularExpression m_pattern;
};

template <class Searcher> void add(Question const &question, char const *library, long expected)
{
    std::string const row = "names/" + std::string(question.row) + '/' + library;
    auto const searcher = std::make_shared<Searcher>(question);
    auto const run = [=](benchmark::State &state) {
        for (auto _ : state) {
            if (searcher->count() != expected)
                state.SkipWithError("wrong result");
        }
    };
    benchmark::RegisterBenchmark(row.c_str(), run)->Unit(benchmark::kMillisecond);
}

Question const questions[] = {
    { "word", L"table", { "(^| )table( |$)" } },
    { "beginning", L"tab*", { "(^| )tab" } },
    { "middle", L"*mbe*", { "mbe" } },
    { "wildcards", L"t?b*le", { "(^| )t[^ ]b[^ ]*le( |$)" } },
    { "both", L"table leg", { "(^| )table( |$)", "(^| )leg( |$)" } },
    { "either", L"shelf ^ window", { "(^| )(shelf|window)( |$)" } },
    { "but not", L"table !leg", { "(^| )table( |$)" }, "(^| )leg( |$)" },
    { "group", L"table (leg ^ drawer)", { "(^| )table( |$)", "(^| )(leg|drawer)( |$)" } },
    { "quoted", L"\"*oak table*\"", { "oak table" } },
    // Tries all ways to part a name, where an engine backtracks.
    { "hostile", L"*e*e*e*e*e*x", { "(^| )[^ ]*e[^ ]*e[^ ]*e[^ ]*e[^ ]*e[^ ]*x( |$)" } },
};

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    for (Question const &question : questions) {
        long const expected = Engine<RE2Pattern, std::string>(question).count();
        add<Ours>(question, "KorTools", expected);
        add<Engine<RE2Pattern, std::string>>(question, "RE2", expected);
        add<Engine<QtPattern, QString>>(question, "QRegularExpression", expected);
    }
    benchmark::RunSpecifiedBenchmarks();
}
