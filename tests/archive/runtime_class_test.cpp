// SPDX-License-Identifier: MIT
#include "kortools/archive/runtime_class.h"

#include "kortools/archive/exception.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

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

class CTestMesh : public CXObject {
    KOR_DECLARE_CLASS(CTestMesh)
};
class CTestSkin : public CTestMesh {
    KOR_DECLARE_CLASS(CTestSkin)
public:
    long long m_weights[4] = {};
};

// Runs before the records below are initialised dynamically, if they were.
static bool const s_complete_early = std::string(CTestSkin::classCreatorCTestSkin.m_className
                                             ? CTestSkin::classCreatorCTestSkin.m_className
                                             : "")
    == "CTestSkin";

KOR_IMPLEMENT_CLASS(CTestSkin, CTestMesh, 7 | CXRuntimeClass::versionable_schema)
KOR_IMPLEMENT_ABSTRACT_CLASS(CTestMesh, CXObject, 1)

TEST(RuntimeClass, RecordsHoldWhatTheMacrosAreGiven)
{
    CXRuntimeClass const &skin = *CTestSkin::GetThisRuntimeClassDescriptor();
    EXPECT_STREQ(skin.m_className, "CTestSkin");
    EXPECT_EQ(skin.m_objectSize, sizeof(CTestSkin));
    EXPECT_EQ(skin.m_schema, 0x20000007U);
    EXPECT_EQ(skin.GetSchema(), 7U);
    EXPECT_TRUE(skin.IsSerializable());
    EXPECT_EQ(skin.m_baseClass, &CTestMesh::classCreatorCTestMesh);
    EXPECT_EQ(CTestMesh::GetThisRuntimeClassDescriptor()->m_createObject, nullptr);
    EXPECT_EQ(CXObject::GetThisRuntimeClassDescriptor()->GetSchema(), 1U);
    EXPECT_EQ(CXObject::GetThisRuntimeClassDescriptor()->m_baseClass, nullptr);
#ifndef _WIN32
    EXPECT_TRUE(s_complete_early);
#endif
}

TEST(RuntimeClass, FollowsTheBaseChain)
{
    auto const *const object = CXObject::GetThisRuntimeClassDescriptor();
    auto const *const exception = CXException::GetThisRuntimeClassDescriptor();
    auto const *const file = CXFileException::GetThisRuntimeClassDescriptor();
    EXPECT_TRUE(file->IsDerivedFrom(file));
    EXPECT_TRUE(file->IsDerivedFrom(object));
    EXPECT_FALSE(object->IsDerivedFrom(exception));
    EXPECT_FALSE(file->IsDerivedFrom(nullptr));
    CXRuntimeClass const *volatile none = nullptr;
    EXPECT_FALSE(is_derived(none, object));

    CTestSkin const skin;
    CXObject const &base = skin;
    EXPECT_EQ(base.GetRuntimeClassDescriptor(), &CTestSkin::classCreatorCTestSkin);
    EXPECT_TRUE(base.IsKindOf(CTestMesh::GetThisRuntimeClassDescriptor()));
    EXPECT_FALSE(base.IsKindOf(exception));
}

TEST(RuntimeClass, ExceptionsAreRegisteredButNotSerializableNorCreatable)
{
    for (char const *const name : { "CXException", "CXFileException", "CXArchiveException",
             "CXMemoryException", "CXUserException", "CXInvalidArgException" }) {
        CXRuntimeClass const *const record = CXRuntimeClass::FindRuntimeClass(name);
        ASSERT_NE(record, nullptr) << name;
        EXPECT_FALSE(record->IsSerializable()) << name;
        EXPECT_EQ(record->m_createObject, nullptr) << name;
        EXPECT_TRUE(record->IsDerivedFrom(CXObject::GetThisRuntimeClassDescriptor())) << name;
    }
}

TEST(RuntimeClass, CreateObjectSwallowsWhatTheCreatorThrows)
{
    std::unique_ptr<CXObject> const skin(
        CXRuntimeClass::FindRuntimeClass("CTestSkin")->CreateObject());
    ASSERT_NE(skin, nullptr);
    EXPECT_TRUE(skin->IsKindOf(CTestSkin::GetThisRuntimeClassDescriptor()));

    using Creator = CXObject *(*)();
    for (Creator const creator : { Creator(nullptr), // no function: releases the pending one too
             Creator([]() -> CXObject * { return nullptr; }), Creator([]() -> CXObject * {
                 kortools::archive::throw_exception(new CXUserException);
             }),
             Creator([]() -> CXObject * { throw new CXUserException; }), // not registered
             Creator([]() -> CXObject * {
                 XSetThreadException(new CXUserException);
                 throw 42;
             }) }) {
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
    EXPECT_EQ(CXRuntimeClass::FindRuntimeClass("CTestTwice"), &second);
    CXRuntimeClass::RemoveRuntimeClass(&first);
    EXPECT_EQ(CXRuntimeClass::FindRuntimeClass("CTestTwice"), &second);
    CXRuntimeClass::RemoveRuntimeClass(&second);
    CXRuntimeClass::RemoveRuntimeClass(nullptr);
    CXRuntimeClass::RemoveRuntimeClass(&nameless);
    EXPECT_EQ(CXRuntimeClass::FindRuntimeClass("CTestTwice"), nullptr);
    EXPECT_EQ(CXRuntimeClass::FindRuntimeClass("cTestSkin"), nullptr); // case counts
    EXPECT_EQ(CXRuntimeClass::FindRuntimeClass(nullptr), nullptr);
}

TEST(ClassRegistry, ThreadsMayRegisterAndLookUpAtTheSameTime)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            std::vector<std::string> names;
            std::vector<CXRuntimeClass> records;
            for (int n = 0; n < 100; ++n)
                names.push_back("CTest" + std::to_string(i) + "_" + std::to_string(n));
            for (std::string const &name : names)
                records.push_back(make_record(name.c_str()));
            for (int round = 0; round < 5; ++round) {
                for (CXRuntimeClass const &record : records) {
                    CXRuntimeClass::DeclareRuntimeClass(&record);
                    ASSERT_NE(CXRuntimeClass::FindRuntimeClass("CXObject"), nullptr);
                }
                for (CXRuntimeClass const &record : records) {
                    ASSERT_EQ(CXRuntimeClass::FindRuntimeClass(record.m_className), &record);
                    CXRuntimeClass::RemoveRuntimeClass(&record);
                    ASSERT_EQ(CXRuntimeClass::FindRuntimeClass(record.m_className), nullptr);
                }
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}
