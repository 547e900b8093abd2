// SPDX-License-Identifier: MIT
#include <cstdio>
#include <kortools/kortools.h>

enum class Answer { Present, Absent, Late };

static Answer ask(CXTString<wchar_t> const &path)
{
    unsigned int timeout = 500; // milliseconds; paths on this machine have no limit
    if (fileExists(path, &timeout))
        return Answer::Present;
    return timeout == 0xFFFFFFFF ? Answer::Late : Answer::Absent;
}

// The first bytes of a file, or an empty text; never longer than half a second.
static CXTString<char> read_start(CXTString<wchar_t> const &path)
{
    unsigned int timeout = 500;
    void *guard = nullptr;
    fileTimeOut(ioTimeOutCreate, path, &timeout, guard);
    fileTimeOut(ioTimeOutStart, path, &timeout, guard);
    char bytes[8] = {};
    CXFile file(false); // does not throw
    unsigned int count = 0;
    if (file.Open(path, CXFile::modeRead | CXFile::shareDenyNone))
        count = file.Read(bytes, sizeof bytes);
    bool const late = fileTimeOut(ioTimeOutEnd, path, &timeout, guard);
    fileTimeOut(ioTimeOutDestroy, path, &timeout, guard);
    return late ? CXTString<char>() : CXTString<char>(bytes, static_cast<int>(count));
}

int main()
{
    {
        CXFile file(L"here.txt", CXFile::modeCreate | CXFile::modeWrite);
        file.Write("KorTools", 8);
    }
    char const *const names[] = { "present", "absent", "late" };
    for (wchar_t const *path : { L"here.txt", L"there.txt" })
        std::printf(
            "%s: '%s'\n", names[static_cast<int>(ask(path))], read_start(path).GetConstBuffer());
}
