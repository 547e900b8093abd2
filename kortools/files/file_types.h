// SPDX-License-Identifier: MIT
// The file types that the process knows: what they are called in file dialogs, their extensions,
// and which component loads and saves them.
//
// There is one registry. It begins with the library's own types, and comes into being with the
// first call of a function below, if the application did not create it earlier. All functions may
// be called by any thread.
//
//   if (fileGetKindOf(path) == fileKind3D && (fileGetProperties(path) & fileCanLoad))
//       Load(path, fileGetLoader(path));
//
// A type is asked for by a file's name or by its class. Of a name only the extension counts, as
// fileGetExtension() gives it, in upper or lower case; of the types that share it the one that was
// registered first answers. Likewise the first type of a class answers for the class.
#pragma once

#include "kortools/core/array.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"
#include "kortools/files/io_plugin_mode.h"

// What the properties of a type tell: its kinds, and what can be done with it. Further low bits are
// the components' own.
inline constexpr unsigned int fileKindBitmap = 0x1000; // also set for what can be drawn as one
inline constexpr unsigned int fileKindFlash = 0x2000;  // beside fileKindWebPage
inline constexpr unsigned int fileKind3D = 0x4000;
inline constexpr unsigned int fileKindAudio = 0x8000;
inline constexpr unsigned int fileKindVideo = 0x10000;
inline constexpr unsigned int fileKindWebPage = 0x20000;
inline constexpr unsigned int fileKindArchive = 0x40000;
inline constexpr unsigned int fileCanLoad = 0x1 | 0x4; // one of these bits is enough
inline constexpr unsigned int fileCanSave = 0x2 | 0x8;

// A code of four ASCII characters, the first one in the highest byte: fileMakeCode("BMP ").
constexpr unsigned int fileMakeCode(char const (&text)[5])
{
    unsigned int code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

// The components of the library itself, and none at all.
inline constexpr unsigned int fileOwnComponent = fileMakeCode("BRNS");
inline constexpr unsigned int fileNoComponent = fileMakeCode("UNKN");

struct CFileExt {
    CXTString<wchar_t> m_description;        // for file dialogs
    CXTString<wchar_t> m_extensions;         // ".bmp|.dib", the main one first
    unsigned int m_class = 0;                // fileMakeCode("BMP ")
    unsigned int m_properties = 0;           // kinds and capabilities
    unsigned int m_loader = fileNoComponent; // code of the component that loads the type
    unsigned int m_saver = fileNoComponent;
    IoPluginCallback m_callback = nullptr; // of the plug-in that added the type; null: the library
};

// Adds a copy of the type, behind those that are there. Nothing is replaced: what has one of its
// extensions, or its class, already goes on to answer for it.
KORTOOLS_API void fileRegisterFile(CFileExt &type);

// Removes the types of a class: those of one loader, or all when `loader` is 0. For their
// extensions those types answer that were registered next.
KORTOOLS_API void fileUnregisterFile(unsigned int fileClass, unsigned int loader = 0);

// Copies of the types that pass the filter, by description without regard to case, and how many
// there are; null when there are none. fileFreeRegisteredFiles() frees them.
//
// With kinds in the filter a type needs one of them, and with other bits one of these:
//
//   0                                          =>  all types
//   fileKind3D | fileKindBitmap | fileCanLoad  =>  scenes and bitmaps that can be loaded
KORTOOLS_API CFileExt *fileGetRegisteredFiles(unsigned int &count, unsigned int filter = 0);
KORTOOLS_API void fileFreeRegisteredFiles(CFileExt *types, unsigned int count);

// --- By name: false, 0 or an empty text when no type has the extension; arguments are then
// unchanged

KORTOOLS_API bool fileGetFileExt(CXTString<wchar_t> const &name, CFileExt &type);
KORTOOLS_API unsigned int fileGetProperties(CXTString<wchar_t> const &name);

// One kind: fileKindBitmap only for what is nothing else, and fileKindFlash for nothing.
KORTOOLS_API unsigned int fileGetKindOf(CXTString<wchar_t> const &name);
KORTOOLS_API unsigned int fileGetClass(CXTString<wchar_t> const &name);
KORTOOLS_API unsigned int fileGetLoader(CXTString<wchar_t> const &name);
KORTOOLS_API unsigned int fileGetSaver(CXTString<wchar_t> const &name);
KORTOOLS_API CXTString<wchar_t> fileGetMainExtension(CXTString<wchar_t> const &name); // with dot

// The class of the type with that number, from 0, among those that have the extension: what to try
// when a file turns out not to be of the first one. 0 when there are no more.
KORTOOLS_API unsigned int fileFindParser(CXTString<wchar_t> const &name, unsigned int number = 0);

// The class, and the component that loads the file or, with `forSaving`, saves it.
KORTOOLS_API bool fileGetCInfo(CXTString<wchar_t> const &name, unsigned int &fileClass,
    unsigned int &component, bool forSaving = false);

// --- By class: the same

KORTOOLS_API bool fileGetExtensionInfo(unsigned int fileClass, CFileExt &type);
KORTOOLS_API unsigned int fileGetProperties(unsigned int fileClass);
KORTOOLS_API unsigned int fileGetKindOf(unsigned int fileClass);
KORTOOLS_API CXTString<wchar_t> fileGetMainExtension(unsigned int fileClass);

// Appends the extensions of the type, as they were registered or without their dots; returns how
// many.
KORTOOLS_API int fileGetExtensionArray(
    unsigned int fileClass, CXArray<CXTString<wchar_t>> &extensions, bool withDot = true);

// The same for all types that pass a filter, as for fileGetRegisteredFiles(); with `needsAll`, a
// type needs every bit of it. What several types share is appended once.
KORTOOLS_API int fileGetExtensionArrayByProperty(unsigned int properties,
    CXArray<CXTString<wchar_t>> &extensions, bool withDot = true, bool needsAll = false);
