// SPDX-License-Identifier: MIT
#include "kortools/archive/runtime_class.h"

#include "kortools/archive/exception.h"
#include "kortools/core/critical_section.h"
#include "kortools/core/hash_map.h"
#include "kortools/core/xstring.h"

namespace {

struct ClassRegistry {
    CXCriticalSection m_lock;
    CHashMap<CXTString<char>, CXTString<char> const &, CXRuntimeClass const *> m_classes;
};

// Never destroyed: modules take their classes out while static objects are being destroyed, in an
// order that nobody knows.
ClassRegistry &get_registry()
{
    static auto *const s_registry = new ClassRegistry;
    return *s_registry;
}

} // namespace

// The DLL exports only constants that are defined out of the class.
constexpr unsigned int CXRuntimeClass::schema_mask;
constexpr unsigned int CXRuntimeClass::not_serializable;
constexpr unsigned int CXRuntimeClass::versionable_schema;

bool CXRuntimeClass::DeclareRuntimeClass(CXRuntimeClass const *runtimeClass)
{
    if (!runtimeClass || !runtimeClass->m_className)
        return false;
    ClassRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    registry.m_classes.Insert(runtimeClass->m_className, runtimeClass);
    return true;
}

void CXRuntimeClass::RemoveRuntimeClass(CXRuntimeClass const *runtimeClass)
{
    if (!runtimeClass || !runtimeClass->m_className)
        return;
    ClassRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    CXRuntimeClass const **const entry = registry.m_classes.Find(runtimeClass->m_className);
    if (entry && *entry == runtimeClass)
        registry.m_classes.Remove(runtimeClass->m_className);
}

CXRuntimeClass const *CXRuntimeClass::FindRuntimeClass(char const *className)
{
    if (!className)
        return nullptr;
    ClassRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    CXRuntimeClass const *const *const entry = registry.m_classes.Find(className);
    return entry ? *entry : nullptr;
}

CXObject *CXRuntimeClass::CreateObject() const
{
    CXObject *object = nullptr;
    try {
        if (m_createObject)
            object = m_createObject();
    } catch (CXException *exception) {
        exception->Delete(); // it may not be the pending one
    } catch (...) {
        object = nullptr;
    }
    XDeleteThreadException();
    return object;
}

bool CXRuntimeClass::IsDerivedFrom(CXRuntimeClass const *base) const
{
    for (CXRuntimeClass const *ancestor = this; ancestor; ancestor = ancestor->m_baseClass) {
        if (ancestor == base)
            return true;
    }
    return false;
}

constinit CXRuntimeClass const CXObject::classCreatorCXObject
    = { "CXObject", sizeof(CXObject), 1, nullptr, nullptr };
static kortools::archive::ClassRegistration const kor_registration_CXObject(
    &CXObject::classCreatorCXObject);

CXRuntimeClass const *CXObject::GetThisRuntimeClassDescriptor()
{
    return &classCreatorCXObject;
}

CXRuntimeClass const *CXObject::GetRuntimeClassDescriptor() const
{
    return &classCreatorCXObject;
}

void CXObject::Serialize(CXArchive &) { }

bool CXObject::IsKindOf(CXRuntimeClass const *runtimeClass) const
{
    return GetRuntimeClassDescriptor()->IsDerivedFrom(runtimeClass);
}
