// SPDX-License-Identifier: MIT
#include "apps/scene/scene_file.h"

#include "apps/common/console.h"
#include "apps/common/paths.h"
#include "kortools/archive/archive.h"
#include "kortools/archive/file.h"

namespace scoutrix {
namespace {

constexpr unsigned int buffer_size = 64 * 1024;

void remove_file(Text const &path)
{
    std::error_code ignored;
    std::filesystem::remove(kor_apps::to_native(path), ignored);
}

void write_scene(CScene const &scene, Text const &path)
{
    CXFile file(path, CXFile::modeCreate | CXFile::modeWrite | CXFile::shareExclusive, true);
    try {
        CXArchive archive(&file, CXArchive::store, buffer_size);
        archive << &scene;
        archive.Close();
        file.Flush(); // on the disk before it replaces an earlier scene
        file.Close();
    } catch (...) {
        file.Abort();
        remove_file(path);
        throw;
    }
}

// What an archive's complaint means to somebody who opened a file.
wchar_t const *explain(CXArchiveException::ArchiveExceptionType cause)
{
    switch (cause) {
    case CXArchiveException::endOfFile:
        return L"the scene is cut";
    case CXArchiveException::badSchema:
        return L"the scene was written by another version";
    default:
        return L"not a scene, or a damaged one";
    }
}

} // namespace

std::unique_ptr<CScene> load_scene(Text const &path)
{
    CXFile file(true);
    CXFileException error;
    if (!file.Open(path, CXFile::modeRead | CXFile::shareDenyWrite, &error))
        kor_apps::fail(error.GetErrorMessage());
    CXArchive archive(&file, CXArchive::load, buffer_size);
    std::unique_ptr<CScene> scene;
    Text problem;
    try {
        CScene *loaded = nullptr;
        archive >> loaded;
        scene.reset(loaded);
    } catch (CXArchiveException *exception) {
        problem = explain(exception->GetCause());
        exception->Delete();
        archive.DeleteOrphans();
    } catch (CXFileException *exception) {
        archive.DeleteOrphans();
        if (exception->GetCause() != CXFileException::genericException)
            throw; // the disk's fault
        problem = L"the scene is cut or damaged";
        exception->Delete();
    } catch (...) {
        archive.DeleteOrphans();
        throw;
    }
    if (problem.IsEmpty() && scene == nullptr)
        problem = L"not a scene";
    else if (problem.IsEmpty() && archive.GetBytesLeft() != 0)
        problem = L"not a scene: something follows it";
    if (!problem.IsEmpty())
        kor_apps::fail(path + L": " + problem);
    return scene;
}

void save_scene(CScene const &scene, Text const &path)
{
    Text const temporary = path + L".tmp";
    write_scene(scene, temporary);
    std::error_code error;
    std::filesystem::rename(kor_apps::to_native(temporary), kor_apps::to_native(path), error);
    if (error)
        kor_apps::fail(path + L": the scene could not be replaced; it was written as " + temporary);
}

} // namespace scoutrix
