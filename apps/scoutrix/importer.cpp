// SPDX-License-Identifier: MIT
#include "apps/scoutrix/importer.h"

#include "apps/common/paths.h"
#include "kortools/app/thread_registry.h"
#include "kortools/archive/file.h"
#include "kortools/files/file_status.h"

#include <cstring>

namespace scoutrix {
namespace {

struct Format {
    wchar_t const *name;
    wchar_t const *kind;
    void (*import)(ImportSource const &source, SceneFile &file);
};

constexpr Format bmp_format = { L"Windows Bitmap", L"bitmap", import_bmp };
constexpr Format png_format = { L"Portable Network Graphics", L"bitmap", import_png };
constexpr Format obj_format = { L"Wavefront OBJ", L"mesh", import_obj };

Format const &find_format(ImportSource const &source)
{
    unsigned char head[8] = {};
    unsigned int const size = source.file.Read(head, sizeof head);
    if (size == 0)
        source.Fail(L"the file is empty");
    if (std::memcmp(head, "BM", 2) == 0)
        return bmp_format;
    if (std::memcmp(head, "\x89PNG", 4) == 0)
        return png_format;
    if (std::memchr(head, 0, size) != nullptr)
        source.Fail(L"not a file of a known kind (BMP, PNG or Wavefront OBJ)");
    return obj_format;
}

} // namespace

void ImportSource::Fail(wchar_t const *reason) const
{
    kor_apps::fail(name + L": " + reason);
}

void ImportSource::Update(unsigned long long bytes) const
{
    done = bytes;
    if (ShouldCancelThread(0))
        Fail(L"cancelled");
}

void ImportSource::Read(unsigned long long offset, void *target, unsigned int size) const
{
    file.Seek(static_cast<long long>(offset), CXFile::begin);
    if (file.Read(target, size) != size)
        Fail(L"the file is cut");
}

SceneFile describe_file(Text const &path)
{
    Text const absolute = kor_apps::make_absolute(path);
    SceneFile file;
    file.name = absolute.Mid(absolute.ReverseFind(L'\\') + 1);
    file.folder = kor_apps::from_native(kor_apps::to_native(absolute).parent_path());
    file.properties.SetULongInt(propertySize, fileGetSize(absolute));
    file.properties.SetXTime(propertyModified, fileGetLastWriteDate(absolute));
    return file;
}

SceneFile import_file(Text const &path, std::atomic<unsigned long long> &done)
{
    CXFile file(true);
    CXFileException error;
    if (!file.Open(path, CXFile::modeRead | CXFile::shareDenyWrite, &error))
        kor_apps::fail(error.GetErrorMessage());
    ImportSource const source { file, path, done };
    Format const &format = find_format(source);
    file.Seek(0, CXFile::begin);
    SceneFile result = describe_file(path);
    result.properties.SetString(propertyKind, format.kind);
    result.properties.SetString(propertyFormat, format.name);
    format.import(source, result);
    return result;
}

} // namespace scoutrix
