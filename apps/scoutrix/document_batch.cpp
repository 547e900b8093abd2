// SPDX-License-Identifier: MIT
#include "apps/scoutrix/document_batch.h"

#include "apps/common/console.h"
#include "apps/common/progress.h"
#include "apps/scoutrix/host_log.h"
#include "kortools/app/thread.h"
#include "kortools/app/thread_registry.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace scoutrix {
namespace {

// What the threads share: the documents whose paths are good, and which of them is the next.
class Batch {
public:
    Batch(std::deque<Document> &documents, unsigned int timeout)
    {
        for (Document &each : documents) {
            if (!test_path(each, timeout)) {
                log_line(L"failed: " + each.error);
                continue;
            }
            m_total += each.size;
            m_documents.push_back(&each);
        }
    }

    std::size_t GetCount() const { return m_documents.size(); }

    // Null when none is left, or the thread is to end.
    Document *Take()
    {
        std::size_t const index = m_next++;
        return index < m_documents.size() && !ShouldCancelThread(0) ? m_documents[index] : nullptr;
    }

    ProcessProgressInfo GetProgress() const
    {
        ProcessProgressInfo info { 0, m_total };
        for (Document const *const each : m_documents)
            info.done += std::min<unsigned long long>(each->done, each->size);
        return info;
    }

private:
    std::vector<Document *> m_documents;
    std::atomic<std::size_t> m_next { 0 };
    unsigned long long m_total = 0; // bytes
};

void load(Document &document)
{
    log_line(L"reading " + document.path);
    load_document(document);
    if (ShouldCancelThread(0)) {
        log_line(L"cancelled " + document.path);
        return;
    }
    document.done = document.size;
    if (document.error.IsEmpty())
        log_line(L"read " + document.path + L", " + document.type.m_description + L", by "
            + document.loader);
    else
        log_line(L"failed: " + document.error);
}

class LoadThread : public CXThread {
public:
    explicit LoadThread(Batch &batch)
        : CXThread(true)
        , m_batch(batch)
    {
    }

    bool Run() override
    {
        while (Document *const document = m_batch.Take())
            load(*document);
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
                new LoadThread(batch), xThreadPriorityNormal, CXThread::keepAutoDelete);
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

bool load_documents(std::deque<Document> &documents, BatchOptions const &options)
{
    constexpr unsigned int tick = 40; // milliseconds between reports
    LogIndent const indent;
    Batch batch(documents, options.timeout);
    if (batch.GetCount() == 0)
        return true;
    ThreadScope const scope(
        batch, std::clamp(options.threads, 1, static_cast<int>(batch.GetCount())));
    bool ended = false;
    while (!ended) {
        ended = scope.WaitForAll(tick);
        progressCallCallback(kor_apps::progressShow | progressQueryCancel, batch.GetProgress());
    }
    return !progressUserCancel();
}

} // namespace scoutrix
