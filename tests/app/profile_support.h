// SPDX-License-Identifier: MIT
// A profile of a test's own, which leaves nothing behind.
#pragma once

#include "kortools/app/application.h"
#include "kortools/app/win_app.h"
#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <initializer_list>
#include <string>

class TestProfile {
public:
    TestProfile()
    {
#ifndef _WIN32
        setenv("XDG_CONFIG_HOME", m_folder.GetPath().c_str(), 1);
#endif
        SetInternalProductName(m_product.c_str(), 16);
    }
    ~TestProfile()
    {
        EnablePreferencesSaving(true);
        for (wchar_t const *const section : { L"settings", L"a" })
            m_app.DeleteProfileKey(section); // the last one takes the product with it
        SetInternalProductName(L"");
    }
    TestProfile(TestProfile const &) = delete;
    TestProfile &operator=(TestProfile const &) = delete;

    CWinApp m_app;
    TempFolder const m_folder; // on Linux of the profile
    std::wstring const m_product = m_folder.GetPath().filename().wstring();
    std::filesystem::path const m_file
        = m_folder.GetPath() / "Brantis" / (m_folder.GetPath().filename().string() + ".ini");
};
