// SPDX-License-Identifier: MIT
#include "tests/files/dead_file_system.h"

#include "kortools/platform/posix/native_path.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace fs = std::filesystem;
using kortools::platform::s_call_hook;

namespace {

DeadFileSystem *s_current = nullptr;

fuse_attr make_attributes(unsigned long long node, unsigned int mode)
{
    fuse_attr attributes {};
    attributes.ino = node;
    attributes.mode = mode;
    attributes.nlink = 1;
    return attributes;
}

fuse_attr const root_attributes = make_attributes(FUSE_ROOT_ID, S_IFDIR | 0755);

} // namespace

DeadFileSystem::DeadFileSystem()
{
    std::string name = (fs::temp_directory_path() / "kortools-dead-XXXXXX").string();
    m_folder = mkdtemp(name.data());
    s_current = this;
    if (mount_it())
        m_server = std::thread([this] { serve(); });
    else
        s_call_hook = &DeadFileSystem::hold_call;
}

DeadFileSystem::~DeadFileSystem()
{
    Release();
    if (IsMounted()) {
        umount2(m_folder.c_str(), MNT_DETACH);
        m_server.join();
        close(m_device);
    } else {
        s_call_hook = nullptr;
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_waiting == 0; });
    }
    fs::remove(m_folder);
}

bool DeadFileSystem::mount_it()
{
    m_device = open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (m_device < 0)
        return false;
    std::string const options
        = "fd=" + std::to_string(m_device) + ",rootmode=40000,user_id=0,group_id=0";
    if (mount("dead", m_folder.c_str(), "fuse", MS_NOSUID | MS_NODEV, options.c_str()) == 0)
        return true;
    close(m_device);
    m_device = -1;
    return false;
}

void DeadFileSystem::answer(
    unsigned long long request, int error, void const *data, std::size_t size) const
{
    fuse_out_header header {};
    header.len = static_cast<unsigned int>(sizeof header + size);
    header.error = -error;
    header.unique = request;
    iovec const parts[] = { { &header, sizeof header }, { const_cast<void *>(data), size } };
    [[maybe_unused]] ssize_t const written = writev(m_device, parts, size == 0 ? 1 : 2);
}

void DeadFileSystem::look_up(unsigned long long request, std::string const &name)
{
    if (name == "alive") {
        fuse_entry_out entry {};
        entry.nodeid = 2;
        entry.attr = make_attributes(2, S_IFREG | 0644);
        answer(request, 0, &entry, sizeof entry);
        return;
    }
    std::scoped_lock const lock(m_mutex);
    if (name.starts_with("dead") && !m_is_released)
        m_held.push_back(request);
    else
        answer(request, ENOENT, nullptr, 0);
}

void DeadFileSystem::serve()
{
    std::vector<char> buffer(1 << 20);
    for (;;) {
        ssize_t const size = read(m_device, buffer.data(), buffer.size());
        if (size < 0 && (errno == EINTR || errno == ENOENT))
            continue;
        if (size < static_cast<ssize_t>(sizeof(fuse_in_header)))
            return; // unmounted
        fuse_in_header header;
        std::memcpy(&header, buffer.data(), sizeof header);
        char const *const body = buffer.data() + sizeof header;
        if (header.opcode == FUSE_INIT) {
            fuse_init_out init {};
            init.major = FUSE_KERNEL_VERSION;
            init.minor = FUSE_KERNEL_MINOR_VERSION;
            init.max_write = 4096;
            init.flags = FUSE_PARALLEL_DIROPS; // else one lookup holds up the others
            answer(header.unique, 0, &init, sizeof init);
        } else if (header.opcode == FUSE_LOOKUP) {
            look_up(header.unique, body);
        } else if (header.opcode == FUSE_GETATTR) {
            fuse_attr_out attributes {};
            attributes.attr = header.nodeid == FUSE_ROOT_ID ? root_attributes
                                                            : make_attributes(2, S_IFREG | 0644);
            answer(header.unique, 0, &attributes, sizeof attributes);
        } else if (header.opcode != FUSE_FORGET && header.opcode != FUSE_BATCH_FORGET
            && header.opcode != FUSE_INTERRUPT) {
            answer(header.unique, ENOSYS, nullptr, 0);
        }
    }
}

void DeadFileSystem::hold_call(std::string const &path)
{
    DeadFileSystem &self = *s_current;
    if (!fs::weakly_canonical(path).string().starts_with(self.GetFolder() + "/dead"))
        return;
    std::unique_lock lock(self.m_mutex);
    ++self.m_waiting;
    self.m_changed.wait(lock, [&] { return self.m_is_released; });
    --self.m_waiting;
    self.m_changed.notify_all();
}

void DeadFileSystem::Release()
{
    std::scoped_lock const lock(m_mutex);
    m_is_released = true;
    m_changed.notify_all();
    for (unsigned long long const request : m_held)
        answer(request, ENOENT, nullptr, 0);
    m_held.clear();
}
