// SPDX-License-Identifier: MIT
#include "kortools/archive/runtime_class.h"

#include "kortools/archive/exception.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

class CTestMesh : public CXObject {
    KOR_DECLARE_CLASS(CTestMesh)
};
class CTestSkin : public CTestMesh {
    KOR_DECLARE_CLASS(CTestSkin)
public:
    long long m_weights[4] = {};
};

// Runs before the record below is initialised, if that happened at run time.
static bool const s_complete_early = CTestSkin::classCreatorCTestSkin.m_className != nullptr;

KOR_IMPLEMENT_CLASS(CTestSkin, CTestMesh, 7 | CXRuntimeClass::versionable_schema)
KOR_IMPLEMENT_ABSTRACT_CLASS(CTestMesh, CXObject, 1)

namespace {

CXRuntimeClass make_record(char const *name, CXObject *(*creator)() = nullptr)
{
    return { name, 0, 1, CXObject::GetThisRuntimeClassDescriptor(), creator };
}

// The compiler must not see a null record, nor its sanitizer object to it: that is the point.
__attribute__((noinline, no_sanitize("null"))) bool is_derived(
    CXRuntimeClass const *record, CXRuntimeClass const *base)
{
    return record->IsDerivedFrom(base);
}

} // namespace

TEST(RuntimeClass, DescribesTheClassAndItsAncestors)
{
    CXRuntimeClass const &skin = CTestSkin::classCreatorCTestSkin;
    EXPECT_EQ(skin.m_objectSize, sizeof(CTestSkin));
    EXPECT_EQ(skin.m_schema, 0x20000007U);
    EXPECT_EQ(skin.GetSchema(), 7U);
    EXPECT_TRUE(skin.IsSerializable());
    EXPECT_EQ(skin.m_baseClass, CTestMesh::GetThisRuntimeClassDescriptor());
#ifndef _WIN32
    EXPECT_TRUE(s_complete_early);
#endif
    auto const *const object = CXObject::GetThisRuntimeClassDescriptor();
    auto const *const file = CXFileException::GetThisRuntimeClassDescriptor();
    EXPECT_TRUE(file->IsDerivedFrom(file));
    EXPECT_TRUE(file->IsDerivedFrom(object));
    EXPECT_FALSE(object->IsDerivedFrom(CXException::GetThisRuntimeClassDescriptor()));
    EXPECT_FALSE(file->IsDerivedFrom(nullptr));
    CXRuntimeClass const *volatile none = nullptr;
    EXPECT_FALSE(is_derived(none, object));
    EXPECT_TRUE(CTestSkin().IsKindOf(CTestMesh::GetThisRuntimeClassDescriptor()));
    EXPECT_FALSE(CTestSkin().IsKindOf(file));

    for (char const *const name : { "CXException", "CXFileException", "CXArchiveException",
             "CXMemoryException", "CXUserException", "CXInvalidArgException" }) {
        CXRuntimeClass const *const record = CXRuntimeClass::FindRuntimeClass(name);
        EXPECT_TRUE(record && !record->IsSerializable() && !record->m_createObject) << name;
    }
}

TEST(RuntimeClass, CreateObjectSwallowsWhatTheCreatorThrows)
{
    std::unique_ptr<CXObject> const skin(
        CXRuntimeClass::FindRuntimeClass("CTestSkin")->CreateObject());
    EXPECT_NE(dynamic_cast<CTestSkin *>(skin.get()), nullptr);

    using Creator = CXObject *(*)();
    for (Creator const creator : { Creator(nullptr), // no function: releases the pending one too
             Creator(
                 []() -> CXObject * { kortools::archive::throw_exception(new CXUserException); }),
             Creator([]() -> CXObject * { throw new CXUserException; }), // not registered
             Creator([]() -> CXObject * { throw 42; }) }) {
        XSetThreadException(new CXUserException);
        EXPECT_EQ(make_record("CTestThrower", creator).CreateObject(), nullptr);
        EXPECT_EQ(XGetThreadException(), nullptr);
    }
}

TEST(ClassRegistry, TheLastRecordOfANameWinsAndOnlyItIsRemoved)
{
    CXRuntimeClass const first = make_record("CTestTwice");
    CXRuntimeClass const second = make_record("CTestTwice");
    CXRuntimeClass const nameless = make_record(nullptr);
    EXPECT_FALSE(CXRuntimeClass::DeclareRuntimeClass(nullptr));
    EXPECT_FALSE(CXRuntimeClass::DeclareRuntimeClass(&nameless));
    EXPECT_TRUE(CXRuntimeClass::DeclareRuntimeClass(&first));
    EXPECT_TRUE(CXRuntimeClass::DeclareRuntimeClass(&second));
    CXRuntimeClass::RemoveRuntimeClass(&first);
    EXPECT_EQ(CXRuntimeClass::FindRuntimeClass("CTestTwice"), &second);
    CXRuntimeClass::RemoveRuntimeClass(&second);
    EXPECT_EQ(CXRuntimeClass::FindRuntimeClass("CTestTwice"), nullptr);
    EXPECT_EQ(CXRuntimeClass::FindRuntimeClass(nullptr), nullptr);
}

TEST(ClassRegistry, ThreadsMayRegisterAndLookUpAtTheSameTime)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (int n = 0; n < 500; ++n) {
                std::string const name = "CTest" + std::to_string(i) + "_" + std::to_string(n % 50);
                CXRuntimeClass const record = make_record(name.c_str());
                CXRuntimeClass::DeclareRuntimeClass(&record);
                ASSERT_NE(CXRuntimeClass::FindRuntimeClass("CXObject"), nullptr);
                ASSERT_EQ(CXRuntimeClass::FindRuntimeClass(name.c_str()), &record);
                CXRuntimeClass::RemoveRuntimeClass(&record);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}
