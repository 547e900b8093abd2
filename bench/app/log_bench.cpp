// SPDX-License-Identifier: MIT
// The log beside spdlog's basic_file_sink_mt, flushed after every line and with the message alone
// as its pattern: lines from one thread and from two, and lines that the level keeps out. spdlog
// gets the text in UTF-8, ours is also measured with wide text.
#include "kortools/app/log.h"

#include <benchmark/benchmark.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

std::filesystem::path get_path()
{
    return std::filesystem::temp_directory_path() / "kortools-bench.log";
}

// How many lines of a measurement are in the file.
long long count_lines()
{
    std::ifstream file(get_path());
    long long count = 0;
    for (std::string line; std::getline(file, line);)
        count += line.find("triangles") != line.npos;
    return count;
}

class KorLog {
public:
    KorLog() { SetLogFile(get_path().wstring().c_str(), logFileCreate, logLevelAll); }
    ~KorLog() { CloseLogFile(); }
    void write(int number)
    {
        WriteToLogFile("mesh %d of %s: %d triangles\n", number, "table.obj", number * 7);
    }
    void disable() { SetLogLevel(logLevelNone); }
};

class WideKorLog : public KorLog {
public:
    void write(int number)
    {
        WriteToLogFile(L"mesh %d of %s: %d triangles\n", number, L"table.obj", number * 7);
    }
};

class SpdLog {
public:
    SpdLog()
        : m_log("bench", std::make_shared<spdlog::sinks::basic_file_sink_mt>(get_path(), true))
    {
        m_log.set_pattern("%v");
        m_log.flush_on(spdlog::level::trace);
    }
    void write(int number)
    {
        m_log.info("mesh {} of {}: {} triangles", number, "table.obj", number * 7);
    }
    void disable() { m_log.set_level(spdlog::level::off); }

private:
    spdlog::logger m_log;
};

template <class Log> void write_lines(benchmark::State &state)
{
    int count = 0;
    {
        Log log;
        for (auto _ : state)
            log.write(count++);
    }
    if (count_lines() != count)
        state.SkipWithError("lines are missing");
    std::filesystem::remove(get_path());
}

template <class Log> void write_from_threads(benchmark::State &state)
{
    constexpr int lines = 20'000;
    {
        Log log;
        for (auto _ : state) {
            auto const write = [&] {
                for (int i = 0; i < lines; ++i)
                    log.write(i);
            };
            std::thread other(write);
            write();
            other.join();
        }
    }
    if (count_lines() != 2 * lines * static_cast<long long>(state.iterations()))
        state.SkipWithError("lines are missing");
    std::filesystem::remove(get_path());
}

template <class Log> void suppress_lines(benchmark::State &state)
{
    {
        Log log;
        log.disable();
        for (auto _ : state)
            log.write(1);
    }
    if (count_lines() != 0)
        state.SkipWithError("lines were written");
    std::filesystem::remove(get_path());
}

} // namespace

BENCHMARK(write_lines<KorLog>)->Name("line/narrow/KorTools");
BENCHMARK(write_lines<SpdLog>)->Name("line/narrow/spdlog");
BENCHMARK(write_lines<WideKorLog>)->Name("line/wide/KorTools");
BENCHMARK(write_lines<SpdLog>)->Name("line/wide/spdlog");
BENCHMARK(write_from_threads<KorLog>)->Name("40000 lines/two threads/KorTools")->UseRealTime();
BENCHMARK(write_from_threads<SpdLog>)->Name("40000 lines/two threads/spdlog")->UseRealTime();
BENCHMARK(suppress_lines<KorLog>)->Name("suppressed line/KorTools");
BENCHMARK(suppress_lines<SpdLog>)->Name("suppressed line/spdlog");

BENCHMARK_MAIN();
