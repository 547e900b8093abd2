// SPDX-License-Identifier: MIT
// Runs command lines of scoutrix with a scene and settings of the test's own.
#pragma once

#include "apps/scoutrix/host.h"
#include "kortools/files/plugins.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

inline std::string to_utf8(std::filesystem::path const &path)
{
    std::u8string const text = path.u8string();
    return { text.begin(), text.end() };
}

// Without plug-ins, unless a test sets their folder.
class Host : public testing::Test {
protected:
    Host() { SetPluginProbeLimit(60000); } // the machine may be busy

    // The exit code; what is printed stays in m_output and m_errors.
    int Run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(),
            { "scoutrix", "--settings", m_settings, "--log", m_log, "--plugins", m_plugins });
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        int const result = scoutrix::run_host(arguments);
        m_output = testing::internal::GetCapturedStdout();
        m_errors = testing::internal::GetCapturedStderr();
        return result;
    }

    static std::string Sample(std::string const &name) { return KOR_SAMPLES "/" + name; }

    void Import(std::vector<std::string> const &names)
    {
        std::vector<std::string> arguments { "import", "-o", m_scene };
        for (std::string const &name : names)
            arguments.push_back(Sample(name));
        EXPECT_EQ(Run(arguments), 0) << m_errors;
    }

    // The names in the list, in its order.
    std::string ListNames(std::vector<std::string> const &options)
    {
        std::vector<std::string> arguments { "list", m_scene };
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(Run(arguments), 0) << m_errors;
        std::istringstream lines(m_output);
        std::string names;
        for (std::string line; std::getline(lines, line) && line.starts_with(' ');) {
            std::istringstream words(line);
            std::string word;
            words >> word >> word;
            names += word + ' ';
        }
        return names;
    }

    TempFolder const m_folder;
    std::string const m_settings = to_utf8(m_folder.GetPath() / "settings" / "host.prefs");
    std::string const m_scene = to_utf8(m_folder.GetPath() / "a.scene");
    std::string const m_log = to_utf8(m_folder.GetPath() / "host.log");
    std::string m_plugins
        = to_utf8(m_folder.GetPath() / "none"); // the host reads what it can itself
    std::string m_output;
    std::string m_errors;
};
