// SPDX-License-Identifier: MIT
#include "apps/scoutrix/document.h"

#include "apps/common/console.h"
#include "apps/scoutrix/importer.h"
#include "apps/scoutrix/type_table.h"
#include "kortools/files/file_status.h"
#include "kortools/files/path_parts.h"

#include <algorithm>

namespace scoutrix {
namespace {

constexpr unsigned int own_component = fileMakeCode("SCTX");

struct OwnType {
    wchar_t const *description;
    wchar_t const *extensions;
    unsigned int file_class;
    unsigned int kind;
};

// Bitmaps of the first class are a type of the library, which has no reader.
constexpr unsigned int bmp_class = fileMakeCode("BMP ");
constexpr OwnType own_types[]
    = { { L"Portable Network Graphics", L".png", fileMakeCode("PNG "), fileKindBitmap },
          { L"Wavefront OBJ files", L".obj", fileMakeCode("OBJ "), fileKind3D } };

// Whether the host has a reader for one of the types that share the path's extension.
bool has_own_reader(Text const &path)
{
    for (unsigned int number = 0; unsigned int const found = fileFindParser(path, number);
         ++number) {
        if (found == bmp_class
            || std::ranges::find(own_types, found, &OwnType::file_class) != std::end(own_types))
            return true;
    }
    return false;
}

bool refuse(Document &document, ExitCode code, Text const &reason)
{
    document.code = code;
    document.error = document.path + L": " + reason;
    return false;
}

void load_by_type(Document &document)
{
    if (!fileGetFileExt(document.path, document.type)) {
        refuse(document, exit_unknown, L"no file type has its extension");
    } else if (has_own_reader(document.path)) {
        document.loader = format_code(own_component);
        document.code = exit_damaged; // if it throws
        document.file = import_file(document.path, document.done);
        document.code = exit_done;
        document.error.Empty();
    } else {
        refuse(document, exit_unknown,
            L"nothing loads " + document.type.m_description + L"; a plug-in is missing");
    }
}

} // namespace

bool test_path(Document &document, unsigned int timeout)
{
    constexpr unsigned int every_path = 0x80000000; // not only those on shares
    unsigned int limit = timeout | every_path;
    if (!fileExists(document.path, &limit))
        return refuse(document, exit_missing,
            limit == 0xFFFFFFFF ? L"its disk does not answer" : L"there is no such file");
    if (fileIsDirectory(document.path))
        return refuse(document, exit_missing, L"it is a folder");
    document.size = fileGetSize(document.path);
    return true;
}

void load_document(Document &document)
{
    using namespace std::chrono;
    auto const start = steady_clock::now();
    try {
        load_by_type(document);
    } catch (CXException *exception) {
        document.error = exception->GetErrorMessage();
        exception->Delete();
    } catch (std::exception const &error) {
        refuse(document, exit_failed, kor_apps::from_utf8(error.what()));
    }
    document.time = duration_cast<microseconds>(steady_clock::now() - start);
}

OwnTypes::OwnTypes()
{
    for (OwnType const &own : own_types) {
        CFileExt type;
        type.m_description = own.description;
        type.m_extensions = own.extensions;
        type.m_class = own.file_class;
        type.m_properties = own.kind | 0x1;
        type.m_loader = own_component;
        fileRegisterFile(type);
    }
}

OwnTypes::~OwnTypes()
{
    for (OwnType const &own : own_types)
        fileUnregisterFile(own.file_class, own_component);
}

} // namespace scoutrix
