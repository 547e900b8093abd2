// SPDX-License-Identifier: MIT
#include <cstdio>
#include <kortools/kortools.h>

class MeshCounter : public CIoSink {
public:
    bool OnMesh(CIoMesh const &mesh) override
    {
        m_vertices += mesh.m_vertexCount;
        return true;
    }
    unsigned int m_vertices = 0;
};

static void load(wchar_t const *path)
{
    MeshCounter counter;
    CIoReport report;
    if (fileLoadWithPlugin(path, counter, &report))
        std::printf("%u vertices\n", counter.m_vertices);
    else
        std::printf("failed: %s\n", CXTString<char>(report.m_error).GetConstBuffer());
}

static void write(wchar_t const *path, CXTString<char> const &text)
{
    CXFile file(path, CXFile::modeCreate | CXFile::modeWrite);
    file.Write(text.GetConstBuffer(), static_cast<unsigned int>(text.GetLength()));
}

int main()
{
    InitKorTools(korFileTypes);
    RegisterIOPlugins(fileKind3D, L"guide-plugins"); // a folder; empty: the application's own
    write(L"good.tri", "0 0 0  1 0 0  0 1 0");
    write(L"bad.tri", "nothing");
    load(L"good.tri");
    load(L"bad.tri");
    FreeIOPlugins(fileKind3D);
    CloseKorTools(korFileTypes);
}
