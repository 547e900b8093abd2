// SPDX-License-Identifier: MIT
// Saves that stop at each of their steps, by a crash or by a disk that fails.
#include "kortools/archive/exception.h"
#include "kortools/data/preferences_file.h"
#include "tests/structured/preferences_support.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <random>

using namespace kor_test;
using namespace kortools::data;

namespace {

struct Crash { };

#ifdef _WIN32
constexpr int stride = 7; // Wine's files are slow
constexpr int strikes = 2;
#else
constexpr int stride = 3;
constexpr int strikes = 20; // of the power at each step
#endif

enum class Stop { Crash, Failure, PowerLoss };
enum class Outcome { Saved, Stopped };

// Writes a few bytes at a time, and stops before step `last` (from 0).
Outcome save_until(std::wstring const &path, RecordKey key, std::string const &container, int last,
    Stop stop, std::function<void(DiskStep, wchar_t const *)> const &observe = {})
{
    PreferencesTuning tuning;
    tuning.chunk_size = 13;
    tuning.before_step = [&, step = 0](DiskStep kind, wchar_t const *file) mutable {
        if (observe)
            observe(kind, file);
        if (step++ != last)
            return;
        if (stop == Stop::Failure)
            kortools::archive::throw_exception(new CXFileException(CXFileException::diskFull));
        throw Crash();
    };
    try {
        save_record(path.c_str(), key, container.data(), container.size(), tuning);
        return Outcome::Saved;
    } catch (Crash) {
    } catch (CXException *exception) {
        exception->Delete();
    }
    return Outcome::Stopped;
}

// The containers of three records as a load sees them.
struct State {
    std::string m_containers[3];
    bool operator==(State const &) const = default;
};

std::string make_container(unsigned char fill, unsigned size)
{
    CCustomData data;
    data.SetBinary(1, std::string(size, static_cast<char>(fill)).data(), size);
    return to_stream(data);
}

// No value when there is no such file.
std::optional<std::string> find_file(std::wstring const &path)
{
    return std::filesystem::exists(path) ? std::optional(read_file(path)) : std::nullopt;
}

// A disk that keeps what was flushed, and of everything else what it likes.
class PowerLoss {
public:
    explicit PowerLoss(std::vector<std::wstring> const &paths)
    {
        for (std::wstring const &path : paths)
            m_flushed[path] = m_named[path] = find_file(path);
    }

    // Before a step of a save: what the one before has done.
    void observe(DiskStep step, std::wstring const &path)
    {
        if (m_last == DiskStep::Flush)
            m_flushed[m_last_path] = find_file(m_last_path);
        for (auto &[name, contents] : m_named) {
            if (m_last == DiskStep::FlushNames)
                contents = find_file(name);
        }
        m_last = step;
        m_last_path = path;
    }

    // The power goes.
    void strike(std::mt19937 &random)
    {
        for (auto const &[path, flushed] : m_flushed) {
            std::optional<std::string> const now = find_file(path);
            std::string const kept = flushed.value_or("");
            // A name that comes or goes has perhaps not done so on the disk.
            bool const was_there = m_named[path].has_value();
            bool const is_there = now && was_there ? true : (now || was_there) && random() % 2 == 0;
            std::filesystem::remove(path);
            if (is_there)
                write_file(path, mix(kept, now.value_or(kept), random));
        }
    }

private:
    static std::string mix(std::string const &kept, std::string const &now, std::mt19937 &random)
    {
        constexpr std::size_t sector = 16;
        std::string mixed = random() % 2 == 0 ? kept : now;
        std::size_t const size = mixed.size();
        for (std::size_t at = 0; at < size; at += sector) {
            std::string const &source = random() % 2 == 0 ? kept : now;
            std::string bytes = source.size() > at ? source.substr(at, sector) : "";
            bytes.resize(std::min(sector, size - at));
            mixed.replace(at, bytes.size(), bytes);
        }
        return mixed;
    }

    std::map<std::wstring, std::optional<std::string>> m_flushed; // contents on the disk
    std::map<std::wstring, std::optional<std::string>> m_named;   // no value: not in the folder
    DiskStep m_last = DiskStep::Change;
    std::wstring m_last_path;
};

class PreferencesCrash : public testing::Test {
protected:
    State load()
    {
        State state;
        for (unsigned i = 0; i < 3; ++i) {
            CCustomData data;
            if (data.LoadFromPrefs(path.c_str(), i, 0))
                state.m_containers[i] = to_stream(data);
        }
        return state;
    }
    void reset(State const &state)
    {
        std::filesystem::remove(path);
        std::filesystem::remove(path + L".tmp");
        for (unsigned i = 0; i < 3; ++i) {
            std::string const &container = state.m_containers[i];
            if (!container.empty())
                save_record(path.c_str(), { i, 0 }, container.data(), container.size());
        }
        ASSERT_EQ(load(), state);
    }

    // Stops a save of record 0 at every step. What is there then is the state before or after it;
    // and a save of record 2 that stops at every `step`-th step, and one that does not, keep it.
    void stop_everywhere(State const &before, std::string const &saved, Stop stop, int step)
    {
        std::mt19937 random(5);
        State after = before;
        after.m_containers[0] = saved;
        bool is_done = false;
        bool was_after = false;
        for (int last = 0; !is_done; ++last) {
            bool is_recovered = false;
            for (int again = 0; !is_recovered; again += step) {
                ASSERT_NO_FATAL_FAILURE(reset(before));
                PowerLoss power({ path, path + L".tmp" });
                is_done
                    = save_until(path, { 0, 0 }, saved, last, stop,
                          [&](DiskStep kind, wchar_t const *file) { power.observe(kind, file); })
                    == Outcome::Saved;
                if (stop == Stop::PowerLoss)
                    power.strike(random);
                State const found = load();
                ASSERT_TRUE(found == after || (!is_done && !was_after && found == before)) << last;
                was_after = found == after && stop != Stop::PowerLoss;
                bool const is_struck = stop == Stop::PowerLoss; // differently each time
                ASSERT_NO_FATAL_FAILURE(recover(found, is_struck ? -1 : again, stop, is_recovered))
                    << last;
                is_recovered = is_recovered && (!is_struck || again >= strikes);
            }
        }
    }
    void recover(State const &found, int last, Stop stop, bool &is_recovered)
    {
        State next = found;
        next.m_containers[2] = make_container('n', 40);
        is_recovered
            = save_until(path, { 2, 0 }, next.m_containers[2], last, stop) == Outcome::Saved;
        State const now = load();
        ASSERT_TRUE(now == next || (!is_recovered && now == found)) << "again at " << last;
        ASSERT_FALSE(is_recovered && std::filesystem::exists(path + L".tmp"));
    }

    TempFolder folder { get_fast_folder() };
    std::wstring const path = folder.GetFile(L"App.prefs");
};

TEST_F(PreferencesCrash, EveryStepOfASaveAndOfTheNextOneLosesNothing)
{
    State const before = { { make_container('a', 20), make_container('b', 30), {} } };
    stop_everywhere(before, make_container('s', 20), Stop::Crash, stride);
    for (unsigned size : { 1U, 60U }) // shorter than before, longer
        stop_everywhere(before, make_container('s', size), Stop::Crash, 9 * stride);
    stop_everywhere({}, make_container('s', 20), Stop::Crash, stride); // the first of a file
    stop_everywhere(before, make_container('s', 35), Stop::Failure, 7 * stride);
    for (unsigned size : { 1U, 90U })
        stop_everywhere(before, make_container('s', size), Stop::PowerLoss, 1);
}

} // namespace
