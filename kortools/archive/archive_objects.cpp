// SPDX-License-Identifier: MIT
// Objects and classes. Both get their indices from one counter, in the order in which they are
// written for the first time; reading counts along, so an index in the file is an entry of the
// load array. Bit 15 of a two-byte tag, or bit 31 of a four-byte one, tells a class's index from an
// object's.
#include "kortools/archive/archive_objects.h"

#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/core/throw.h"
#include "kortools/platform/stack.h"

#include <algorithm>
#include <new>
#include <stdexcept>

namespace {

constexpr unsigned short null_tag = 0;
constexpr unsigned short large_tag = 0x7FFF; // a four-byte tag follows
constexpr unsigned short new_class_tag = 0xFFFF;
constexpr unsigned int small_class_bit = 0x8000;
constexpr unsigned int class_bit = 0x80000000;
constexpr unsigned int last_index = 0x7FFFFFFE;

constexpr std::size_t stack_reserve = 128 * 1024; // bytes left to one object's own functions

// The address that the calling thread's stack must stay above while objects nest; null when the
// system cannot tell, or when the caller runs on a stack that the system does not know.
void const *get_stack_limit()
{
    auto const [low, high] = kortools::platform::get_stack_range();
    auto const here = reinterpret_cast<std::size_t>(__builtin_frame_address(0));
    if (here < low || here >= high)
        return nullptr;
    return reinterpret_cast<void const *>(low + std::min(stack_reserve, (high - low) / 4));
}

} // namespace

namespace kortools::archive {

void StoreMap::insert(void const *address, unsigned int index)
{
    kortools::core::translate_shortage([&] { m_indices.insert(address, index); });
}

void LoadArray::add_class(LoadedClass const &loaded)
{
    kortools::core::translate_shortage([&] {
        m_classes.push_back(loaded);
        m_entries.push_back((m_classes.size() - 1) * 2 + class_bit);
    });
}

void LoadArray::add_empty()
{
    kortools::core::translate_shortage([&] { m_entries.push_back(0); });
}

LoadArray::LoadedClass const *LoadArray::get_class(std::size_t index) const
{
    if (index >= m_entries.size() || (m_entries[index] & class_bit) == 0)
        return nullptr;
    return &m_classes[m_entries[index] / 2];
}

CXObject *LoadArray::get_object(std::size_t index) const
{
    if (index >= m_entries.size() || (m_entries[index] & class_bit) != 0)
        return nullptr;
    return reinterpret_cast<CXObject *>(m_entries[index]);
}

void LoadArray::begin_orphans()
{
    std::fill_n(m_entries.begin() + static_cast<std::ptrdiff_t>(m_firstOrphan), m_orphanCount, 0);
    m_orphanCount = 0;
    m_firstOrphan = m_entries.size();
}

// In place, because it may be memory that was missing.
std::span<std::uintptr_t> LoadArray::get_orphans()
{
    auto const first = m_entries.begin() + static_cast<std::ptrdiff_t>(m_firstOrphan);
    auto const is_none
        = [](std::uintptr_t entry) { return entry == 0 || (entry & class_bit) != 0; };
    if (m_orphanCount == 0) {
        auto const end = std::remove_if(first, m_entries.end(), is_none);
        m_orphanCount = static_cast<std::size_t>(end - first);
        std::fill(end, m_entries.end(), 0);
    }
    return { first, m_orphanCount };
}

void LoadArray::delete_orphans()
{
    for (std::size_t count = get_orphans().size(); count > 0; --count) {
        CXObject *const orphan = get_object(m_firstOrphan + count - 1);
        m_entries[m_firstOrphan + count - 1] = 0;
        m_orphanCount = count - 1;
        delete orphan;
    }
    m_firstOrphan = m_entries.size();
}

// One level of objects inside each other, in either mode. Within it the archive's schema is that
// of the object, however many others are read on the way.
class ObjectScope {
public:
    ObjectScope(CXArchive &archive, unsigned int outerSchema)
        : m_archive(archive)
        , m_schema(archive.m_objectSchema)
        , m_outerSchema(outerSchema)
    {
        if (archive.m_depth == 0)
            archive.m_stackLimit = get_stack_limit();
        if (archive.m_depth >= CXArchive::max_object_depth
            || __builtin_frame_address(0) < archive.m_stackLimit)
            archive.Throw(CXArchiveException::genericException);
        ++archive.m_depth;
    }
    ~ObjectScope()
    {
        --m_archive.m_depth;
        m_archive.m_objectSchema = m_archive.m_depth == 0 ? m_schema : m_outerSchema;
    }
    ObjectScope(ObjectScope const &) = delete;
    ObjectScope &operator=(ObjectScope const &) = delete;

private:
    CXArchive &m_archive;
    unsigned int m_schema;
    unsigned int m_outerSchema;
};

} // namespace kortools::archive

using kortools::archive::LoadArray;
using kortools::archive::ObjectScope;
using kortools::archive::StoreMap;

inline StoreMap &CXArchive::GetStoreMap()
{
    if (!m_storeMap) [[unlikely]]
        m_storeMap
            = kortools::core::translate_shortage([] { return std::make_unique<StoreMap>(); });
    return *m_storeMap;
}

inline LoadArray &CXArchive::GetLoadArray()
{
    if (!m_loadArray) [[unlikely]]
        m_loadArray
            = kortools::core::translate_shortage([] { return std::make_unique<LoadArray>(); });
    return *m_loadArray;
}

// --- storing

CXArchive &CXArchive::operator<<(CXObject const *object)
{
    WriteObject(object);
    return *this;
}

void CXArchive::WriteObject(CXObject const *object)
{
    CheckMode(store);
    if (!object) {
        *this << null_tag;
        return;
    }
    StoreMap &map = GetStoreMap();
    if (unsigned int const index = map.find(object)) {
        WriteTag(index, 0);
        return;
    }
    ObjectScope const scope(*this, m_objectSchema);
    WriteClass(object->GetRuntimeClassDescriptor());
    map.insert(object, TakeIndex());
    const_cast<CXObject *>(object)->Serialize(*this); // does not change an object that is stored
}

void CXArchive::WriteClass(CXRuntimeClass const *runtimeClass)
{
    if (!IsStoring() || !m_file)
        Throw(CXArchiveException::genericException);
    if (!runtimeClass)
        Throw(CXArchiveException::badClass);
    if (!runtimeClass->IsSerializable())
        Throw(CXArchiveException::genericException);
    StoreMap &map = GetStoreMap();
    bool const repeated = map.m_lastClass == runtimeClass;
    unsigned int index = repeated ? map.m_lastClassIndex : map.find(runtimeClass);
    if (index != 0) {
        WriteTag(index, class_bit);
    } else {
        *this << new_class_tag;
        runtimeClass->Save(*this);
        index = TakeIndex();
        map.insert(runtimeClass, index);
    }
    map.m_lastClass = runtimeClass;
    map.m_lastClassIndex = index;
}

unsigned int CXArchive::TakeIndex()
{
    if (m_mapCount > last_index)
        Throw(CXArchiveException::genericException);
    return m_mapCount++;
}

// `classBit` is 0 for an object.
void CXArchive::WriteTag(unsigned int index, unsigned int classBit)
{
    if (index < large_tag)
        *this << static_cast<unsigned short>(index | classBit >> 16);
    else
        *this << large_tag << (index | classBit);
}

// --- loading

CXArchive &CXArchive::operator>>(CXObject *&object)
{
    object = ReadObject(nullptr);
    return *this;
}

CXArchive &CXArchive::operator>>(CXObject const *&object)
{
    object = ReadObject(nullptr);
    return *this;
}

CXObject *CXArchive::ReadObject(CXRuntimeClass const *expected)
{
    CheckMode(load);
    unsigned int const outerSchema = m_objectSchema;
    if (m_depth == 0)
        GetLoadArray().begin_orphans();
    unsigned int tag = 0;
    CXRuntimeClass const *const objectClass = ReadClass(expected, nullptr, &tag);
    CXObject *const object
        = objectClass ? LoadObject(objectClass, outerSchema) : FindObject(tag, expected);
    if (m_depth == 0)
        GetLoadArray().adopt_orphans();
    return object;
}

CXObject *CXArchive::LoadObject(CXRuntimeClass const *objectClass, unsigned int outerSchema)
{
    ObjectScope const scope(*this, outerSchema);
    TakeIndex();
    LoadArray &loaded = GetLoadArray();
    loaded.add_empty(); // before there is an object that could get lost
    CXObject *const object = objectClass->CreateObject();
    if (!object)
        Throw(CXArchiveException::badClass);
    loaded.set_last(object);
    object->Serialize(*this);
    return object;
}

CXObject *CXArchive::FindObject(unsigned int index, CXRuntimeClass const *expected)
{
    if (index == 0)
        return nullptr;
    CXObject *const object = GetLoadArray().get_object(index);
    if (!object)
        Throw(CXArchiveException::badIndex);
    if (expected && !object->IsKindOf(expected))
        Throw(CXArchiveException::badClass);
    return object;
}

CXRuntimeClass const *CXArchive::ReadClass(
    CXRuntimeClass const *expected, unsigned int *schema, unsigned int *objectTag)
{
    if (!IsLoading() || !m_file || (expected && !expected->IsSerializable()))
        Throw(CXArchiveException::genericException);
    unsigned short word;
    *this >> word;
    unsigned int tag = (word & small_class_bit) << 16 | (word & ~small_class_bit);
    if (word == large_tag)
        *this >> tag;
    if ((tag & class_bit) == 0) {
        if (!objectTag)
            Throw(CXArchiveException::badIndex);
        *objectTag = tag;
        return nullptr;
    }
    if (word == new_class_tag)
        LoadClass();
    auto const *const loaded
        = GetLoadArray().get_class(word == new_class_tag ? m_mapCount - 1 : tag & ~class_bit);
    if (!loaded)
        Throw(CXArchiveException::badIndex);
    if (expected && !loaded->m_class->IsDerivedFrom(expected))
        Throw(CXArchiveException::badClass);
    m_objectSchema = loaded->m_schema;
    if (schema)
        *schema = loaded->m_schema;
    return loaded->m_class;
}

// Enters the class record that follows into the load array.
void CXArchive::LoadClass()
{
    unsigned int schema = 0;
    CXRuntimeClass const *const runtimeClass = CXRuntimeClass::Load(*this, schema);
    if (!runtimeClass)
        Throw(CXArchiveException::badClass);
    if (!runtimeClass->IsSerializable())
        Throw(CXArchiveException::genericException);
    bool const versionable = (runtimeClass->m_schema & CXRuntimeClass::versionable_schema) != 0;
    if (schema != runtimeClass->GetSchema() && !versionable)
        Throw(CXArchiveException::badSchema);
    TakeIndex();
    GetLoadArray().add_class({ runtimeClass, schema });
}

void CXArchive::SerializeClass(CXRuntimeClass const *runtimeClass)
{
    if (IsStoring())
        WriteClass(runtimeClass);
    else
        ReadClass(runtimeClass);
}

std::size_t CXArchive::GetOrphanCount() const
{
    return m_loadArray ? m_loadArray->get_orphans().size() : 0;
}

CXObject *CXArchive::GetOrphan(std::size_t index) const
{
    return index < GetOrphanCount()
        ? reinterpret_cast<CXObject *>(m_loadArray->get_orphans()[index])
        : nullptr;
}

void CXArchive::DeleteOrphans()
{
    if (m_loadArray)
        m_loadArray->delete_orphans();
}
