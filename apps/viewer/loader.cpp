// SPDX-License-Identifier: MIT
#include "apps/viewer/loader.h"

#include "apps/common/console.h"
#include "apps/common/paths.h"
#include "apps/viewer/content.h"
#include "apps/viewer/shade.h"
#include "kortools/app/thread.h"
#include "kortools/archive/exception.h"
#include "kortools/ui/progress_dlg.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace viewer {
namespace {

constexpr int steps = 1000; // of the bar

// What the worker does, and what it shares with the thread of the windows.
struct Job {
    Text path;
    CXSize model_size;
    CProgressDlg &dialog;
    Loaded result;
    std::atomic<bool> is_done { false };

    bool ReportProgress(double fraction)
    {
        dialog.SetPos(static_cast<int>(fraction * steps), true);
        return !dialog.CheckCancelButton(false);
    }

    void Load()
    {
        Content content([this](double fraction) { return ReportProgress(fraction); });
        CIoReport report;
        if (!fileLoadWithPlugin(path, content, &report)) {
            result.error = path + L": " + report.m_error;
            result.code = scoutrix::get_exit_code(report.m_result);
            return;
        }
        result.picture = content.TakePicture();
        if (result.picture.pixels.empty()) {
            dialog.SetStatus(L"Shading\x2026");
            result.picture = shade_model(content.TakeModel(), model_size);
        }
    }

    // No exception may leave the thread.
    static bool Run(void *data)
    {
        auto *const job = static_cast<Job *>(data);
        try {
            job->Load();
        } catch (CXException *exception) {
            job->result.error = job->path + L": " + exception->GetErrorMessage();
            job->result.code = 1;
            exception->Delete();
        } catch (std::exception const &error) {
            job->result.error = job->path + L": " + kor_apps::from_utf8(error.what());
            job->result.code = 1;
        }
        job->is_done = true;
        return true;
    }
};

} // namespace

Loaded load_file(
    Text const &path, kortools::ui::BackEnd &back_end, CWnd *parent, CXSize const &model_size)
{
    constexpr unsigned int disk_timeout = 10000; // milliseconds
    scoutrix::Document document(kor_apps::make_absolute(path));
    if (!scoutrix::test_path(document, disk_timeout))
        return { {}, document.error, document.code };

    CProgressDlg dialog;
    dialog.Create(parent, L"Loading", path);
    dialog.SetRange(0, steps, true);
    Job job { document.path, model_size, dialog, {}, {} };
    CXThread worker(Job::Run, &job);
    worker.SetAutoDelete(false);
    if (CXThread::BeginThread(&worker, xThreadPriorityNormal, CXThread::keepAutoDelete) == nullptr)
        kor_apps::fail(L"no thread can be started");
    while (!job.is_done) {
        back_end.PumpMessages();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    worker.WaitForEnd();
    return std::move(job.result);
}

} // namespace viewer
