// SPDX-License-Identifier: MIT
// Imports on several threads, and how a user stops them.
#include "apps/common/console.h"
#include "apps/scoutrix/document_batch.h"
#include "apps/scoutrix/known_types.h"
#include "kortools/app/progress_callback.h"
#include "kortools/app/thread_registry.h"
#include "tests/apps/host_support.h"
#include "tests/support/child_process.h"
#include "tests/support/files.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

namespace {

using namespace std::chrono_literals;

// A mesh that takes longer to read than anybody waits to stop it.
void write_large_mesh(std::filesystem::path const &path)
{
    std::string block;
    for (int i = 0; i < 4096; ++i)
        block += "v 0.125 -1.5e3 2.25\nvn 0 0 1\n";
    std::ofstream file(path, std::ios::binary);
    for (int i = 0; i < 1200; ++i) // 140 MB
        file << block;
}

// A test may have been started by a shell that lets its programs ignore Ctrl+C.
int run_host_part(std::vector<std::string> const &arguments)
{
    std::signal(SIGINT, SIG_DFL);
    return scoutrix::run_host(arguments);
}
kor_test::ChildPart const s_run_host("run_host", run_host_part);

// Marks the thread that calls it as soon as something has been read.
bool cancel_soon(unsigned int flags, ProcessProgressInfo const &, void *user)
{
    if ((flags & progressQueryCancel) == 0)
        return false;
    auto const *const documents = static_cast<std::deque<scoutrix::Document> *>(user);
    if (documents->front().done > 0)
        SetCancelThread(true, 0);
    return ShouldCancelThread(0);
}

class HostImport : public Host {
protected:
    std::string GetPath(char const *name) const { return to_utf8(m_folder.GetPath() / name); }

    // Presses Ctrl+C while the program reads the mesh; its exit code.
    int ImportAndInterrupt(std::string const &mesh)
    {
        kor_test::ChildProcess child("run_host",
            { "scoutrix", "--settings", m_settings, "--log", m_log, "--plugins", m_plugins,
                "import", mesh, "-o", m_scene });
        std::string const reading = "reading ";
        while (kor_test::read_file(m_log).find(reading) == std::string::npos)
            std::this_thread::sleep_for(5ms);
        child.interrupt();
        return child.wait();
    }
};

} // namespace

TEST_F(HostImport, KeepsTheOrderOfManyFiles)
{
    std::vector<std::string> arguments { "import", "-o", m_scene };
    std::string names = to_utf8(m_folder.GetPath().filename()) + ' ';
    for (int i = 0; i < 50; ++i) {
        std::string const name = "mesh" + std::to_string((i * 7) % 50) + ".obj";
        kor_test::write_file(GetPath(name.c_str()), "v 0 0 0\n");
        arguments.push_back(GetPath(name.c_str()));
        names += name + ' ';
    }
    EXPECT_EQ(Run(arguments), 0) << m_errors;
    EXPECT_EQ(ListNames({}), names);
    for (char const *name : { "mesh9.obj", "mesh3.obj" })
        kor_test::write_file(GetPath(name), "v 0\n");
    EXPECT_EQ(Run(arguments), 5);
    std::size_t const third = m_errors.find("mesh3.obj");
    EXPECT_LT(third, std::string::npos);
    EXPECT_LT(m_errors.find("mesh9.obj"), m_errors.size()) << "all that failed are told";
    EXPECT_EQ(third < m_errors.find("mesh9.obj"), names.find("mesh3.") < names.find("mesh9."));
}

TEST_F(HostImport, EndsItsThreadsWhenTheCallbackSaysSo)
{
    scoutrix::KnownTypes const types(L"");
    write_large_mesh(m_folder.GetPath() / "large.obj");
    std::deque<scoutrix::Document> documents;
    for (int i = 0; i < 4; ++i)
        documents.emplace_back(kor_apps::from_utf8(GetPath("large.obj")));
    progressPushCallback(cancel_soon, &documents);
    EXPECT_FALSE(scoutrix::load_documents(documents, { .threads = 2 }));
    EXPECT_TRUE(progressPopCallback());
    SetCancelThread(false, 0);
    EXPECT_LT(documents.front().file.properties.GetIDCount(), 8U) << "it was read to the end";
}

TEST_F(HostImport, IsCancelledByCtrlC)
{
    Import({ "cube.obj" });
    std::string const scene = kor_test::read_file(m_scene);
    std::filesystem::remove(m_log);
    write_large_mesh(m_folder.GetPath() / "large.obj");
    EXPECT_EQ(ImportAndInterrupt(GetPath("large.obj")), 130);
    EXPECT_EQ(kor_test::read_file(m_scene), scene) << "the scene that was there stays";
    EXPECT_FALSE(std::filesystem::exists(m_scene + ".tmp"));
    std::string const log = kor_test::read_file(m_log);
    for (char const *line :
        { "command: ", "\treading ", "\tcancelled ", "no scene written", "exit code 130" })
        EXPECT_NE(log.find(line), std::string::npos) << line << log;
}
