// SPDX-License-Identifier: MIT
// Object graphs and class records: bytes, identity, schemas, and everything that damaged data can
// do to them.
#include "tests/archive/archive_encoder.h"
#include "tests/archive/archive_support.h"

#include <functional>
#include <pthread.h>
#include <vector>

using kor_test::ArchiveEncoder;
using kor_test::cause_of;
using kor_test::load_bytes;
using kor_test::store_bytes;
using Exception = CXArchiveException;

// A value and links to other nodes, which it does not own.
class TestNode : public CXObject {
    KOR_DECLARE_CLASS(TestNode)
public:
    explicit TestNode(int value = 0)
        : m_value(value)
    {
        ++s_alive;
    }
    TestNode(TestNode const &) = delete;
    TestNode &operator=(TestNode const &) = delete;
    ~TestNode() override { --s_alive; }

    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring()) {
            archive << m_value;
            archive.WriteCount(m_links.size());
            for (TestNode const *const link : m_links)
                archive << link;
            return;
        }
        archive >> m_value;
        for (auto count = archive.ReadCount(); count != 0; --count)
            archive >> m_links.emplace_back();
        m_schema = archive.GetObjectSchema();
    }

    static inline int s_alive = 0;
    int m_value;
    std::vector<TestNode *> m_links;
    unsigned int m_schema = 0;
};
KOR_IMPLEMENT_CLASS(TestNode, CXObject, 3)

class TestVersioned : public TestNode {
    KOR_DECLARE_CLASS(TestVersioned)
};
KOR_IMPLEMENT_CLASS(TestVersioned, TestNode, 7 | CXRuntimeClass::versionable_schema)

class TestEmpty : public CXObject {
    KOR_DECLARE_CLASS(TestEmpty)
};
KOR_IMPLEMENT_CLASS(TestEmpty, CXObject, 1)

class TestAbstract : public TestNode {
    KOR_DECLARE_CLASS(TestAbstract)
};
KOR_IMPLEMENT_ABSTRACT_CLASS(TestAbstract, TestNode, 1)

class TestTransient : public CXObject {
    KOR_DECLARE_CLASS(TestTransient)
};
KOR_IMPLEMENT_CLASS(TestTransient, CXObject, 1 | CXRuntimeClass::not_serializable)

class TestUnborn : public CXObject {
    KOR_DECLARE_CLASS(TestUnborn)
public:
    TestUnborn() { Exception::Throw(Exception::bufferFull); }
};
KOR_IMPLEMENT_CLASS(TestUnborn, CXObject, 1)

namespace {

ArchiveEncoder node_head()
{
    return ArchiveEncoder().new_class("TestNode", 3);
}

// Reads one object of any class and deletes what was made of it.
CXArchiveException::ArchiveExceptionType cause_of_reading(std::string const &bytes,
    CXRuntimeClass const *expected = nullptr, CXTString<wchar_t> *file_name = nullptr)
{
    int const alive = TestNode::s_alive;
    kor_test::StreamFile file(bytes, 4096);
    file.SetFilePath(L"C:\\scenes\\a.bin");
    CXArchive archive(&file, CXArchive::load);
    auto const cause = cause_of([&] { archive.ReadObject(expected); }, file_name);
    if (cause == Exception::none)
        return cause;
    archive.DeleteOrphans();
    EXPECT_EQ(archive.GetOrphanCount(), 0U);
    EXPECT_EQ(TestNode::s_alive, alive);
    return cause;
}

} // namespace

TEST(ArchiveObjects, SchemasAreCheckedUnlessTheClassIsVersionable)
{
    auto const body = ArchiveEncoder().u32(0).count(0).bytes();
    EXPECT_EQ(cause_of_reading(ArchiveEncoder().new_class("TestNode", 2).raw(body).bytes()),
        Exception::badSchema);

    // An old versioned node holds a plain one and another versioned one.
    auto bytes = ArchiveEncoder().new_class("TestVersioned", 5).u32(1).count(2);
    bytes.old_class(1).raw(body).new_class("TestNode", 3).raw(body);
    load_bytes(bytes.bytes(), [](CXArchive &archive) {
        EXPECT_EQ(archive.GetObjectSchema(), CXArchive::no_schema);
        TestVersioned *outer = nullptr;
        archive >> outer;
        EXPECT_EQ(outer->m_schema, 5U);
        EXPECT_EQ(outer->m_links[0]->m_schema, 5U);
        EXPECT_EQ(outer->m_links[1]->m_schema, 3U);
        EXPECT_EQ(archive.GetObjectSchema(), 5U);
        delete outer->m_links[0];
        delete outer->m_links[1];
        delete outer;
    });
}

TEST(ArchiveObjects, BadReferencesAndClassesHaveTheirCauses)
{
    using E = ArchiveEncoder;
    auto const *const versioned = TestVersioned::GetThisRuntimeClassDescriptor();
    struct {
        char const *name;
        ArchiveEncoder bytes;
        Exception::ArchiveExceptionType cause;
        CXRuntimeClass const *expected = nullptr;
    } const cases[] = {
        { "object index not given out", E().u16(1), Exception::badIndex },
        { "large object index", E().u16(0x7FFF).u32(0x7FFFFFFF), Exception::badIndex },
        { "class index 0", E().u16(0x8000), Exception::badIndex },
        { "large class index 0", E().u16(0x7FFF).u32(0x80000000), Exception::badIndex },
        { "class index not given out", E().u16(0x8001), Exception::badIndex },
        { "object index of a class", node_head().u32(0).count(1).u16(1), Exception::badIndex },
        { "class index of an object", node_head().u32(0).count(1).u16(0x8002),
            Exception::badIndex },
        { "unknown class", E().new_class("TestNodes", 3), Exception::badClass },
        { "class without a name", E().new_class("", 3), Exception::badClass },
        { "name with a zero", E().new_class(std::string_view("TestNode\0x", 10), 3),
            Exception::badClass },
        { "class that cannot be created", E().new_class("TestAbstract", 1), Exception::badClass },
        { "class whose creation throws", E().new_class("TestUnborn", 1), Exception::badClass },
        { "class not expected", node_head(), Exception::badClass, versioned },
        { "base class in place of a class", E().new_class("CXObject", 1), Exception::badClass,
            versioned },
        { "class not serializable", E().new_class("TestTransient", 1),
            Exception::genericException },
        { "expected class not serializable", node_head(), Exception::genericException,
            TestTransient::GetThisRuntimeClassDescriptor() },
        { "old object of another class",
            E().new_class("TestVersioned", 7).u32(0).count(1).new_class("TestEmpty", 1),
            Exception::badClass },
        { "bad object deep inside", node_head().u32(0).count(2).old_class(1).u32(1).count(0).u16(9),
            Exception::badIndex },
    };
    for (auto const &[name, bytes, cause, expected] : cases) {
        CXTString<wchar_t> file_name;
        EXPECT_EQ(cause_of_reading(bytes.bytes(), expected, &file_name), cause) << name;
        EXPECT_TRUE(file_name == L"C:\\scenes\\a.bin") << name;
    }
}

TEST(ArchiveObjects, GraphsOfBothClassesComeBackAndFailWithoutLeaksWhenCut)
{
    TestNode root(1), twin(2);
    TestVersioned child;
    root.m_links = { &child, &root, &twin, &child, nullptr };
    child.m_links = { &twin, &child };
    auto const bytes = store_bytes([&](CXArchive &archive) { archive << &root << &child; });
    auto expected = node_head().u32(1).count(5).new_class("TestVersioned", 7).u32(0).count(2);
    expected.old_class(1).u32(2).count(0).old_object(4).old_object(2).old_object(5).old_object(4);
    EXPECT_EQ(bytes, expected.u16(0).old_object(4).bytes());
    load_bytes(bytes, [&](CXArchive &archive) {
        TestNode *loaded = nullptr;
        CXObject const *same = nullptr;
        archive >> loaded >> same;
        EXPECT_EQ(same, loaded->m_links[0]);
        EXPECT_EQ(store_bytes([&](CXArchive &copy) { copy << loaded << same; }), bytes);
        for (TestNode const *const node : { loaded->m_links[0], loaded->m_links[2], loaded })
            delete node;
    });
    for (std::size_t length = 0; length < bytes.size() - 2; ++length) {
        CXTString<wchar_t> file_name(L"x");
        ASSERT_EQ(
            cause_of_reading(bytes.substr(0, length), nullptr, &file_name), Exception::endOfFile);
        ASSERT_TRUE(file_name.IsEmpty());
    }
}

namespace {

// Bytes of `depth` nodes inside each other.
std::string nested_nodes(unsigned depth)
{
    ArchiveEncoder bytes;
    for (unsigned i = 0; i < depth; ++i)
        (i == 0 ? bytes.new_class("TestNode", 3) : bytes.old_class(1)).u32(i).count(i + 1 < depth);
    return bytes.bytes();
}

// Runs `work` on a thread with a stack of `size` bytes.
void run_on_stack(std::size_t size, std::function<void()> work)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
    pthread_t thread;
    auto const run = [](void *argument) -> void * {
        (*static_cast<std::function<void()> *>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace

TEST(ArchiveObjects, NestingIsLimitedWhenReadingAndWriting)
{
    unsigned const limit = CXArchive::max_object_depth;
    run_on_stack(8 << 20, [&] {
        auto const deepest = nested_nodes(limit);
        load_bytes(deepest, [&](CXArchive &archive) {
            std::vector<TestNode *> chain(1);
            archive >> chain[0];
            while (!chain.back()->m_links.empty())
                chain.push_back(chain.back()->m_links[0]);
            EXPECT_EQ(store_bytes([&](CXArchive &copy) { copy << chain[0]; }), deepest);
            TestNode top;
            top.m_links = { chain[0] };
            EXPECT_EQ(cause_of([&] { store_bytes([&](CXArchive &copy) { copy << &top; }); }),
                Exception::genericException);
            for (TestNode const *const node : chain)
                delete node;
        });
        EXPECT_EQ(cause_of_reading(nested_nodes(limit + 1)), Exception::genericException);
    });
    for (std::size_t const size : { 128U << 10, 1U << 20 }) // nor is a small stack exhausted
        run_on_stack(size, [] {
            EXPECT_EQ(cause_of_reading(nested_nodes(1000000)), Exception::genericException);
        });
}
