// SPDX-License-Identifier: MIT
// Every read looks whether the file is still the one that was read last: a write puts a new file in
// its place. A write waits for its turn at a lock file, reads what is there by then, writes a new
// file beside it, and renames that.
#include "kortools/platform/profile_store.h"

#include "kortools/platform/posix/native_path.h"
#include "kortools/platform/posix/user_folders.h"
#include "kortools/platform/profile_text.h"

#define SI_CONVERT_ICU // as Debian builds it; bytes need no conversion
#include <SimpleIni.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

constexpr off_t max_size = off_t { 16 } << 20;
constexpr int patience_ms = 5000; // for a writer that does not get on

class File {
public:
    File(std::string const &path, int flags)
        : m_descriptor(retry([&] { return open(path.c_str(), flags | O_CLOEXEC, 0600); }))
    {
    }
    File(File const &) = delete;
    File &operator=(File const &) = delete;
    ~File()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    explicit operator bool() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

private:
    int const m_descriptor;
};

// The file that a link leads to is the one to replace.
std::string follow_links(std::string const &path)
{
    std::unique_ptr<char, void (*)(void *)> const real(realpath(path.c_str(), nullptr), std::free);
    return real ? real.get() : path;
}

// Empty when the user has no folder for it.
std::string get_path(std::wstring_view product)
{
    std::string const folder = get_user_config_folder();
    if (folder.empty())
        return {};
    return folder + "/Brantis/" + encode_profile_file_name(product) + ".ini";
}

bool make_folders(std::string const &path)
{
    for (std::size_t slash = path.find('/', 1); slash != std::string_view::npos;
         slash = path.find('/', slash + 1)) {
        if (mkdir(path.substr(0, slash).c_str(), 0700) != 0 && errno != EEXIST)
            return false;
    }
    return true;
}

// False when it cannot be read, or is no profile.
bool read_all(File const &file, off_t size, std::string &bytes)
{
    if (size > max_size)
        return false;
    bytes.resize(static_cast<std::size_t>(size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        ssize_t const count
            = retry([&] { return read(file.get(), bytes.data() + done, bytes.size() - done); });
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return bytes.find('\0') == std::string_view::npos;
}

// A section's line without its end would leave the parser with the rest of the file as a name.
void disarm_broken_sections(std::string &bytes)
{
    for (std::size_t start = 0; start < bytes.size();) {
        std::size_t const end = std::min(bytes.find_first_of("\r\n", start), bytes.size());
        std::string_view const line = std::string_view(bytes).substr(start, end - start);
        std::size_t const first = line.find_first_not_of(" \t");
        if (first != std::string_view::npos && line[first] == '['
            && line.find(']') == std::string_view::npos)
            bytes[start + first] = ';'; // a comment, which a person can repair
        start = end + 1;
    }
}

bool write_all(File const &file, std::string_view bytes)
{
    while (!bytes.empty()) {
        ssize_t const count = retry([&] { return write(file.get(), bytes.data(), bytes.size()); });
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return retry([&] { return fsync(file.get()); }) == 0;
}

// What tells a file from the one that was there before.
struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = -1; // no file
    timespec changed {};

    bool operator==(Identity const &other) const
    {
        return device == other.device && inode == other.inode && size == other.size
            && changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
    }
};

Identity identify(struct stat const &status)
{
    return { status.st_dev, status.st_ino, status.st_size, status.st_mtim };
}

// Others that write one after the other may be faster each time; only one that holds the lock and
// does nothing is not waited for.
bool lock(File const &file, std::string const &path)
{
    Identity seen;
    for (int waited_ms = 0; waited_ms < patience_ms; ++waited_ms) {
        struct flock range { };
        range.l_type = F_WRLCK;
        if (retry([&] { return fcntl(file.get(), F_OFD_SETLK, &range); }) == 0)
            return true;
        if (errno != EAGAIN && errno != EACCES)
            return true; // a file system without locks
        struct stat status { };
        Identity const present = stat(path.c_str(), &status) == 0 ? identify(status) : Identity {};
        if (!(present == seen))
            waited_ms = 0;
        seen = present;
        timespec const moment { 0, 1'000'000 };
        nanosleep(&moment, nullptr);
    }
    return false;
}

// The file that was used last.
class Profile {
public:
    // False when there is a file that is no profile. No file is an empty one.
    bool load(std::string const &path);

    // Puts the present values in the place of the file, which is locked.
    bool save();

    void forget()
    {
        m_path.clear();
        m_values.reset();
        m_identity = {};
    }

    std::mutex m_lock; // of everything here
    std::unique_ptr<CSimpleIniA> m_values;

private:
    std::string m_path;
    Identity m_identity;
};

bool Profile::load(std::string const &path)
{
    struct stat status { };
    bool const exists = retry([&] { return stat(path.c_str(), &status); }) == 0;
    if (!exists && errno != ENOENT && errno != ENOTDIR)
        return false; // it may be there, and would be replaced by what is written next
    if (m_values && m_path == path && m_identity == (exists ? identify(status) : Identity {}))
        return true;
    forget();
    auto values = std::make_unique<CSimpleIniA>(true);
    if (exists) {
        File const file(path, O_RDONLY | O_NONBLOCK);
        std::string bytes;
        if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)
            || !read_all(file, status.st_size, bytes))
            return false;
        disarm_broken_sections(bytes);
        if (values->LoadData(bytes) < 0)
            return false;
        m_identity = identify(status);
    }
    m_path = path;
    m_values = std::move(values);
    return true;
}

bool Profile::save()
{
    std::string const path = follow_links(m_path);
    std::string text;
    m_values->Save(text);
    if (text.empty()) {
        bool const removed = unlink(path.c_str()) == 0 || errno == ENOENT;
        forget();
        return removed;
    }
    std::string const copy = path + ".tmp";
    unlink(copy.c_str()); // of a process that died
    File const file(copy, O_WRONLY | O_CREAT | O_EXCL);
    struct stat status { };
    if (file && stat(path.c_str(), &status) == 0)
        static_cast<void>(fchmod(file.get(), status.st_mode & 0777));
    if (file && write_all(file, text) && fstat(file.get(), &status) == 0
        && rename(copy.c_str(), path.c_str()) == 0) {
        m_identity = identify(status);
        return true;
    }
    unlink(copy.c_str());
    forget();
    return false;
}

// Never destroyed: settings are written at the very end.
Profile &get_profile()
{
    static Profile &s_profile = *new Profile;
    return s_profile;
}

enum class Outcome { Save, Done, Nothing };

// Calls `change` with the values, alone with the file, which is then replaced if it says so. False
// when that fails, or there was nothing to change.
template <class Change> bool change_profile(std::wstring_view product, Change change)
{
    std::string const path = get_path(product);
    if (path.empty() || !make_folders(path))
        return false;
    File const lock_file(path + ".lock", O_RDWR | O_CREAT);
    if (!lock_file || !lock(lock_file, path))
        return false;
    Profile &profile = get_profile();
    std::scoped_lock const guard(profile.m_lock);
    if (!profile.load(path))
        return false;
    Outcome outcome = Outcome::Nothing;
    try {
        outcome = change(*profile.m_values);
        if (outcome == Outcome::Save)
            return profile.save();
    } catch (std::exception const &) {
        outcome = Outcome::Nothing;
    }
    if (outcome == Outcome::Nothing)
        profile.forget(); // the change may be half done
    return outcome == Outcome::Done;
}

// The result of `call`, and `failure` when there is no memory for it.
template <class Result, class Call> Result run_in_memory(Result failure, Call call)
try {
    return call();
} catch (std::exception const &) {
    set_last_os_error(error_not_enough_memory);
    return failure;
}

// Whether `section` is the one called `name` or lies below it.
bool is_within(std::string_view section, std::string_view name)
{
    auto const lowered = [](char ch) { return ch >= 'A' && ch <= 'Z' ? char(ch | 0x20) : ch; };
    return section.size() >= name.size()
        && std::ranges::equal(section.substr(0, name.size()), name, {}, lowered, lowered)
        && (section.size() == name.size() || section[name.size()] == '\\');
}

Outcome delete_sections(CSimpleIniA &values, std::string const &name)
{
    CSimpleIniA::TNamesDepend sections;
    values.GetAllSections(sections);
    auto outcome = Outcome::Nothing;
    for (CSimpleIniA::Entry const &section : sections) {
        std::string const found = section.pItem; // the entry goes with it
        if (is_within(found, name) && values.Delete(found.c_str(), nullptr, true))
            outcome = Outcome::Save;
    }
    return outcome;
}

std::optional<ProfileValue> get_value(ProfilePlace const &place)
{
    if (!is_profile_name(place.product) || !is_profile_name(place.section)
        || !is_profile_name(place.entry))
        return std::nullopt;
    std::string const path = get_path(place.product);
    Profile &profile = get_profile();
    std::scoped_lock const guard(profile.m_lock);
    if (path.empty() || !profile.load(path))
        return std::nullopt;
    char const *const text = profile.m_values->GetValue(
        encode_profile_name(place.section).c_str(), encode_profile_name(place.entry).c_str());
    if (!text)
        return std::nullopt;
    return decode_profile_value(text);
}

bool put_value(ProfilePlace const &place, ProfileValue const &value)
{
    if (!is_profile_name(place.product) || !is_profile_name(place.section)
        || !is_profile_name(place.entry))
        return false;
    return change_profile(place.product, [&](CSimpleIniA &values) {
        std::string const section = encode_profile_name(place.section);
        std::string const entry = encode_profile_name(place.entry);
        std::string const text = encode_profile_value(value);
        char const *const present = values.GetValue(section.c_str(), entry.c_str());
        if (present && text == present)
            return Outcome::Done;
        return values.SetValue(section.c_str(), entry.c_str(), text.c_str()) < 0 ? Outcome::Nothing
                                                                                 : Outcome::Save;
    });
}

bool remove_values(ProfilePlace const &place)
{
    if (!is_profile_name(place.product) || !is_profile_name(place.section))
        return false;
    if (access(get_path(place.product).c_str(), F_OK) != 0)
        return false; // and no folder and lock for nothing
    return change_profile(place.product, [&](CSimpleIniA &values) {
        std::string const section = encode_profile_name(place.section);
        if (place.entry.empty())
            return delete_sections(values, section);
        std::string const entry = encode_profile_name(place.entry);
        return values.Delete(section.c_str(), entry.c_str(), true) ? Outcome::Save
                                                                   : Outcome::Nothing;
    });
}

} // namespace

std::optional<ProfileValue> read_profile(ProfilePlace const &place)
{
    return run_in_memory(std::optional<ProfileValue>(), [&] { return get_value(place); });
}

bool write_profile(ProfilePlace const &place, ProfileValue const &value)
{
    return run_in_memory(false, [&] { return put_value(place, value); });
}

bool delete_profile(ProfilePlace const &place)
{
    return run_in_memory(false, [&] { return remove_values(place); });
}

void release_profile()
{
    Profile &profile = get_profile();
    std::scoped_lock const guard(profile.m_lock);
    profile.forget();
}

} // namespace kortools::platform
