// SPDX-License-Identifier: MIT
// Faults in what works in memory: containers, texts, objects in archives, searches, registries.
#include "kortools/kortools.h"
#include "tests/faults/trial.h"

#include <filesystem>
#include <memory>
#include <new>

using kor_test::Subject;
using kor_test::Trial;
using Text = CXTString<wchar_t>;

namespace {

int s_alive = 0; // objects

class Part : public CTreeNode {
    KOR_DECLARE_CLASS(Part)
public:
    explicit Part(Text const &name = Text())
        : m_name(name)
    {
        ++s_alive;
    }
    Part(Part const &other)
        : CTreeNode(other)
        , m_name(other.m_name)
    {
        ++s_alive;
    }
    Part &operator=(Part const &) = delete;
    ~Part() override { --s_alive; }

    void Serialize(CXArchive &archive) override
    {
        CTreeNode::Serialize(archive);
        archive.IsStoring() ? archive << m_name : archive >> m_name;
    }
    CTreeNode *CopyFrom(unsigned int) const override { return new (std::nothrow) Part(*this); }

private:
    Text m_name;
};
KOR_IMPLEMENT_CLASS(Part, CTreeNode, 1)

constexpr wchar_t long_text[]
    = L"a text that is longer than the room that each string has from the "
      L"beginning: caf\u00E9, \u65E5\u672C, \u03B1\u03B2\u03B3";

std::string to_bytes(CXMemFile const &file)
{
    return { reinterpret_cast<char const *>(file.GetBuffer()),
        static_cast<std::size_t>(file.GetLength()) };
}

// A text keeps its value when an operation on it throws.
Trial edit_text(TempFolder const &)
{
    auto const text = std::make_shared<Text>(long_text);
    auto const wanted = std::make_shared<Text>(*text + L" 42 " + long_text);
    auto const run = [=] {
        Text changed = *text;
        changed.AppendFormat(L" %d %s", 42, long_text);
        Text const narrow_and_back(CXTString<char>(Text(changed)).GetConstBuffer());
        changed.Replace(L"42", L"a longer number");
        changed.Replace(L"a longer number", L"42");
        text->Swap(changed);
        return true;
    };
    return { run, [=](bool done) { EXPECT_EQ(*text, done ? *wanted : Text(long_text)); } };
}

Trial grow_array(TempFolder const &)
{
    using Texts = CXArray<Text>;
    auto const texts = std::make_shared<Texts>();
    for (int i = 0; i < 4; ++i)
        texts->Add(long_text);
    auto const run = [=] {
        Texts copy = *texts;
        copy.InsertAt(1, long_text, 6);
        copy.SetAtGrow(20, L"end");
        copy.Append(copy);
        texts->Append(copy);
        return true;
    };
    auto const check = [=](bool done) {
        EXPECT_EQ(texts->GetSize(), done ? 46 : 4);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(texts->GetAt(i), Text(long_text));
    };
    return { run, check };
}

// Insert() returns 0, and the others stay.
Trial grow_map(TempFolder const &)
{
    using Map = CHashMap<Text, Text const &, Text>;
    auto const map = std::make_shared<Map>(3U);
    auto const count = std::make_shared<int>(0);
    auto const run = [=] {
        for (int i = 0; i < 40; ++i) {
            Text key;
            key.Format(L"key %d", i);
            *count += map->Insert(key, long_text);
        }
        return *count == 40;
    };
    auto const check = [=](bool) {
        EXPECT_EQ(map->GetCount(), static_cast<unsigned>(*count));
        int found = 0;
        for (int i = 0; i < 40; ++i) {
            Text key;
            key.Format(L"key %d", i);
            Text const *const value = map->Find(key);
            found += value != nullptr;
            EXPECT_TRUE(!value || *value == Text(long_text));
        }
        EXPECT_EQ(found, *count);
    };
    return { run, check };
}

Trial grow_memory_file(TempFolder const &)
{
    auto const file = std::make_shared<CXMemFile>(16);
    auto const quiet = std::make_shared<CXMemFile>(16, false);
    auto const run = [=] {
        quiet->Write(long_text, sizeof long_text);
        file->Write(long_text, sizeof long_text);
        file->Write(long_text, sizeof long_text);
        return quiet->GetLength() != 0;
    };
    auto const check = [=](bool done) {
        auto const length = file->GetLength();
        EXPECT_TRUE(length == 0 || length == sizeof long_text || length == 2 * sizeof long_text);
        EXPECT_TRUE(!done || length == 2 * sizeof long_text);
        EXPECT_EQ(file->GetPosition(), length);
        EXPECT_EQ(quiet->GetPosition(), quiet->GetLength());
    };
    return { run, check };
}

std::shared_ptr<CTree> make_tree()
{
    auto tree = std::make_shared<CTree>();
    tree->SetSilent(true);
    for (int i = 0; i < 3; ++i) {
        auto *const part = new Part(long_text);
        tree->AddChild(nullptr, part, true);
        tree->AddChild(part, new Part(L"below"), true);
    }
    return tree;
}

std::string store(CTree &tree)
{
    CXMemFile file;
    CXArchive archive(&file, CXArchive::store);
    tree.Serialize(archive);
    archive.Close();
    return to_bytes(file);
}

Trial store_tree(TempFolder const &)
{
    auto const tree = make_tree();
    auto const file = std::make_shared<CXMemFile>();
    std::string const wanted = store(*tree);
    auto const run = [=] {
        CXArchive archive(file.get(), CXArchive::store);
        tree->Serialize(archive);
        archive.Close();
        return true;
    };
    auto const check = [=](bool done) {
        EXPECT_TRUE(!done || to_bytes(*file) == wanted);
        EXPECT_EQ(store(*tree), wanted);
    };
    return { run, check };
}

// Empty after a failure.
Trial load_tree(TempFolder const &)
{
    auto const bytes = std::make_shared<std::string>(store(*make_tree()));
    auto const tree = make_tree();
    auto const run = [=] {
        CXMemFile file(reinterpret_cast<unsigned char const *>(bytes->data()), bytes->size());
        CXArchive archive(&file, CXArchive::load);
        tree->Serialize(archive);
        return true;
    };
    auto const check = [=](bool done) {
        // Before the archive is there the tree is not touched.
        EXPECT_TRUE(tree->IsEmpty() ? !done : store(*tree) == *bytes);
        EXPECT_EQ(s_alive, tree->GetChildNbr(nullptr, false));
    };
    return { run, check };
}

Trial copy_branches(TempFolder const &)
{
    auto const tree = make_tree();
    auto const target = std::make_shared<CTree>();
    auto const run = [=] { return target->CopyChilds(nullptr, tree->GetRoot()); };
    auto const check = [=](bool done) {
        EXPECT_EQ(target->GetChildNbr(nullptr, false), done ? 6 : 0);
        EXPECT_EQ(s_alive, done ? 12 : 6);
    };
    return { run, check };
}

// What was read of a graph that cannot be loaded whole are orphans.
Trial load_objects(TempFolder const &)
{
    auto const file = std::make_shared<CXMemFile>();
    {
        CXArchive archive(file.get(), CXArchive::store, CXArchive::minimum_buffer_size);
        Part const one(long_text), other(L"other");
        archive << &one << &other << &one << CXTString<char>("narrow") << Text(long_text);
    }
    file->Seek(0, CXFile::begin);
    struct Result {
        std::unique_ptr<Part> one, other;
        Text text;
    };
    auto const result = std::make_shared<Result>();
    auto const run = [=] {
        CXArchive archive(file.get(), CXArchive::load, CXArchive::minimum_buffer_size);
        Part *part[3] = {};
        CXTString<char> narrow;
        try {
            for (Part *&one : part)
                archive >> one;
            archive >> narrow >> result->text;
        } catch (CXException *) {
            archive.DeleteOrphans();
            result->one.reset(part[0]);
            result->other.reset(part[1]);
            throw;
        }
        result->one.reset(part[0]);
        result->other.reset(part[1]);
        return part[2] == part[0];
    };
    return { run, [=](bool done) {
                EXPECT_EQ(s_alive, (result->one ? 1 : 0) + (result->other ? 1 : 0));
                EXPECT_TRUE(!done || (s_alive == 2 && result->text == Text(long_text)));
            } };
}

std::shared_ptr<CCustomData> make_data()
{
    auto data = std::make_shared<CCustomData>();
    data->SetString(1, long_text);
    data->SetDouble(2, 2.5);
    CXArray<Text> names;
    names.Add(L"a");
    names.Add(long_text);
    data->SetStringArray(3, names);
    data->SetCustomData(4, *data);
    return data;
}

// Without memory there is no entry of that identifier afterwards, and the others stay.
Trial edit_custom_data(TempFolder const &)
{
    auto const data = make_data();
    auto const run = [=] {
        data->SetString(5, long_text);
        data->SetArray(6, nullptr, 1000, 8);
        data->SetCustomData(7, *data);
        Text text;
        std::unique_ptr<CCustomData> const copy(data->Copy());
        return data->HasData(5) && data->HasData(6) && data->HasData(7) && data->GetString(5, text)
            && copy && copy->IsEqual(*data);
    };
    auto const check = [=](bool done) {
        double number = 0;
        Text text;
        EXPECT_TRUE(data->GetDouble(2, number) && number == 2.5);
        EXPECT_TRUE(data->GetString(1, text) && text == Text(long_text));
        EXPECT_TRUE(!data->HasData(5) || (data->GetString(5, text) && text == Text(long_text)));
        EXPECT_EQ(data->GetIDCount(), 4U + data->HasData(5) + data->HasData(6) + data->HasData(7));
        EXPECT_TRUE(!done || data->GetIDCount() == 7);
    };
    return { run, check };
}

Trial exchange_custom_data(TempFolder const &)
{
    auto const data = make_data();
    auto const target = make_data();
    auto const run = [=] {
        target->RemoveCustom(2);
        unsigned long long size = 0;
        void *const block = data->SerializeToData(size);
        bool const done = block && target->SerializeFromData(block, size);
        CCustomData::Free(block);
        EXPECT_TRUE(block || size == 0);
        return done;
    };
    auto const check = [=](bool done) {
        // As it was (there was no block), empty, or the other's.
        EXPECT_TRUE(
            done ? target->IsEqual(*data) : target->GetIDCount() == 3 || !target->HasData());
    };
    return { run, check };
}

Trial match_texts(TempFolder const &)
{
    auto const matcher = std::make_shared<CXStringMatch>();
    auto const run = [=] {
        CXArray<Text> texts;
        texts.Add(L"red cube");
        texts.Add(long_text);
        return matcher->PrepareMatch(L"(cube ^ sphere*) & red ! \"a\\*\"")
            && (CXStringMatch(*matcher).Match(texts), true) && matcher->Match(L"red cube");
    };
    return { run, [=](bool) {
                EXPECT_TRUE(matcher->PrepareMatch(L"cube"));
                EXPECT_TRUE(matcher->Match(L"red cube"));
            } };
}

// A type is there as a whole, or is not.
Trial register_types(TempFolder const &)
{
    constexpr unsigned int fault_class = fileMakeCode("FLT ");
    fileGetClass(L"a.bmp"); // makes the registry
    auto const run = [=] {
        CFileExt type;
        type.m_description = L"Faults of a certain length";
        type.m_extensions = L".fault|.another_fault";
        type.m_class = fault_class;
        type.m_properties = fileKind3D | fileCanLoad;
        fileRegisterFile(type);
        unsigned int count = 0;
        CFileExt *const types = fileGetRegisteredFiles(count, fileKind3D);
        fileFreeRegisteredFiles(types, count);
        CXArray<Text> extensions;
        return fileGetExtensionArray(fault_class, extensions) == 2 && types
            && fileGetMainExtension(fault_class) == Text(L".fault");
    };
    auto const check = [=](bool done) {
        bool const known = fileGetClass(L"x.another_fault") == fault_class;
        EXPECT_TRUE(known || !done);
        EXPECT_EQ(fileGetClass(L"x.fault") == fault_class, known);
        EXPECT_EQ(fileGetKindOf(fault_class) != 0, known);
        EXPECT_NE(fileGetClass(L"a.bmp"), 0U);
        fileUnregisterFile(fault_class);
        EXPECT_EQ(fileGetClass(L"x.fault"), 0U);
    };
    return { run, check };
}

Trial give_identifiers(TempFolder const &)
{
    auto const guids = std::make_shared<CGuidMgr>(1U);
    auto const run = [=] {
        for (int i = 0; i < 20; ++i)
            guids->GetNewGuid(1000, 7);
        return true;
    };
    return { run, [=](bool done) {
                unsigned int const count = guids->GetCount();
                EXPECT_TRUE(!done || count == 20);
                EXPECT_EQ(guids->GetNewGuid(1000, 7), 1000 + count);
            } };
}

bool do_nothing(void *)
{
    return true;
}

// Null, and nothing left of the thread.
Trial run_thread(TempFolder const &)
{
    auto const run = [] {
        CXThread *const thread
            = CXThread::BeginThread(new (std::nothrow) CXThread(do_nothing, nullptr),
                xThreadPriorityNormal, CXThread::keepAutoDelete);
        if (!thread)
            return false;
        thread->WaitForEnd();
        delete thread;
        return true;
    };
    return { run, [](bool) {} };
}

// A plug-in for pictures of one pixel, which are its byte.
bool exchange_pixel(IoPluginMode mode, void *data)
{
    if (mode == ioModeSave) {
        auto &save = *static_cast<IoPluginSave *>(data);
        return save.write(save.host, save.rows, 1);
    }
    auto &load = *static_cast<IoPluginLoad *>(data);
    IoPluginBitmap bitmap;
    IO_PLUGIN_INIT(bitmap);
    bitmap.width = bitmap.height = bitmap.channels = 1;
    bitmap.depth = ioDepth8;
    unsigned char pixel = 0;
    return load.read(load.host, 0, &pixel, 1) == 1 && load.begin_bitmap(load.host, &bitmap)
        && load.add_rows(load.host, 0, 1, &pixel, 1);
}

// A picture that cannot be loaded changes nothing.
Trial exchange_picture(TempFolder const &folder)
{
    [[maybe_unused]] static CFileExt const s_type = [] {
        CFileExt type;
        type.m_extensions = L".pixel";
        type.m_class = fileMakeCode("PIXL");
        type.m_properties = fileKindBitmap | 3;
        type.m_callback = exchange_pixel;
        fileRegisterFile(type);
        return type;
    }();
    auto const saved = std::make_shared<CIoBitmap>();
    saved->m_format = { 1, 1, 1, ioDepth8, 0 };
    saved->m_rows = { 77 };
    auto const loaded = std::make_shared<CIoBitmap>();
    auto const path = std::make_shared<Text>(folder.GetFile(L"a.pixel").c_str());
    auto const run
        = [=] { return fileSaveBitmap(*path, *saved) && fileLoadBitmap(*path, *loaded); };
    std::filesystem::path const place = folder.GetPath();
    return { run, [=](bool done) {
                EXPECT_EQ(loaded->m_rows, done ? saved->m_rows : std::vector<unsigned char>());
                // Without memory for its path the part of a picture cannot be deleted.
                EXPECT_FALSE(done && std::filesystem::exists(place / "a.pixel.part"));
            } };
}

class FaultsInMemory : public testing::TestWithParam<Subject> { };

TEST_P(FaultsInMemory, AreReportedAndHarmless)
{
    kor_test::try_all_faults(GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, FaultsInMemory,
    testing::Values(Subject { "edit_text", edit_text }, Subject { "grow_array", grow_array },
        Subject { "grow_map", grow_map }, Subject { "grow_memory_file", grow_memory_file },
        Subject { "store_tree", store_tree }, Subject { "load_tree", load_tree },
        Subject { "copy_branches", copy_branches }, Subject { "load_objects", load_objects },
        Subject { "edit_custom_data", edit_custom_data },
        Subject { "exchange_custom_data", exchange_custom_data },
        Subject { "match_texts", match_texts }, Subject { "register_types", register_types },
        Subject { "give_identifiers", give_identifiers },
        Subject { "exchange_picture", exchange_picture },
        Subject { "run_thread", run_thread, true, false }),
    [](auto const &row) { return row.param.name; });

} // namespace
