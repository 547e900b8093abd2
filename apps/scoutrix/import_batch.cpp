// SPDX-License-Identifier: MIT
#include "apps/scoutrix/import_batch.h"

#include "apps/common/console.h"
#include "apps/common/progress.h"
#include "apps/scoutrix/host_log.h"
#include "apps/scoutrix/importer.h"
#include "kortools/app/thread.h"
#include "kortools/app/thread_registry.h"
#include "kortools/archive/exception.h"
#include "kortools/files/file_status.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace scoutrix {
namespace {

// What the threads share: the tasks, and which of them is the next.
class Batch {
public:
    explicit Batch(std::deque<ImportTask> &tasks)
        : m_tasks(tasks)
    {
        for (ImportTask &task : m_tasks) {
            task.size = fileGetSize(task.path);
            m_total += task.size;
        }
    }

    // Null when none is left, or the thread is to end.
    ImportTask *Take()
    {
        std::size_t const index = m_next++;
        return index < m_tasks.size() && !ShouldCancelThread(0) ? &m_tasks[index] : nullptr;
    }

    ProcessProgressInfo GetProgress() const
    {
        ProcessProgressInfo info { 0, m_total };
        for (ImportTask const &task : m_tasks)
            info.done += std::min<unsigned long long>(task.done, task.size);
        return info;
    }

private:
    std::deque<ImportTask> &m_tasks;
    std::atomic<std::size_t> m_next { 0 };
    unsigned long long m_total = 0; // bytes
};

void import_task(ImportTask &task)
{
    log_line(L"reading " + task.path);
    try {
        task.file = import_file(task.path, task.done);
        task.error.Empty();
    } catch (CXException *exception) {
        task.error = exception->GetErrorMessage();
        exception->Delete();
    } catch (std::exception const &error) {
        task.error = task.path + L": " + kor_apps::from_utf8(error.what());
    }
    if (ShouldCancelThread(0)) {
        log_line(L"cancelled " + task.path);
        return;
    }
    task.done = task.size;
    log_line(task.error.IsEmpty() ? L"read " + task.path : L"failed: " + task.error);
}

class ImportThread : public CXThread {
public:
    explicit ImportThread(Batch &batch)
        : CXThread(true)
        , m_batch(batch)
    {
    }

    bool Run() override
    {
        while (ImportTask *const task = m_batch.Take())
            import_task(*task);
        return true;
    }

private:
    Batch &m_batch;
};

using Threads = std::vector<std::unique_ptr<CXThread>>;

// Waits for the threads also when something is thrown: they use the batch.
class ThreadScope {
public:
    ThreadScope(Batch &batch, int count)
    {
        m_threads.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            CXThread *const thread = CXThread::BeginThread(
                new ImportThread(batch), xThreadPriorityNormal, CXThread::keepAutoDelete);
            if (thread != nullptr)
                m_threads.emplace_back(thread);
        }
        if (m_threads.empty())
            kor_apps::fail(L"no thread could be started");
    }
    ~ThreadScope()
    {
        for (auto const &thread : m_threads)
            thread->WaitForEnd();
    }
    ThreadScope(ThreadScope const &) = delete;
    ThreadScope &operator=(ThreadScope const &) = delete;

    bool WaitForAll(unsigned int milliseconds) const
    {
        return std::all_of(m_threads.begin(), m_threads.end(),
            [&](auto const &thread) { return thread->WaitForEnd(milliseconds); });
    }

private:
    Threads m_threads;
};

} // namespace

bool run_imports(std::deque<ImportTask> &tasks, int threads)
{
    constexpr unsigned int tick = 40; // milliseconds between reports
    LogIndent const indent;
    Batch batch(tasks);
    ThreadScope const scope(
        batch, std::clamp(threads, 1, std::max(1, static_cast<int>(tasks.size()))));
    bool ended = false;
    while (!ended) {
        ended = scope.WaitForAll(tick);
        progressCallCallback(kor_apps::progressShow | progressQueryCancel, batch.GetProgress());
    }
    return !progressUserCancel();
}

} // namespace scoutrix
