// SPDX-License-Identifier: MIT
#include <cstdio>
#include <kortools/kortools.h>

// Schema 1 had a name only.
class CNote : public CXObject {
    KOR_DECLARE_CLASS(CNote)
public:
    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring()) {
            archive << m_name << m_priority;
            return;
        }
        archive >> m_name;
        m_priority = 3;
        if (archive.GetObjectSchema() >= 2)
            archive >> m_priority;
    }

    CXTString<wchar_t> m_name;
    int m_priority = 3;
};
KOR_IMPLEMENT_CLASS(CNote, CXObject, 2 | CXRuntimeClass::versionable_schema)

static void show(CXMemFile &file)
{
    file.Seek(0, CXFile::begin);
    CXArchive archive(&file, CXArchive::load);
    CNote *note = nullptr;
    archive >> note;
    std::printf("schema %u: %s, priority %d\n", archive.GetObjectSchema(),
        CXTString<char>(note->m_name).GetConstBuffer(), note->m_priority);
    delete note;
}

int main()
{
    CNote note;
    note.m_name = L"new";
    note.m_priority = 1;
    CXMemFile new_file;
    CXArchive(&new_file, CXArchive::store) << &note;
    show(new_file);

    // What a program of the time of schema 1 has written: the class record, then the name.
    CXRuntimeClass const old_class { "CNote", sizeof(CNote), 1, nullptr, nullptr };
    CXMemFile old_file;
    {
        CXArchive archive(&old_file, CXArchive::store);
        archive.WriteClass(&old_class);
        archive << CXTString<wchar_t>(L"old");
    }
    show(old_file);
}
