// SPDX-License-Identifier: MIT
#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/mem_file.h"
#include "kortools/data/custom_data.h"
#include "kortools/data/preferences_file.h"

#include <exception>

using namespace kortools::data;

bool CCustomData::SaveToPrefs(CXTString<wchar_t> const &file, unsigned int id, unsigned int version)
try {
    CXSingleLock const lock(&m_section, true);
    CXMemFile container;
    CXArchive archive(&container, CXArchive::store);
    CCustomData::Serialize(archive);
    archive.Close();
    save_record(file, { id, version }, container.GetBuffer(), container.GetLength());
    return true;
} catch (CXException *exception) {
    exception->Delete();
    return false;
} catch (std::exception const &) { // no memory
    return false;
}

// By value, as the interface has it for callers that take its address.
// NOLINTBEGIN(performance-unnecessary-value-param)
bool CCustomData::LoadFromPrefs(
    CXTString<wchar_t> file, unsigned int id, unsigned int version, bool orOlder)
// NOLINTEND(performance-unnecessary-value-param)
try {
    CXSingleLock const lock(&m_section, true);
    PreferencesReader reader(file);
    CXFile *const container
        = reader.find({ id, version }, orOlder ? VersionRule::OrOlder : VersionRule::Exact);
    if (!container)
        return false;
    CXArchive archive(container, CXArchive::load);
    CCustomData::Serialize(archive);
    return true;
} catch (CXException *exception) {
    exception->Delete();
    return false;
} catch (std::exception const &) { // no memory
    return false;
}
