// SPDX-License-Identifier: MIT
#include "kortools/files/load_request.h"

#include <algorithm>

namespace kortools::files {

void RequestOutcome::fail_with_text(IoPluginResult result, CXTString<wchar_t> const &error)
{
    if (m_result != ioDone)
        return;
    m_result = result;
    m_error = error;
}

void RequestOutcome::fail(IoPluginResult result, std::string const &error)
{
    fail_with_text(result, to_wide_text(error));
}

void RequestOutcome::fail_with_exception() noexcept
{
    if (m_result != ioDone)
        return;
    m_exception = std::current_exception();
    m_result = ioFailed; // without a text, which nobody sees
}

void RequestOutcome::finish(CallOutcome outcome, IoPluginResult result, std::string_view error)
{
    if (outcome == CallOutcome::Closed)
        fail(ioNoPlugin, "the plug-in has been unloaded");
    if (outcome == CallOutcome::Threw)
        fail(ioFaultyPlugin, "an exception left the plug-in");
    if (outcome != CallOutcome::Failed)
        return;
    bool const is_known = result >= ioWrongFormat && result <= ioFailed;
    CXTString<wchar_t> const text = to_wide_text(error);
    if (text.IsEmpty())
        fail(is_known ? result : ioFailed, "the plug-in gave no reason");
    else
        fail_with_text(is_known ? result : ioFailed, text);
}

void RequestOutcome::rethrow() const
{
    if (m_exception)
        std::rethrow_exception(m_exception);
}

LoadRequest::LoadRequest(CXFile &file, std::string const &native_path, CIoSink &sink)
    : m_file(file)
    , m_sink(sink)
    , m_thread(std::this_thread::get_id())
{
    IO_PLUGIN_INIT(m_record);
    m_record.file_size = file.GetLength();
    m_record.path = native_path.c_str();
    m_record.host = this;
    m_record.read = read;
    m_record.progress = progress;
    m_record.add_material = add_material;
    m_record.add_mesh = add_mesh;
    m_record.add_node = add_node;
    m_record.begin_bitmap = begin_bitmap;
    m_record.add_rows = add_rows;
}

void LoadRequest::run(CFileExt const &type)
{
    m_record.file_class = type.m_class;
    IoPluginLoad record = m_record; // the plug-in's to write in; the functions use the other one
    CallOutcome const outcome = call_plugin(type.m_callback, ioModeLoad, &record);
    m_outcome.finish(outcome, record.result, { record.error, sizeof record.error });
    m_outcome.rethrow();
    if (m_outcome.result() == ioDone)
        check_completeness(type);
}

// A bitmap is one only with all its rows.
void LoadRequest::check_completeness(CFileExt const &type)
{
    if (m_missing_rows > 0)
        m_outcome.fail(ioFaultyPlugin,
            "the plug-in left out " + std::to_string(m_missing_rows) + " of "
                + std::to_string(m_bitmap.m_height) + " rows");
    if ((type.m_properties & fileKindBitmap) && m_bitmap.m_width == 0)
        m_outcome.fail(ioFaultyPlugin, "the plug-in handed over no bitmap");
}

// False when the request has failed, now or before. No exception reaches the plug-in.
template <class Use> bool LoadRequest::guarded(void *host, Use use) noexcept
{
    auto *const request = static_cast<LoadRequest *>(host);
    if (!request || std::this_thread::get_id() != request->m_thread
        || request->m_outcome.result() != ioDone)
        return false;
    try {
        return use(*request);
    } catch (...) { // carried past the plug-in's frames, to the caller of the load
        request->m_outcome.fail_with_exception();
        return false;
    }
}

bool LoadRequest::refuse(Fault const &fault)
{
    m_outcome.fail(ioFaultyPlugin, "faulty plug-in: " + fault.value_or(""));
    return false;
}

bool LoadRequest::give(bool accepted)
{
    m_has_delivered = true;
    if (!accepted)
        m_outcome.fail(ioCancelled, "what the file holds was refused");
    return accepted;
}

template <class Record, class Taken>
bool LoadRequest::take(Record const *record,
    Fault (*check)(Record const *, SceneCounts const &, Taken &),
    bool (CIoSink::*give_to)(Taken const &))
{
    Taken taken;
    if (Fault const fault = check(record, m_counts, taken))
        return refuse(fault);
    return give((m_sink.*give_to)(taken));
}

std::size_t LoadRequest::read(
    void *host, std::uint64_t offset, void *target, std::size_t size) noexcept
{
    std::size_t done = 0;
    guarded(host, [&](LoadRequest &request) {
        std::uint64_t const length = request.m_record.file_size;
        if (!target || offset >= length)
            return false;
        std::size_t const wanted
            = static_cast<std::size_t>(std::min<std::uint64_t>(size, length - offset));
        request.m_file.Seek(static_cast<long long>(offset), CXFile::begin);
        while (done < wanted) {
            constexpr std::size_t block = 1U << 30;
            auto const count = static_cast<unsigned int>(std::min(wanted - done, block));
            unsigned int const got
                = request.m_file.Read(static_cast<unsigned char *>(target) + done, count);
            if (got == 0)
                break;
            done += got;
        }
        return true;
    });
    return done;
}

bool LoadRequest::progress(void *host, double fraction) noexcept
{
    return guarded(host, [&](LoadRequest &request) {
        if (request.m_sink.OnProgress(fraction > 0 ? std::min(fraction, 1.0) : 0.0))
            return true;
        request.m_outcome.fail(ioCancelled, "cancelled");
        return false;
    });
}

std::int32_t LoadRequest::add_material(void *host, IoPluginMaterial const *material) noexcept
{
    std::int32_t number = -1;
    guarded(host, [&](LoadRequest &request) {
        CIoMaterial taken;
        if (Fault const fault = take_material(material, taken))
            return request.refuse(fault);
        bool const is_taken = request.give(request.m_sink.OnMaterial(taken));
        number = is_taken ? request.m_counts.materials++ : -1;
        return is_taken;
    });
    return number;
}

std::int32_t LoadRequest::add_mesh(void *host, IoPluginMesh const *mesh) noexcept
{
    std::int32_t number = -1;
    guarded(host, [&](LoadRequest &request) {
        bool const is_taken = request.take(mesh, take_mesh, &CIoSink::OnMesh);
        number = is_taken ? request.m_counts.meshes++ : -1;
        return is_taken;
    });
    return number;
}

std::int32_t LoadRequest::add_node(void *host, IoPluginNode const *node) noexcept
{
    std::int32_t number = -1;
    guarded(host, [&](LoadRequest &request) {
        bool const is_taken = request.take(node, take_node, &CIoSink::OnNode);
        number = is_taken ? request.m_counts.nodes++ : -1;
        return is_taken;
    });
    return number;
}

bool LoadRequest::begin_bitmap(void *host, IoPluginBitmap const *bitmap) noexcept
{
    return guarded(host, [&](LoadRequest &request) {
        if (request.m_bitmap.m_width > 0)
            return request.refuse("a second bitmap begins");
        CIoBitmapFormat format;
        if (Fault const fault = take_bitmap(bitmap, format))
            return request.refuse(fault);
        request.m_seen_rows.assign(format.m_height, false);
        request.m_missing_rows = format.m_height;
        request.m_bitmap = format;
        return request.give(request.m_sink.OnBitmap(format));
    });
}

Fault LoadRequest::check_rows(
    unsigned int first, unsigned int count, void const *rows, std::size_t stride)
{
    if (m_bitmap.m_width == 0)
        return "rows of no bitmap";
    if (!rows || count == 0)
        return "there are no rows";
    if (first >= m_bitmap.m_height || count > m_bitmap.m_height - first)
        return std::to_string(count) + " rows from " + std::to_string(first) + " on, of "
            + std::to_string(m_bitmap.m_height);
    if (stride < m_bitmap.GetRowSize() && count > 1)
        return "rows of " + std::to_string(m_bitmap.GetRowSize()) + " bytes, "
            + std::to_string(stride) + " apart";
    return std::nullopt;
}

bool LoadRequest::add_rows(void *host, std::uint32_t first, std::uint32_t count, void const *rows,
    std::size_t stride) noexcept
{
    return guarded(host, [&](LoadRequest &request) {
        if (Fault const fault = request.check_rows(first, count, rows, stride))
            return request.refuse(fault);
        for (unsigned int row = first; row < first + count; ++row) {
            request.m_missing_rows -= !request.m_seen_rows[row];
            request.m_seen_rows[row] = true;
        }
        return request.give(
            request.m_sink.OnRows(first, count, static_cast<unsigned char const *>(rows), stride));
    });
}

} // namespace kortools::files
