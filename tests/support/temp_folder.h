// SPDX-License-Identifier: MIT
// A folder of a test's own, removed with everything in it.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

class TempFolder {
public:
    explicit TempFolder(
        std::filesystem::path const &parent = std::filesystem::temp_directory_path())
    {
        static std::atomic<unsigned> s_next { 0 };
        auto const ticks = std::chrono::steady_clock::now().time_since_epoch().count();
        m_path = parent / ("kortools-" + std::to_string(ticks) + "-" + std::to_string(s_next++));
        std::filesystem::create_directories(m_path);
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(TempFolder const &) = delete;
    TempFolder &operator=(TempFolder const &) = delete;

    std::filesystem::path const &GetPath() const { return m_path; }

    // A path in the folder, as the library takes it on either system.
    std::wstring GetFile(std::wstring const &name) const { return m_path.wstring() + L'/' + name; }

    // The bytes of a file in the folder.
    void Write(std::filesystem::path const &name, std::string const &bytes) const
    {
        std::ofstream(m_path / name, std::ios::binary) << bytes;
    }
    std::string Read(std::filesystem::path const &name) const
    {
        std::ifstream file(m_path / name, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), {} };
    }

private:
    std::filesystem::path m_path;
};
