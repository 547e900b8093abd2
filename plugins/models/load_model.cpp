// SPDX-License-Identifier: MIT
#include "plugins/models/load_model.h"

#include <algorithm>
#include <assimp/DefaultIOSystem.h>
#include <assimp/IOStream.hpp>
#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace model_plugin {
namespace {

constexpr std::uint64_t maximum_file = 1ULL << 30; // bytes; the importers need many times as much

// What ends an import, kept here because importers swallow exceptions and go on.
class Watch : public Assimp::ProgressHandler {
public:
    explicit Watch(IoPluginLoad &request)
        : m_request(request)
    {
    }
    bool Update(float fraction) override
    {
        // Handing over is the last tenth. Steps that do not know their part repeat the last one.
        if (fraction > 0)
            m_fraction = std::max(m_fraction, std::min(double(fraction), 1.0) * 0.9);
        if (!m_request.progress(m_request.host, m_fraction))
            end(ioCancelled, "cancelled");
        return true;
    }
    [[noreturn]] void end(IoPluginResult result, char const *reason)
    {
        m_failure.emplace(result, reason);
        throw *m_failure;
    }
    void rethrow() const
    {
        if (m_failure)
            throw *m_failure;
    }

private:
    IoPluginLoad &m_request;
    double m_fraction = 0;
    std::optional<Failure> m_failure;
};

// A file that is being read. Some importers read on and on behind the end of one that is cut.
class WatchedFile : public Assimp::IOStream {
public:
    WatchedFile(Assimp::IOStream *file, Watch &watch)
        : m_file(file)
        , m_watch(watch)
    {
    }
    std::size_t Read(void *target, std::size_t size, std::size_t count) override
    {
        constexpr int tolerated_reads = 1000;
        std::size_t const done = m_file->Read(target, size, count);
        if (done == 0 && ++m_empty_reads > tolerated_reads)
            m_watch.end(ioDamaged, "the file is cut");
        if (++m_reads % 1024 == 0)
            m_watch.Update(-1);
        return done;
    }
    std::size_t Write(void const *, std::size_t, std::size_t) override { return 0; }
    aiReturn Seek(std::size_t offset, aiOrigin origin) override
    {
        return m_file->Seek(offset, origin);
    }
    std::size_t Tell() const override { return m_file->Tell(); }
    std::size_t FileSize() const override { return m_file->FileSize(); }
    void Flush() override { }

private:
    std::unique_ptr<Assimp::IOStream> m_file;
    Watch &m_watch;
    int m_empty_reads = 0;
    unsigned int m_reads = 0;
};

// Lets a file use what lies in its own folder and below, and nothing else of the disk.
class FolderFiles : public Assimp::DefaultIOSystem {
public:
    FolderFiles(std::filesystem::path const &file, Watch &watch)
        : m_folder(std::filesystem::weakly_canonical(file.parent_path()))
        , m_watch(watch)
    {
    }

    bool Exists(char const *path) const override
    {
        return is_inside(path) && DefaultIOSystem::Exists(path);
    }
    Assimp::IOStream *Open(char const *path, char const *mode) override
    {
        m_watch.Update(-1);
        bool const writes = std::string(mode).find_first_of("wa+") != std::string::npos;
        Assimp::IOStream *const file
            = !writes && is_inside(path) ? DefaultIOSystem::Open(path, mode) : nullptr;
        return file ? new WatchedFile(file, m_watch) : nullptr;
    }

private:
    bool is_inside(char const *path) const
    {
        std::error_code error;
        std::filesystem::path const real = std::filesystem::weakly_canonical(path, error);
        auto const [end, unused]
            = std::mismatch(m_folder.begin(), m_folder.end(), real.begin(), real.end());
        return !error && end == m_folder.end() && std::filesystem::is_regular_file(real, error)
            && std::filesystem::file_size(real, error) <= maximum_file;
    }

    std::filesystem::path m_folder;
    Watch &m_watch;
};

// The importer, which would otherwise free what it is lent.
class LentImporter : public Assimp::Importer {
public:
    LentImporter(Watch &watch, FolderFiles &files)
    {
        SetProgressHandler(&watch);
        SetIOHandler(&files);
    }
    ~LentImporter()
    {
        SetProgressHandler(nullptr);
        SetIOHandler(nullptr);
    }
};

constexpr unsigned int steps
    = aiProcess_JoinIdenticalVertices | aiProcess_ValidateDataStructure | aiProcess_FindInvalidData;

} // namespace

void set_text(char *target, std::size_t size, char const *text)
{
    std::size_t length = 0;
    while (length + 1 < size && text[length])
        ++length;
    while (length > 0 && text[length] && (text[length] & 0xC0) == 0x80)
        --length; // no part of a character stays
    std::copy_n(text, length, target);
    target[length] = '\0';
}

void load(IoPluginLoad &request)
{
    if (request.file_size > maximum_file)
        throw Failure(ioUnsupported, "the file is larger than 1 GiB");
    Watch watch(request);
    FolderFiles files(request.path, watch);
    LentImporter importer(watch, files);
    importer.SetPropertyBool(AI_CONFIG_IMPORT_NO_SKELETON_MESHES, true);
    watch.Update(0);
    aiScene const *const scene = importer.ReadFile(request.path, steps);
    watch.rethrow();
    if (!scene)
        throw Failure(ioDamaged, importer.GetErrorString());
    if (scene->mNumMeshes == 0)
        throw Failure(ioDamaged, "the file has no meshes");
    hand_over(request, *scene);
}

} // namespace model_plugin
