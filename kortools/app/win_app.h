// SPDX-License-Identifier: MIT
// CWinApp: the host's application object, with its profile: small values that are kept for the user
// from one run to the next, by section and entry. What is larger, or has a structure, belongs into
// the preferences file (CCustomData::SaveToPrefs()).
//
// The profile is HKEY_CURRENT_USER\Software\Brantis\<product> in the registry on Windows, and the
// file ~/.config/Brantis/<product>.ini on Linux (docs/profile-format.md). Values have types: an
// entry that holds something else than what is asked for counts as missing. Texts of any kind come
// back as they were, with line ends and blanks. Names have 1 to 200 characters, and their letters
// are the same in upper and lower case; a section "a\b" lies below the section "a".
//
// Any thread and several processes may use one profile. Writes return false when the value is not
// where the next run finds it, also while IsPreferencesSavingEnabled() is false.
//
//   CWinApp app;
//   app.WriteProfileInt(L"settings", L"windowWidth", 1280);
//   int const width = app.GetProfileInt(L"settings", L"windowWidth", 800);
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// A system header has macros of these names, each for either of two; both exist. A host that
// overrides these functions includes this header before the system's, or removes the macros.
#pragma push_macro("GetProfileInt")
#pragma push_macro("GetProfileString")
#pragma push_macro("WriteProfileString")
#undef GetProfileInt
#undef GetProfileString
#undef WriteProfileString

class KORTOOLS_API CWinApp {
public:
    CWinApp();
    CWinApp(CWinApp const &) = delete;
    CWinApp &operator=(CWinApp const &) = delete;
    virtual ~CWinApp();

    // The product whose profile it is: GetInternalProductName(), so that all versions share it.
    virtual CXTString<wchar_t> GetProfileName() const;

    virtual int GetProfileInt(
        wchar_t const *section, wchar_t const *entry, int defaultValue = 0) const;
    // False when the profile cannot be written, here and below.
    virtual bool WriteProfileInt(wchar_t const *section, wchar_t const *entry, int value);

    // A null value deletes the entry.
    virtual CXTString<wchar_t> GetProfileString(
        wchar_t const *section, wchar_t const *entry, wchar_t const *defaultValue = nullptr) const;
    virtual bool WriteProfileString(
        wchar_t const *section, wchar_t const *entry, wchar_t const *value);

    // A new block with the bytes and their number, to be freed with Free(); false, null and 0 when
    // there is no such value. A value of no bytes has a block, too.
    virtual bool GetProfileBinary(
        wchar_t const *section, wchar_t const *entry, void **data, unsigned int *size) const;
    virtual bool WriteProfileBinary(
        wchar_t const *section, wchar_t const *entry, void const *data, unsigned int size);
    static void Free(void *block);

    // False, and the default, when there is no such value. Kept as texts, every bit of them but the
    // kind of what is not a number.
    virtual bool GetProfileFloat(
        wchar_t const *section, wchar_t const *entry, float &value, float defaultValue = 0) const;
    virtual bool WriteProfileFloat(wchar_t const *section, wchar_t const *entry, float value);
    virtual bool GetProfileLongUInt(wchar_t const *section, wchar_t const *entry,
        unsigned long long &value, unsigned long long defaultValue = 0) const;
    virtual bool WriteProfileLongUInt(
        wchar_t const *section, wchar_t const *entry, unsigned long long value);

    // Removes an entry or, when that is null, the section with those below it. False when there was
    // none.
    virtual bool DeleteProfileKey(wchar_t const *section, wchar_t const *entry = nullptr);

    // --- The same, for callers that see the macros

    int GetProfileIntA(wchar_t const *section, wchar_t const *entry, int defaultValue = 0) const
    {
        return GetProfileInt(section, entry, defaultValue);
    }
    int GetProfileIntW(wchar_t const *section, wchar_t const *entry, int defaultValue = 0) const
    {
        return GetProfileInt(section, entry, defaultValue);
    }
    CXTString<wchar_t> GetProfileStringA(
        wchar_t const *section, wchar_t const *entry, wchar_t const *defaultValue = nullptr) const
    {
        return GetProfileString(section, entry, defaultValue);
    }
    CXTString<wchar_t> GetProfileStringW(
        wchar_t const *section, wchar_t const *entry, wchar_t const *defaultValue = nullptr) const
    {
        return GetProfileString(section, entry, defaultValue);
    }
    bool WriteProfileStringA(wchar_t const *section, wchar_t const *entry, wchar_t const *value)
    {
        return WriteProfileString(section, entry, value);
    }
    bool WriteProfileStringW(wchar_t const *section, wchar_t const *entry, wchar_t const *value)
    {
        return WriteProfileString(section, entry, value);
    }
};

#pragma pop_macro("WriteProfileString")
#pragma pop_macro("GetProfileString")
#pragma pop_macro("GetProfileInt")
