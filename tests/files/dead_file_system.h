// SPDX-License-Identifier: MIT
// A folder in which names that begin with "dead" do not answer, as on a share whose server is gone;
// "alive" is a file and other names do not exist. It is a FUSE file system when this process may
// mount one; otherwise the library's calls are held back before they reach the system.
#pragma once

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class DeadFileSystem {
public:
    DeadFileSystem();
    ~DeadFileSystem(); // releases
    DeadFileSystem(DeadFileSystem const &) = delete;
    DeadFileSystem &operator=(DeadFileSystem const &) = delete;

    bool IsMounted() const { return m_device >= 0; }
    std::string GetFolder() const { return m_folder.string(); }

    void Release(); // everything that waits is answered, "no such file", and nothing waits again

private:
    bool mount_it();
    void serve();
    void answer(unsigned long long request, int error, void const *data, std::size_t size) const;
    void look_up(unsigned long long request, std::string const &name);
    static void hold_call(std::string const &path);

    std::filesystem::path m_folder;
    int m_device = -1;
    std::thread m_server;
    std::mutex m_mutex; // guards the rest
    std::condition_variable m_changed;
    std::vector<unsigned long long> m_held; // requests that wait for their answer
    int m_waiting = 0;                      // calls that are held back
    bool m_is_released = false;
};
