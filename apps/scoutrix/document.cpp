// SPDX-License-Identifier: MIT
#include "apps/scoutrix/document.h"

#include "apps/common/console.h"
#include "apps/common/paths.h"
#include "apps/scoutrix/content_facts.h"
#include "apps/scoutrix/importer.h"
#include "apps/scoutrix/known_types.h"
#include "apps/scoutrix/type_table.h"
#include "kortools/files/file_status.h"

namespace scoutrix {
namespace {

bool refuse(Document &document, ExitCode code, Text const &reason)
{
    document.code = code;
    document.error = document.path + L": " + reason;
    return false;
}

void take(Document &document, SceneFile file)
{
    document.file = std::move(file);
    Text const library = get_library_name(document.type);
    document.loader = format_code(document.type.m_loader);
    if (!library.IsEmpty())
        document.loader += L", " + library;
    document.error.Empty();
    document.code = exit_done;
}

void load_by_plugin(Document &document)
{
    ContentFacts facts(document);
    CIoReport report;
    if (!fileLoadWithPlugin(kor_apps::make_absolute(document.path), facts, &report)) {
        refuse(document, get_exit_code(report.m_result), report.m_error);
        return;
    }
    SceneFile file = describe_file(document.path);
    file.properties.SetString(propertyFormat, report.m_type.m_description);
    facts.Store(file);
    document.type = report.m_type;
    take(document, std::move(file));
}

void load_by_own_reader(Document &document, CFileExt const &type)
{
    document.code = exit_damaged; // if it throws
    SceneFile file = import_file(document.path, document.done);
    document.type = type;
    take(document, std::move(file));
}

void load_by_type(Document &document)
{
    if (!fileGetFileExt(document.path, document.type)) {
        refuse(document, exit_unknown, L"no file type has its extension");
        return;
    }
    load_by_plugin(document);
    if (document.code != exit_unknown)
        return;
    CFileExt own;
    if (find_own_type(document.path, own))
        load_by_own_reader(document, own);
}

} // namespace

ExitCode get_exit_code(IoPluginResult result)
{
    switch (result) {
    case ioNoPlugin:
        return exit_unknown;
    case ioCannotRead:
        return exit_missing;
    case ioNoMemory:
    case ioFailed:
    case ioFaultyPlugin:
        return exit_failed;
    default:
        return exit_damaged;
    }
}

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

} // namespace scoutrix
