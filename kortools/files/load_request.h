// SPDX-License-Identifier: MIT
// One file on its way from a plug-in to a sink: the functions that the plug-in calls, with checks.
#pragma once

#include "kortools/archive/file.h"
#include "kortools/files/plugin_calls.h"
#include "kortools/files/plugin_files.h"
#include "kortools/files/plugin_records.h"

#include <exception>
#include <string>
#include <thread>
#include <vector>

namespace kortools::files {

// What a plug-in says about its own failure, and what went wrong here. The first failure stays, and
// everything the plug-in hands over after it is refused.
class RequestOutcome {
public:
    IoPluginResult result() const { return m_result; }
    CXTString<wchar_t> const &error() const { return m_error; }

    void fail_with_text(IoPluginResult result, CXTString<wchar_t> const &error);
    void fail(IoPluginResult result, std::string const &error);

    // What functions call that a plug-in calls: nothing may pass its frames. Without memory there
    // is no text.
    template <class MakeText> void fail_in_call(IoPluginResult result, MakeText make_text) noexcept
    {
        if (m_result != ioDone)
            return;
        m_result = result;
        try {
            m_error = make_text();
        } catch (CXException *exception) {
            exception->Delete();
        } catch (...) {
        }
    }
    void fail_with_exception() noexcept; // the one that is being handled

    // Takes the answer of an entry point, with the record's own result and text.
    void finish(CallOutcome outcome, IoPluginResult result, std::string_view error);

    // Throws on what a sink threw.
    void rethrow() const;

private:
    IoPluginResult m_result = ioDone;
    CXTString<wchar_t> m_error;
    std::exception_ptr m_exception;
};

class LoadRequest {
public:
    LoadRequest(CXFile &file, std::string const &native_path, CIoSink &sink);

    // Once. Throws what the sink throws.
    void run(CFileExt const &type);

    IoPluginResult result() const { return m_outcome.result(); }
    CXTString<wchar_t> const &error() const { return m_outcome.error(); }

    // Whether the sink has been given anything.
    bool has_delivered() const { return m_has_delivered; }

private:
    static std::size_t read(
        void *host, std::uint64_t offset, void *target, std::size_t size) noexcept;
    static bool progress(void *host, double fraction) noexcept;
    static std::int32_t add_material(void *host, IoPluginMaterial const *material) noexcept;
    static std::int32_t add_mesh(void *host, IoPluginMesh const *mesh) noexcept;
    static std::int32_t add_node(void *host, IoPluginNode const *node) noexcept;
    static bool begin_bitmap(void *host, IoPluginBitmap const *bitmap) noexcept;
    static bool add_rows(void *host, std::uint32_t first, std::uint32_t count, void const *rows,
        std::size_t stride) noexcept;

    template <class Use> static bool guarded(void *host, Use use) noexcept;
    template <class Record, class Taken>
    bool take(Record const *record, Fault (*check)(Record const *, SceneCounts const &, Taken &),
        bool (CIoSink::*give_to)(Taken const &));
    Fault check_rows(unsigned int first, unsigned int count, void const *rows, std::size_t stride);
    bool give(bool accepted);
    bool refuse(Fault const &fault);
    void check_completeness(CFileExt const &type);

    CXFile &m_file;
    CIoSink &m_sink;
    std::thread::id m_thread;
    IoPluginLoad m_record;
    RequestOutcome m_outcome;
    SceneCounts m_counts;
    CIoBitmapFormat m_bitmap;      // no width: none has begun
    std::vector<bool> m_seen_rows; // of m_bitmap
    unsigned int m_missing_rows = 0;
    bool m_has_delivered = false;
};

} // namespace kortools::files
