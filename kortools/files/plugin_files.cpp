// SPDX-License-Identifier: MIT
#include "kortools/files/plugin_files.h"

#include "kortools/app/progress_callback.h"
#include "kortools/app/thread_registry.h"
#include "kortools/archive/file.h"
#include "kortools/core/throw.h"
#include "kortools/files/current_directory.h"
#include "kortools/files/file_changes.h"
#include "kortools/files/file_type_registry.h"
#include "kortools/files/load_request.h"
#include "kortools/files/path_parts.h"
#include "kortools/files/relative_path.h"
#include "kortools/files/tmp_name.h"
#include "kortools/platform/file_system.h"

#include <algorithm>
#include <cstring>
#include <utility>

using namespace kortools::files;

namespace {

using String = CXTString<wchar_t>;

constexpr unsigned long long maximum_bitmap = 1ULL << 32; // bytes in memory

String absolute(String const &path)
{
    return fileMakeAbsolutePath(fileGetCurrentDirectory(), path);
}

// The types of a path's extension that a plug-in handles, or a report that there is none.
std::vector<CFileExt> find_plugin_types(
    String const &path, unsigned int capabilities, CIoReport &report)
{
    std::vector<CFileExt> types = find_file_types(path);
    std::erase_if(types, [&](CFileExt const &type) {
        return !type.m_callback || !(type.m_properties & capabilities);
    });
    if (types.empty()) {
        report.m_result = ioNoPlugin;
        report.m_error.Format(
            L"no plug-in for files of the type \"%s\"", fileGetExtension(path).GetConstBuffer());
    }
    return types;
}

// Keeps the report for callers that do not want one.
class Report {
public:
    explicit Report(CIoReport *report)
        : m_report(report ? *report : m_own)
    {
        m_report = CIoReport();
    }
    CIoReport &operator*() const { return m_report; }
    CIoReport *operator->() const { return &m_report; }

private:
    CIoReport m_own;
    CIoReport &m_report;
};

class BitmapCollector : public CIoSink {
public:
    bool OnBitmap(CIoBitmapFormat const &format) override
    {
        unsigned long long const size = format.GetRowSize() * format.m_height;
        m_is_too_large = size > maximum_bitmap;
        if (m_is_too_large)
            return false;
        m_bitmap.m_format = format;
        m_bitmap.m_rows.resize(size);
        return true;
    }
    bool OnRows(unsigned int first, unsigned int count, unsigned char const *rows,
        std::size_t stride) override
    {
        std::size_t const size = m_bitmap.m_format.GetRowSize();
        for (unsigned int row = 0; row < count; ++row)
            std::memcpy(&m_bitmap.m_rows[(first + row) * size], rows + row * stride, size);
        return true;
    }

    CIoBitmap m_bitmap;
    bool m_is_too_large = false;
};

// A file that a plug-in writes: beside the one it will replace, until it is complete.
class SaveRequest {
public:
    explicit SaveRequest(String const &path)
        : m_path(path)
        , m_temporary(fileCreateTmpName(fileStripPath(path) + L".part", true, fileStripName(path)))
    {
        CXFileException error;
        if (!m_file.Open(m_temporary, CXFile::modeCreate | CXFile::modeWrite, &error))
            m_outcome.fail_with_text(ioCannotWrite, error.GetErrorMessage());
    }
    SaveRequest(SaveRequest const &) = delete;
    SaveRequest &operator=(SaveRequest const &) = delete;
    ~SaveRequest()
    {
        if (!m_file.IsOpen())
            return;
        m_file.Abort();
        fileDelete(m_temporary);
    }

    void run(CFileExt const &type, CIoBitmap const &bitmap, unsigned int quality);
    RequestOutcome const &outcome() const { return m_outcome; }

private:
    static bool write(void *host, void const *data, std::size_t size) noexcept;
    static bool progress(void *host, double fraction) noexcept;
    void commit();

    String m_path;
    String m_temporary;
    CXFile m_file { true };
    RequestOutcome m_outcome;
};

void SaveRequest::run(CFileExt const &type, CIoBitmap const &bitmap, unsigned int quality)
{
    if (m_outcome.result() != ioDone)
        return;
    CIoBitmapFormat const &format = bitmap.m_format;
    IoPluginBitmap picture;
    IO_PLUGIN_INIT(picture);
    picture.width = format.m_width;
    picture.height = format.m_height;
    picture.channels = format.m_channels;
    picture.depth = format.m_depth;
    picture.file_bits = format.m_fileBits;
    std::string const native = kortools::platform::to_native_path(m_path.GetView());
    IoPluginSave record;
    IO_PLUGIN_INIT(record);
    record.file_class = type.m_class;
    record.quality = std::min(quality, 100U);
    record.path = native.c_str();
    record.host = this;
    record.write = write;
    record.progress = progress;
    record.bitmap = &picture;
    record.rows = bitmap.m_rows.data();
    record.stride = format.GetRowSize();
    CallOutcome const outcome = call_plugin(type.m_callback, ioModeSave, &record);
    m_outcome.finish(outcome, record.result, { record.error, sizeof record.error });
    if (m_outcome.result() == ioDone)
        commit();
}

// Some disks tell only at the end that they are full.
void SaveRequest::commit()
{
    try {
        m_file.Close();
    } catch (CXException *exception) {
        m_outcome.fail_with_text(ioCannotWrite, exception->GetErrorMessage());
        exception->Delete();
        fileDelete(m_temporary);
        return;
    }
    if (fileMove(m_temporary, m_path))
        return;
    m_outcome.fail(ioCannotWrite, "the file cannot be replaced");
    fileDelete(m_temporary);
}

bool SaveRequest::write(void *host, void const *data, std::size_t size) noexcept
{
    auto *const request = static_cast<SaveRequest *>(host);
    if (!request || (!data && size > 0) || request->m_outcome.result() != ioDone)
        return false;
    try {
        while (size > 0) {
            auto const count = static_cast<unsigned int>(std::min<std::size_t>(size, 1U << 30));
            request->m_file.Write(data, count);
            data = static_cast<unsigned char const *>(data) + count;
            size -= count;
        }
        return true;
    } catch (CXException *exception) {
        request->m_outcome.fail_in_call(
            ioCannotWrite, [exception] { return exception->GetErrorMessage(); });
        exception->Delete();
        return false;
    }
}

bool SaveRequest::progress(void *host, double) noexcept
{
    auto *const request = static_cast<SaveRequest *>(host);
    if (ShouldCancelThread(0) || progressUserCancel())
        request->m_outcome.fail_in_call(ioCancelled, [] { return String(L"cancelled"); });
    return request->m_outcome.result() == ioDone;
}

} // namespace

CIoSink::~CIoSink() = default;

bool CIoSink::OnProgress(double)
{
    return !ShouldCancelThread(0) && !progressUserCancel();
}

bool CIoSink::OnMaterial(CIoMaterial const &)
{
    return true;
}

bool CIoSink::OnMesh(CIoMesh const &)
{
    return true;
}

bool CIoSink::OnNode(CIoNode const &)
{
    return true;
}

bool CIoSink::OnBitmap(CIoBitmapFormat const &)
{
    return true;
}

bool CIoSink::OnRows(unsigned int, unsigned int, unsigned char const *, std::size_t)
{
    return true;
}

namespace {

bool load_with_plugin(CXTString<wchar_t> const &path, CIoSink &sink, CIoReport *report)
{
    Report const result(report);
    std::vector<CFileExt> const types = find_plugin_types(path, fileCanLoad, *result);
    if (types.empty())
        return false;
    String const place = absolute(path);
    CXFile file(false);
    CXFileException error;
    if (!file.Open(place, CXFile::modeRead | CXFile::shareDenyWrite, &error)) {
        result->m_result = ioCannotRead;
        result->m_error = error.GetErrorMessage();
        return false;
    }
    std::string const native = kortools::platform::to_native_path(place.GetView());
    for (CFileExt const &type : types) {
        LoadRequest request(file, native, sink);
        request.run(type);
        result->m_result = request.result();
        result->m_error = request.error();
        result->m_type = type;
        if (request.result() != ioWrongFormat || request.has_delivered())
            break;
    }
    return result->m_result == ioDone;
}

bool save_bitmap(CXTString<wchar_t> const &path, CIoBitmap const &bitmap, CIoReport *report,
    unsigned int quality)
{
    Report const result(report);
    std::vector<CFileExt> const types = find_plugin_types(path, fileCanSave, *result);
    if (types.empty())
        return false;
    CIoBitmapFormat const &format = bitmap.m_format;
    if (bitmap.m_rows.empty() || bitmap.m_rows.size() != format.GetRowSize() * format.m_height) {
        result->m_result = ioFailed;
        result->m_error = L"the bitmap's rows are not of its size";
        return false;
    }
    SaveRequest request(absolute(path));
    request.run(types.front(), bitmap, quality);
    result->m_result = request.outcome().result();
    result->m_error = request.outcome().error();
    result->m_type = types.front();
    return result->m_result == ioDone;
}

} // namespace

bool fileLoadWithPlugin(CXTString<wchar_t> const &path, CIoSink &sink, CIoReport *report)
{
    return kortools::core::translate_shortage([&] { return load_with_plugin(path, sink, report); });
}

bool fileLoadBitmap(CXTString<wchar_t> const &path, CIoBitmap &bitmap, CIoReport *report)
{
    Report const result(report);
    BitmapCollector collector;
    bool const is_loaded = fileLoadWithPlugin(path, collector, &*result);
    if (!is_loaded && collector.m_is_too_large) {
        result->m_result = ioNoMemory;
        result->m_error = L"the bitmap needs more than 4 GiB";
    } else if (is_loaded && collector.m_bitmap.m_rows.empty()) {
        result->m_result = ioWrongFormat;
        result->m_error = L"not a bitmap";
    } else if (is_loaded) {
        bitmap = std::move(collector.m_bitmap);
    }
    return result->m_result == ioDone;
}

bool fileSaveBitmap(CXTString<wchar_t> const &path, CIoBitmap const &bitmap, CIoReport *report,
    unsigned int quality)
{
    return kortools::core::translate_shortage(
        [&] { return save_bitmap(path, bitmap, report, quality); });
}
