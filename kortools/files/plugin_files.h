// SPDX-License-Identifier: MIT
// Loading and saving files with the plug-ins that have registered their types.
//
// The plug-in is found by the extension of the file's name: the types that share it are tried in
// the order of their registration, until one does not say that the file is of another format. What
// it hands over is checked here; then it reaches the caller's sink.
//
//   class VertexCounter : public CIoSink {
//   public:
//       bool OnMesh(CIoMesh const &mesh) override { return m_count += mesh.m_vertexCount, true; }
//       unsigned long long m_count = 0;
//   };
//   VertexCounter counter;
//   CIoReport report;
//   if (!fileLoadWithPlugin(path, counter, &report))
//       WriteToLogFile(L"%s: %s\n", path.GetConstBuffer(), report.m_error.GetConstBuffer());
//
// Any thread, several files at the same time.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"
#include "kortools/files/file_types.h"
#include "kortools/files/io_plugin.h"

#include <span>
#include <vector>

struct CIoMaterial {
    CXTString<wchar_t> m_name;
    float m_diffuse[4] = {}; // red, green, blue and opacity, 0 to 1
    float m_specular[3] = {};
    float m_emissive[3] = {};
    float m_shininess = 0;        // exponent
    CXTString<wchar_t> m_texture; // image of the diffuse colour, as the file names it; or empty
};

// The spans are the plug-in's: valid during the call that they are given to.
struct CIoMesh {
    CXTString<wchar_t> m_name;
    int m_material = -1; // number in the order of OnMaterial(), or -1
    unsigned int m_vertexCount = 0;
    unsigned int m_faceCount = 0;
    std::span<float const> m_positions;          // x, y, z of each vertex
    std::span<float const> m_normals;            // the same, or empty
    std::span<float const> m_textureCoordinates; // u, v of each vertex, or empty
    std::span<unsigned int const> m_corners;     // numbers of vertices, face by face
    std::span<unsigned int const> m_faceSizes;   // corners of each face; empty: triangles
};

// A place in the scene, with what is shown there.
struct CIoNode {
    CXTString<wchar_t> m_name;
    int m_parent = -1;             // number in the order of OnNode(), or -1
    std::span<int const> m_meshes; // numbers in the order of OnMesh(); valid during the call
    double m_transform[16] = {};   // to the parent's coordinates: four rows, for column vectors
};

// The form of a picture's rows.
struct CIoBitmapFormat {
    unsigned int m_width = 0;         // pixels
    unsigned int m_height = 0;        // pixels
    unsigned int m_channels = 0;      // 1 grey, 2 grey and alpha, 3 red green blue, 4 and alpha
    IoPluginDepth m_depth = ioDepth8; // of a channel
    unsigned int m_fileBits = 0;      // of a pixel in the file, 0: not known

    unsigned long long GetRowSize() const // bytes
    {
        return static_cast<unsigned long long>(m_width) * m_channels * m_depth;
    }
};

// A bitmap in memory: rows from the top, GetRowSize() bytes each.
struct CIoBitmap {
    CIoBitmapFormat m_format;
    std::vector<unsigned char> m_rows;
};

// Takes what is in a file. Everything comes on the thread that loads, a reference after what it
// refers to. False ends the load, as an exception does, which reaches the caller of
// fileLoadWithPlugin(). What was taken before a failure is to be thrown away.
class KORTOOLS_API CIoSink {
public:
    CIoSink() = default;
    CIoSink(CIoSink const &) = delete;
    CIoSink &operator=(CIoSink const &) = delete;
    virtual ~CIoSink();

    // How far the load is, 0 to 1; false cancels it. By default true unless the thread is to be
    // cancelled (ShouldCancelThread) or the topmost progress callback has answered so.
    virtual bool OnProgress(double fraction);

    // By default true, and what is handed over is left.
    virtual bool OnMaterial(CIoMaterial const &material);
    virtual bool OnMesh(CIoMesh const &mesh);
    virtual bool OnNode(CIoNode const &node);
    virtual bool OnBitmap(CIoBitmapFormat const &format);

    // `count` rows of the picture, the first of them number `first` from the top, each GetRowSize()
    // bytes long and `stride` bytes behind the one before.
    virtual bool OnRows(
        unsigned int first, unsigned int count, unsigned char const *rows, std::size_t stride);
};

// How it went.
struct CIoReport {
    IoPluginResult m_result = ioDone;
    CXTString<wchar_t> m_error; // the reason, lower case without full stop; empty when it went well
    CFileExt m_type;            // that the file was loaded or saved as
};

// True when the whole file has been handed over. A path without a type that a plug-in can load
// fails with ioNoPlugin. `report` may be null. Throws what the sink throws.
KORTOOLS_API bool fileLoadWithPlugin(
    CXTString<wchar_t> const &path, CIoSink &sink, CIoReport *report = nullptr);

// The same into memory; a file of another kind than bitmaps fails. `bitmap` is unchanged after a
// failure. Refuses bitmaps above 4 GiB.
KORTOOLS_API bool fileLoadBitmap(
    CXTString<wchar_t> const &path, CIoBitmap &bitmap, CIoReport *report = nullptr);

// Saves a bitmap as the type of the path's extension. What is at the path is replaced only when
// everything is written. `quality` is 1 to 100 where the type has a choice, 0 the plug-in's own.
KORTOOLS_API bool fileSaveBitmap(CXTString<wchar_t> const &path, CIoBitmap const &bitmap,
    CIoReport *report = nullptr, unsigned int quality = 0);
