// SPDX-License-Identifier: MIT
#include "kortools/files/file_type_registry.h"
#include "kortools/files/file_types.h"

namespace kortools::files {
namespace {

// clang-format off
constexpr BuiltInFileType types[] = {
    { "Bmp files", ".bmp|.dib", fileMakeCode("BMP "), 0x1011 },
    { "Rla files", ".rla|.rpf", fileMakeCode("RLA "), 0x1001 },
    { "Icon files", ".ico", fileMakeCode("ICON"), 0x1001 },
    { "Z-Buffer files", ".kor", fileMakeCode("ZFIL"), 0x100B },
    { "Zpic softimage files", ".zpic", fileMakeCode("ZPIC"), 0x1041 },
    { "Pic softimage files", ".pic", fileMakeCode("PIC "), 0x1001 },
    { "Iff files", ".iff", fileMakeCode("IFF "), 0x1011 },
    { "Cursor files", ".cur|.ani", fileMakeCode("CURS"), 0x1001 },
    { "HDR files", ".hdr", fileMakeCode("HDR "), 0x1001 },
    { "3ds Max files (Dynamic Data Format Exchange)", ".max", fileMakeCode("3MAX"), 0x4013 },
    { "XSI Softimage files", ".xsi", fileMakeCode("XSI "), 0x4013 },
    { "Maya files (Dynamic Data Format Exchange)", ".mb|.ma", fileMakeCode("MAYA"), 0x4013 },
    { "Brantis 3D Format files", ".3dif", fileMakeCode("3DIF"), 0x4013 },
    { "Windows audio files", ".wav", fileMakeCode("AIWV"), 0x8011 },
    { "Windows Media audio files", ".wma", fileMakeCode("AIWM"), 0x8011 },
    { "MPEG Audio files", ".mp3|.mp2|.mpa", fileMakeCode("AIMG"), 0x8011 },
    { "Macintosh audio files", ".aif|.aifc|.aiff", fileMakeCode("AIMC"), 0x8011 },
    { "Unix audio files", ".au", fileMakeCode("AIUX"), 0x8011 },
    { "Midi files", ".mid|.rmi|.midi", fileMakeCode("MIDI"), 0x8011 },
    { "Flash files", ".swf", fileMakeCode("FLAS"), 0x23011 },
    { "Html files", ".htm|.html|.htx|.asp|.alx|.stm|.shtml|.aspx", fileMakeCode("IHTM"), 0x21011 },
    { "Avi files", ".avi", fileMakeCode("AVI "), 0x10113 },
    // Twice .wmv, of which the first one answers, and twice the same class: as hosts know them.
    { "MPG4 files", ".mpeg|.mpg|.mp4|.m2v|.m4v|.wmv", fileMakeCode("MPG4"), 0x10004 },
    { "Windows Media Video files", ".wmv", fileMakeCode("WMV "), 0x10004 },
    { "QuickTime files", ".mov", fileMakeCode("MOV "), 0x10004 },
    { "Flash video files", ".flv", fileMakeCode("MOV "), 0x10004 },
    { "Zip files", ".zip", fileMakeCode("ZIP "), 0x40003 },
    { "Rar files", ".rar", fileMakeCode("RAR "), 0x40000 },
    { "Tar files", ".tar", fileMakeCode("TAR "), 0x40000 },
    { "7-zip files", ".7z", fileMakeCode("ZIP7"), 0x40000 },
    { "gz files", ".gz", fileMakeCode("GZ  "), 0x40000 },
};
// clang-format on

} // namespace

std::span<BuiltInFileType const> get_built_in_file_types()
{
    return types;
}

} // namespace kortools::files
