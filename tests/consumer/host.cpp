// SPDX-License-Identifier: MIT
// A host: registers the plug-ins of a folder, counts the vertices of files that they load, keeps
// the counts in a document, and opens that again.
//
//   host DOCUMENT PLUGINS FILE...
#include <kortools/kortools.h>

#include <cstdio>

class Count : public CXObject {
    KOR_DECLARE_CLASS(Count)

public:
    Count() = default;
    Count(CXTString<wchar_t> const &name, unsigned int vertices)
        : m_name(name)
        , m_vertices(vertices)
    {
    }

    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring())
            archive << m_name << m_vertices;
        else
            archive >> m_name >> m_vertices;
    }

    CXTString<wchar_t> m_name;
    unsigned int m_vertices = 0;
};
KOR_IMPLEMENT_CLASS(Count, CXObject, 1)

namespace {

class Counter : public CIoSink {
public:
    bool OnMesh(CIoMesh const &mesh) override
    {
        m_vertices += mesh.m_vertexCount;
        return true;
    }

    unsigned int m_vertices = 0;
};

CXArray<Count *> count_files(int count, char **files)
{
    CXArray<Count *> counts;
    for (int i = 0; i < count; ++i) {
        CXTString<wchar_t> const path { CXTString<char>(files[i]) };
        Counter counter;
        CIoReport report;
        if (fileLoadWithPlugin(path, counter, &report))
            counts.Add(new Count(fileStripPathAndExtension(path), counter.m_vertices));
        else
            std::printf("%s: %s\n", files[i], CXTString<char>(report.m_error).GetConstBuffer());
    }
    return counts;
}

void save(CXTString<wchar_t> const &document, CXArray<Count *> const &counts)
{
    CXFile file(document, CXFile::modeCreate | CXFile::modeWrite);
    CXArchive archive(&file, CXArchive::store);
    archive << counts.GetCount();
    for (Count *count : counts) {
        archive << count;
        delete count;
    }
}

void print(CXTString<wchar_t> const &document)
{
    CXFile file(document, CXFile::modeRead);
    CXArchive archive(&file, CXArchive::load);
    int length = 0;
    archive >> length;
    for (int i = 0; i < length; ++i) {
        Count *count = nullptr;
        archive >> count;
        CXTString<wchar_t> line;
        line.Format(L"%s: %u vertices", count->m_name.GetConstBuffer(), count->m_vertices);
        std::puts(CXTString<char>(line).GetConstBuffer());
        delete count;
    }
}

[[maybe_unused]] int *volatile s_null = nullptr;

// Both come by pointer across the library's boundary. The second is a fault that becomes an
// exception, which is caught only with the compiler option that the package hands out; clang has
// none like it.
bool catches_exceptions()
{
    bool is_missing = false, is_fault = false;
    try {
        CXFile file(CXTString<wchar_t>(L"missing"), CXFile::modeRead);
    } catch (CXFileException *exception) {
        is_missing = true;
        exception->Delete();
    }
#ifdef __clang__
    is_fault = true;
#else
    try {
        *s_null = 1;
    } catch (CXException *exception) {
        is_fault = true;
        exception->Delete();
    }
#endif
    return is_missing && is_fault && XGetThreadException() == nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    CXTString<wchar_t> const document { CXTString<char>(argv[1]) };
    InitKorTools(korFileTypes | korFaultSignals);
    RegisterIOPlugins(fileKind3D, CXTString<wchar_t>(CXTString<char>(argv[2])));
    save(document, count_files(argc - 3, argv + 3));
    print(document);
    bool const is_good = catches_exceptions();
    FreeIOPlugins(fileKind3D);
    CloseKorTools(korFileTypes | korFaultSignals);
    return is_good ? 0 : 1;
}
