// SPDX-License-Identifier: MIT
#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/mem_file.h"
#include "kortools/data/custom_data.h"
#include "kortools/data/preferences_file.h"

#include <exception>

using namespace kortools::data;

namespace {

// False when the call throws: the file cannot be used, or there is no memory.
template <class Call> bool succeeds(Call const &call)
{
    try {
        return call();
    } catch (CXException *exception) {
        exception->Delete();
    } catch (std::exception const &) {
        return false;
    }
    return false;
}

} // namespace

bool CCustomData::SaveToPrefs(CXTString<wchar_t> const &file, unsigned int id, unsigned int version)
{
    return succeeds([&] {
        CXSingleLock const lock(&m_section, true);
        CXMemFile container;
        CXArchive archive(&container, CXArchive::store);
        CCustomData::Serialize(archive);
        archive.Close();
        save_record(file, { id, version }, container.GetBuffer(), container.GetLength());
        return true;
    });
}

// By value, as the interface has it for callers that take its address.
// NOLINTBEGIN(performance-unnecessary-value-param)
bool CCustomData::LoadFromPrefs(
    CXTString<wchar_t> file, unsigned int id, unsigned int version, bool orOlder)
// NOLINTEND(performance-unnecessary-value-param)
{
    return succeeds([&] {
        CXSingleLock const lock(&m_section, true);
        PreferencesReader reader(file);
        CXFile *const container
            = reader.find({ id, version }, orOlder ? VersionRule::OrOlder : VersionRule::Exact);
        if (!container)
            return false;
        CXArchive archive(container, CXArchive::load);
        CCustomData::Serialize(archive);
        return true;
    });
}
