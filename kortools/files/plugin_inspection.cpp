// SPDX-License-Identifier: MIT
#include "kortools/files/plugin_inspection.h"

#include "kortools/core/throw.h"
#include "kortools/platform/modules.h"
#include "kortools/platform/os_error.h"
#include "kortools/platform/utf8.h"
#include "kortools/text/string_table.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace kortools::files {
namespace {

using String = CXTString<wchar_t>;

constexpr char const *version_function = "BrantisGetPluginVersion";
constexpr unsigned int first_text = 5560; // of the texts, in the order of the verdicts

String to_wide(std::string const &utf8)
{
    std::wstring text(utf8.size(), L'\0');
    long long const length
        = platform::decode_utf8(utf8.data(), utf8.size(), text.data(), text.size());
    return { text.data(), static_cast<int>(length) };
}

String to_hex(unsigned int version)
{
    String text;
    text.Format(L"0x%X", version);
    return text;
}

Refusal refuse(PluginVerdict verdict, String const &detail = {})
{
    return { verdict, detail };
}

// Of the libraries that one needs, and of those that these need in turn, the first that the system
// does not find. Those of the system's own are taken to be whole.
std::string find_missing(std::vector<std::string> needed)
{
    std::set<std::string> seen;
    for (std::size_t i = 0; i < needed.size() && seen.size() < max_image_entries; ++i) {
        std::string name = needed[i];
        if (!seen.insert(name).second)
            continue;
        platform::FoundLibrary const library = platform::find_library(name);
        if (!library.is_found)
            return name;
        if (library.path.empty())
            continue;
        ModuleImage const image = read_module_image(FileImageSource(library.path.c_str()));
        needed.insert(needed.end(), image.needed.begin(), image.needed.end());
    }
    return {};
}

bool is_absence(unsigned int os_error)
{
    constexpr unsigned int codes[] = { 2, 3, 53, 67, 123 }; // file, path, share, network name, name
    return std::ranges::find(codes, os_error) != std::end(codes);
}

} // namespace

Refusal PluginInspection::read_image()
{
    FileImageSource const source(m_path.GetConstBuffer());
    if (!source.is_open()) {
        unsigned int const error = platform::get_last_os_error();
        if (is_absence(error))
            return refuse(pluginNotFound);
        String text;
        text.Format(L"system error %u", error);
        return refuse(pluginNotLoaded, text);
    }
    m_image = read_module_image(source);
    if (m_image.format == ImageFormat::None)
        return refuse(pluginNotALibrary);
    platform::ModuleKind const own = platform::get_module_kind();
    if ((m_image.format == ImageFormat::Elf) != own.is_elf || m_image.machine != own.machine
        || m_image.bits != 64 || m_image.is_big_endian)
        return refuse(pluginWrongMachine, to_wide(describe_machine(m_image)));
    return m_image.is_damaged || !m_image.is_library ? refuse(pluginNotALibrary) : Refusal();
}

Refusal PluginInspection::check_exports() const
{
    if (!m_image.exports(version_function))
        return refuse(pluginNoVersionFunction, version_function);
    if (!m_image.exports(m_entry_name))
        return refuse(pluginNoEntryPoint, m_entry_name);
    return {};
}

Refusal PluginInspection::check_version(platform::VersionProbe &probe, unsigned int limit_ms) const
{
    using platform::ProbeResult;
    platform::ProbeAnswer const answer
        = probe.ask(m_path.GetConstBuffer(), version_function, limit_ms);
    String const text = to_wide(answer.text);
    switch (answer.result) {
    case ProbeResult::Answered:
        return answer.number == pluginVersion ? Refusal()
                                              : refuse(pluginOtherVersion, to_hex(answer.number));
    case ProbeResult::NoFunction:
        return refuse(pluginNoVersionFunction, version_function);
    case ProbeResult::MissingLibrary:
        return refuse(pluginMissingDependency, text);
    case ProbeResult::Crashed:
        return refuse(pluginCrashed, text);
    case ProbeResult::Hung:
        return refuse(pluginHung, to_wide(std::to_string(limit_ms)));
    case ProbeResult::NoHelper:
        return refuse(pluginNotProbed, text);
    default:
        return refuse(pluginNotLoaded, text);
    }
}

Refusal PluginInspection::examine(platform::VersionProbe &probe, unsigned int limit_ms)
{
    return core::translate_shortage([&] {
        Refusal refusal = read_image();
        if (refusal.verdict == pluginNotRefused)
            refusal = check_exports();
        if (refusal.verdict == pluginNotRefused)
            refusal = check_version(probe, limit_ms);
        return refusal;
    });
}

Refusal PluginInspection::explain_failure(std::string const &problem) const
{
    std::string const missing = find_missing(m_image.needed);
    return missing.empty() ? refuse(pluginNotLoaded, to_wide(problem))
                           : refuse(pluginMissingDependency, to_wide(missing));
}

CXTString<wchar_t> describe_refusal(CXTString<wchar_t> const &path, Refusal const &refusal)
{
    if (refusal.verdict == pluginNotRefused)
        return {};
    String text = xLoadString(first_text + static_cast<unsigned int>(refusal.verdict));
    // The numbers first: names may contain anything.
    text.Replace(L"%3", to_hex(pluginVersion).GetConstBuffer());
    int const place = text.Find(L"%2");
    if (place >= 0)
        text = text.Left(place) + refusal.detail + text.Mid(place + 2);
    text.Replace(L"%1", path.GetConstBuffer(), 1);
    return text;
}

} // namespace kortools::files
