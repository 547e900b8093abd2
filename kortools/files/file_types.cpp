// SPDX-License-Identifier: MIT
#include "kortools/files/file_types.h"

#include "kortools/core/critical_section.h"
#include "kortools/core/hash_map.h"
#include "kortools/core/hash_table.h"
#include "kortools/core/throw.h"
#include "kortools/files/file_type_registry.h"
#include "kortools/files/path_parts.h"
#include "kortools/files/path_text.h"
#include "kortools/platform/text_compare.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

using namespace kortools::files;

namespace {

using String = CXTString<wchar_t>;

constexpr unsigned int other_kinds = fileKind3D | fileKindAudio | fileKindVideo | fileKindWebPage
    | fileKindArchive; // of which a type has one, or it is a bitmap
constexpr unsigned int kinds = other_kinds | fileKindBitmap | fileKindFlash;

unsigned int kind_of(unsigned int properties)
{
    unsigned int const kind = properties & other_kinds;
    return kind ? kind : properties & fileKindBitmap;
}

bool passes(unsigned int properties, unsigned int filter)
{
    auto const has_one = [&](unsigned int bits) { return !bits || (properties & bits); };
    return has_one(filter & kinds) && has_one(filter & ~kinds);
}

// ASCII letters have the same partners in every locale here: where I has another one, files named
// .TIF are .tif files still.
String lowered(std::wstring_view extension)
{
    String text = to_string(extension);
    for (int i = 0; i < text.GetLength(); ++i) {
        wchar_t const ch = text[i];
        bool const is_upper = ch >= L'A' && ch <= L'Z';
        text.SetAt(i, is_upper ? wchar_t(ch | 0x20) : kortools::platform::to_lower(ch));
    }
    return text;
}

// Calls `use` with each extension of a list.
template <class Use> void for_each_extension(String const &list, Use use)
{
    std::wstring_view rest = view_of(list);
    while (!rest.empty()) {
        std::wstring_view const extension = rest.substr(0, rest.find(L'|'));
        rest.remove_prefix(std::min(extension.size() + 1, rest.size()));
        if (!extension.empty())
            use(extension);
    }
}

String main_extension(CFileExt const &type)
{
    std::wstring_view const list = view_of(type.m_extensions);
    return to_string(list.substr(0, list.find(L'|')));
}

String listed_extension(std::wstring_view extension, bool with_dot)
{
    return to_string(extension.substr(!with_dot && extension.front() == L'.'));
}

CFileExt make_built_in(BuiltInFileType const &source)
{
    auto const component = [&](unsigned int bits) {
        return source.properties & bits ? fileOwnComponent : fileNoComponent;
    };
    CFileExt type;
    type.m_description = source.description;
    type.m_extensions = source.extensions;
    type.m_class = source.file_class;
    type.m_properties = source.properties;
    type.m_loader = component(fileCanLoad);
    type.m_saver = component(fileCanSave);
    return type;
}

class FileTypes {
public:
    FileTypes();

    std::vector<CFileExt> const &all() const { return m_types; }
    void add(CFileExt const &type);
    template <class IsMeant> void remove(IsMeant is_meant);

    // Null when there is none; else valid until the types change.
    CFileExt const *find(String const &extension, std::size_t number = 0) const;
    CFileExt const *find(unsigned int file_class) const;

private:
    using Positions = std::vector<std::size_t>; // ascending

    void index(std::size_t position);
    void remove_at(std::size_t position);

    std::vector<CFileExt> m_types;                         // in the order of registration
    CHashMap<String, String const &, Positions> m_by_name; // in m_types, by lowered extension
};

FileTypes::FileTypes()
{
    for (BuiltInFileType const &type : get_built_in_file_types())
        add(make_built_in(type));
}

void FileTypes::add(CFileExt const &type)
{
    kortools::core::translate_shortage([&] { m_types.push_back(type); });
    try {
        kortools::core::translate_shortage([&] { index(m_types.size() - 1); });
    } catch (...) {
        remove_at(m_types.size() - 1);
        throw;
    }
}

void FileTypes::index(std::size_t position)
{
    for_each_extension(m_types[position].m_extensions, [&](std::wstring_view extension) {
        String const key = lowered(extension);
        Positions *const known = m_by_name.Find(key);
        if (known && (known->empty() || known->back() != position)) // ".tif|.TIF" is one extension
            known->push_back(position);
        else if (!known && m_by_name.Insert(key, Positions(1, position)) == 0)
            kortools::core::throw_out_of_memory();
    });
}

// Takes no memory. Names that nobody has any more stay, without positions.
void FileTypes::remove_at(std::size_t position)
{
    m_types.erase(m_types.begin() + static_cast<std::ptrdiff_t>(position));
    for (auto [name, positions] : m_by_name) {
        std::erase(positions, position);
        for (std::size_t &other : positions)
            other -= other > position;
    }
}

template <class IsMeant> void FileTypes::remove(IsMeant is_meant)
{
    for (std::size_t position = m_types.size(); position-- > 0;) {
        if (is_meant(m_types[position]))
            remove_at(position);
    }
}

CFileExt const *FileTypes::find(String const &extension, std::size_t number) const
{
    Positions const *const positions = m_by_name.Find(extension);
    return positions && number < positions->size() ? &m_types[(*positions)[number]] : nullptr;
}

CFileExt const *FileTypes::find(unsigned int file_class) const
{
    auto const found = std::ranges::find(m_types, file_class, &CFileExt::m_class);
    return found == m_types.end() ? nullptr : &*found;
}

struct Registry {
    // Never destroyed: plug-ins and static objects of the program may still ask at the very end.
    static Registry &get()
    {
        static Registry &s_registry = *new Registry;
        return s_registry;
    }

    CXCriticalSection m_lock;
    std::unique_ptr<FileTypes> m_types; // null: not created yet, or destroyed
};

// The types, created when there are none, and locked while this lives.
class LockedTypes {
public:
    LockedTypes()
        : m_registry(Registry::get())
        , m_lock(&m_registry.m_lock, true)
    {
        if (!m_registry.m_types)
            m_registry.m_types
                = kortools::core::translate_shortage([] { return std::make_unique<FileTypes>(); });
    }
    FileTypes *operator->() const { return m_registry.m_types.get(); }

private:
    Registry &m_registry;
    CXSingleLock m_lock;
};

// What `use` makes of the type of a name or a class, or no value.
template <class Use> auto with_type(String const &name, Use use, unsigned int number = 0)
{
    std::optional<decltype(use(CFileExt()))> result;
    if (name.IsEmpty())
        return result;
    String const extension = lowered(view_of(fileGetExtension(name)));
    LockedTypes const types;
    if (CFileExt const *const type = types->find(extension, number))
        result = use(*type);
    return result;
}

template <class Use> auto with_type(unsigned int file_class, Use use)
{
    std::optional<decltype(use(CFileExt()))> result;
    LockedTypes const types;
    if (CFileExt const *const type = types->find(file_class))
        result = use(*type);
    return result;
}

unsigned int class_of(CFileExt const &type)
{
    return type.m_class;
}

unsigned int properties_of(CFileExt const &type)
{
    return type.m_properties;
}

CFileExt *copy_types(unsigned int &count, unsigned int filter)
{
    std::vector<CFileExt> chosen;
    {
        LockedTypes const types;
        std::ranges::copy_if(types->all(), std::back_inserter(chosen),
            [&](CFileExt const &type) { return passes(type.m_properties, filter); });
    }
    count = static_cast<unsigned int>(chosen.size());
    if (chosen.empty())
        return nullptr;
    std::ranges::stable_sort(chosen, [](CFileExt const &a, CFileExt const &b) {
        return a.m_description.CompareNoCase(b.m_description) < 0;
    });
    auto result = std::make_unique<CFileExt[]>(chosen.size());
    std::ranges::move(chosen, result.get());
    return result.release();
}

} // namespace

void fileRegisterFile(CFileExt &type)
{
    LockedTypes()->add(type);
}

void fileUnregisterFile(unsigned int fileClass, unsigned int loader)
{
    LockedTypes()->remove([&](CFileExt const &type) {
        return type.m_class == fileClass && (loader == 0 || type.m_loader == loader);
    });
}

CFileExt *fileGetRegisteredFiles(unsigned int &count, unsigned int filter)
{
    return kortools::core::translate_shortage([&] { return copy_types(count, filter); });
}

void fileFreeRegisteredFiles(CFileExt *types, unsigned int)
{
    delete[] types;
}

bool fileGetFileExt(CXTString<wchar_t> const &name, CFileExt &type)
{
    std::optional<CFileExt> found = with_type(name, [](CFileExt const &known) { return known; });
    if (found)
        type = std::move(*found);
    return found.has_value();
}

unsigned int fileGetProperties(CXTString<wchar_t> const &name)
{
    return with_type(name, properties_of).value_or(0);
}

unsigned int fileGetKindOf(CXTString<wchar_t> const &name)
{
    return kind_of(fileGetProperties(name));
}

unsigned int fileGetClass(CXTString<wchar_t> const &name)
{
    return with_type(name, class_of).value_or(0);
}

unsigned int fileGetLoader(CXTString<wchar_t> const &name)
{
    return with_type(name, [](CFileExt const &type) { return type.m_loader; }).value_or(0);
}

unsigned int fileGetSaver(CXTString<wchar_t> const &name)
{
    return with_type(name, [](CFileExt const &type) { return type.m_saver; }).value_or(0);
}

CXTString<wchar_t> fileGetMainExtension(CXTString<wchar_t> const &name)
{
    return with_type(name, main_extension).value_or(String());
}

unsigned int fileFindParser(CXTString<wchar_t> const &name, unsigned int number)
{
    return with_type(name, class_of, number).value_or(0);
}

bool fileGetCInfo(CXTString<wchar_t> const &name, unsigned int &fileClass, unsigned int &component,
    bool forSaving)
{
    auto const tell = [&](CFileExt const &type) {
        fileClass = type.m_class;
        component = forSaving ? type.m_saver : type.m_loader;
        return true;
    };
    return with_type(name, tell).has_value();
}

bool fileGetExtensionInfo(unsigned int fileClass, CFileExt &type)
{
    std::optional<CFileExt> found
        = with_type(fileClass, [](CFileExt const &known) { return known; });
    if (found)
        type = std::move(*found);
    return found.has_value();
}

unsigned int fileGetProperties(unsigned int fileClass)
{
    return with_type(fileClass, properties_of).value_or(0);
}

unsigned int fileGetKindOf(unsigned int fileClass)
{
    return kind_of(fileGetProperties(fileClass));
}

CXTString<wchar_t> fileGetMainExtension(unsigned int fileClass)
{
    return with_type(fileClass, main_extension).value_or(String());
}

int fileGetExtensionArray(
    unsigned int fileClass, CXArray<CXTString<wchar_t>> &extensions, bool withDot)
{
    int const before = extensions.GetSize();
    CFileExt type;
    fileGetExtensionInfo(fileClass, type);
    for_each_extension(type.m_extensions,
        [&](std::wstring_view extension) { extensions.Add(listed_extension(extension, withDot)); });
    return extensions.GetSize() - before;
}

int fileGetExtensionArrayByProperty(
    unsigned int properties, CXArray<CXTString<wchar_t>> &extensions, bool withDot, bool needsAll)
{
    int const before = extensions.GetSize();
    CHashTable<String> seen;
    LockedTypes const types;
    for (CFileExt const &type : types->all()) {
        bool const is_wanted = needsAll ? (type.m_properties & properties) == properties
                                        : passes(type.m_properties, properties);
        if (!is_wanted)
            continue;
        for_each_extension(type.m_extensions, [&](std::wstring_view extension) {
            if (seen.Insert(lowered(extension)))
                extensions.Add(listed_extension(extension, withDot));
        });
    }
    return extensions.GetSize() - before;
}

namespace kortools::files {

void create_file_types()
{
    LockedTypes const types;
}

void destroy_file_types()
{
    Registry &registry = Registry::get();
    CXSingleLock const lock(&registry.m_lock, true);
    registry.m_types.reset();
}

bool add_file_type(CFileExt const &type)
{
    Registry &registry = Registry::get();
    CXSingleLock const lock(&registry.m_lock, true);
    if (registry.m_types)
        registry.m_types->add(type);
    return registry.m_types != nullptr;
}

bool has_file_types(IoPluginCallback callback)
{
    Registry &registry = Registry::get();
    CXSingleLock const lock(&registry.m_lock, true);
    return registry.m_types
        && std::ranges::find(registry.m_types->all(), callback, &CFileExt::m_callback)
        != registry.m_types->all().end();
}

void remove_file_types(IoPluginCallback callback)
{
    Registry &registry = Registry::get();
    CXSingleLock const lock(&registry.m_lock, true);
    if (registry.m_types)
        registry.m_types->remove([&](CFileExt const &type) { return type.m_callback == callback; });
}

std::vector<CFileExt> find_file_types(CXTString<wchar_t> const &name)
{
    std::vector<CFileExt> result;
    if (name.IsEmpty())
        return result;
    String const extension = lowered(view_of(fileGetExtension(name)));
    LockedTypes const types;
    for (std::size_t i = 0; CFileExt const *const type = types->find(extension, i); ++i)
        result.push_back(*type);
    return result;
}

} // namespace kortools::files
