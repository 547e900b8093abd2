// SPDX-License-Identifier: MIT
// CXRuntimeClass: the static record that describes a serializable class, and the process-wide
// registry that finds a record by the name that archives carry.
//
// A class has one record, which must outlive every use of its name. The registry locks itself; the
// records are read without a lock.
//
//   class CMesh : public CXObject {
//       KOR_DECLARE_CLASS(CMesh)
//   public:
//       void Serialize(CXArchive &archive) override;
//   };
//   KOR_IMPLEMENT_CLASS(CMesh, CXObject, 1) // in the source file; registered at load
#pragma once

#include "kortools/export.h"

class CXArchive;
class CXObject;

struct KORTOOLS_API CXRuntimeClass {
    static constexpr unsigned int schema_mask = 0x00FFFFFF;        // the number's bits
    static constexpr unsigned int not_serializable = 0x10000000;   // refused by archives
    static constexpr unsigned int versionable_schema = 0x20000000; // other schemas may be loaded

    char const *m_className;           // narrow; the key of the registry and the name in archives
    unsigned long long m_objectSize;   // bytes
    unsigned int m_schema;             // schema_mask bits: schema number; the two flags above
    CXRuntimeClass const *m_baseClass; // null for the root
    CXObject *(*m_createObject)();     // null when objects cannot be created by name

    // Registers a record under its name, in place of an earlier one of that name. False, and
    // nothing done, for null and for a record without a name. May be called at any time, also
    // before the library's own static objects are initialised and while those of the program are
    // destroyed.
    static bool DeclareRuntimeClass(CXRuntimeClass const *runtimeClass);

    // Takes a record out of the registry (a plug-in's, before it is unloaded), if it is still the
    // one registered under its name.
    static void RemoveRuntimeClass(CXRuntimeClass const *runtimeClass);

    // The record registered under a name, or null (also for a null name).
    static CXRuntimeClass const *FindRuntimeClass(char const *className);

    // A new object, which the caller owns, or null when the class has no creation function or when
    // that function throws anything. In every case the thread's pending exception is released.
    CXObject *CreateObject() const;

    // True when `base` is this record or one of its ancestors. May be called on a null record, and
    // is then false, as it is for a null `base`.
    bool IsDerivedFrom(CXRuntimeClass const *base) const;

    bool IsSerializable() const { return (m_schema & not_serializable) == 0; }
    unsigned int GetSchema() const { return m_schema & schema_mask; }

    // Writes the class record of the archive format: schema number and length of the name in two
    // bytes each, then the name.
    void Save(CXArchive &archive) const;

    // Reads what Save() wrote. `schema` receives the stored number; the result is null for a name
    // that is not registered. A cut record throws CXArchiveException (end of file).
    static CXRuntimeClass const *Load(CXArchive &archive, unsigned int &schema);
};

namespace kortools::archive {

// Keeps a record registered for as long as the module that holds it is loaded.
class ClassRegistration {
public:
    explicit ClassRegistration(CXRuntimeClass const *runtimeClass)
        : m_runtimeClass(runtimeClass)
    {
        CXRuntimeClass::DeclareRuntimeClass(m_runtimeClass);
    }
    ~ClassRegistration() { CXRuntimeClass::RemoveRuntimeClass(m_runtimeClass); }
    ClassRegistration(ClassRegistration const &) = delete;
    ClassRegistration &operator=(ClassRegistration const &) = delete;

private:
    CXRuntimeClass const *m_runtimeClass;
};

} // namespace kortools::archive

// The root of the serializable classes.
class KORTOOLS_API CXObject {
public:
    // What the macros make in every class: its record, and the way to it.
    static CXRuntimeClass const classCreatorCXObject;
    static constexpr CXRuntimeClass const *kor_class_record() { return &classCreatorCXObject; }
    static CXRuntimeClass const *GetThisRuntimeClassDescriptor();

    virtual ~CXObject() = default;
    virtual CXRuntimeClass const *GetRuntimeClassDescriptor() const;

    // Writes the object to a storing archive or reads it from a loading one. Nothing by default.
    virtual void Serialize(CXArchive &archive);

    // True when the object's class is `runtimeClass` or derived from it.
    bool IsKindOf(CXRuntimeClass const *runtimeClass) const;

protected:
    CXObject() = default;
    CXObject(CXObject const &) = default;
    CXObject &operator=(CXObject const &) = default;
};

// In the class body, first thing; leaves the access at private. kor_class_record() is for the
// macros only: a constant expression where the base class lies in the same module (and on Linux
// always), so that records are complete before any static object is initialised.
#define KOR_DECLARE_CLASS(Class)                                                                   \
public:                                                                                            \
    static CXRuntimeClass const classCreator##Class;                                               \
    static constexpr CXRuntimeClass const *kor_class_record()                                      \
    {                                                                                              \
        return &classCreator##Class;                                                               \
    }                                                                                              \
    static CXRuntimeClass const *GetThisRuntimeClassDescriptor();                                  \
    CXRuntimeClass const *GetRuntimeClassDescriptor() const override;                              \
                                                                                                   \
private:

// For the two macros below.
#define KOR_DETAIL_IMPLEMENT_CLASS(Class, Base, schemaWord, creator)                               \
    CXRuntimeClass const Class::classCreator##Class                                                \
        = { #Class, sizeof(Class), schemaWord, Base::kor_class_record(), creator };                \
    CXRuntimeClass const *Class::GetThisRuntimeClassDescriptor()                                   \
    {                                                                                              \
        return &classCreator##Class;                                                               \
    }                                                                                              \
    CXRuntimeClass const *Class::GetRuntimeClassDescriptor() const                                 \
    {                                                                                              \
        return &classCreator##Class;                                                               \
    }                                                                                              \
    static kortools::archive::ClassRegistration const kor_registration_##Class(                    \
        &Class::classCreator##Class);

// In one source file, at global scope. `schemaWord` is the schema number (1 to 0xFFFF) with the
// flags of CXRuntimeClass. Objects of the class can be created by name.
#define KOR_IMPLEMENT_CLASS(Class, Base, schemaWord)                                               \
    KOR_DETAIL_IMPLEMENT_CLASS(                                                                    \
        Class, Base, schemaWord, +[]() -> CXObject * { return new Class; })

// The same for a class of which no object is created by name.
#define KOR_IMPLEMENT_ABSTRACT_CLASS(Class, Base, schemaWord)                                      \
    KOR_DETAIL_IMPLEMENT_CLASS(Class, Base, schemaWord, nullptr)
