// SPDX-License-Identifier: MIT
#include <cstdio>
#include <kortools/kortools.h>

class CLayer : public CXObject {
    KOR_DECLARE_CLASS(CLayer)
public:
    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring())
            archive << m_name << m_opacity;
        else
            archive >> m_name >> m_opacity;
        m_points.Serialize(archive);
    }

    CXTString<wchar_t> m_name;
    double m_opacity = 1;
    CXArray<int> m_points;
};
KOR_IMPLEMENT_CLASS(CLayer, CXObject, 1)

static void save(wchar_t const *path, CLayer const &layer)
{
    CXFile file(path, CXFile::modeCreate | CXFile::modeWrite);
    CXArchive archive(&file, CXArchive::store);
    archive << &layer;
    archive.Close(); // writes what is buffered; the destructor would keep a failure quiet
    file.Close();
}

static CLayer *load(wchar_t const *path)
{
    CXFile file(path, CXFile::modeRead | CXFile::shareDenyWrite);
    CXArchive archive(&file, CXArchive::load);
    CLayer *layer = nullptr;
    archive >> layer; // an object of this class, or an exception
    return layer;
}

int main()
{
    CLayer layer;
    layer.m_name = L"gears";
    layer.m_opacity = 0.5;
    layer.m_points.Add(7);
    save(L"drawing.kor", layer);

    CLayer *const copy = load(L"drawing.kor");
    std::printf("%s, %g, %d point\n", CXTString<char>(copy->m_name).GetConstBuffer(),
        copy->m_opacity, copy->m_points.GetSize());
    delete copy;

    try {
        load(L"absent.kor");
    } catch (CXFileException *error) {
        std::printf("cause %d: %s\n", error->GetCause(),
            CXTString<char>(error->GetFileName()).GetConstBuffer());
        error->Delete();
    }
}
