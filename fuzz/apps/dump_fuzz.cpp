// SPDX-License-Identifier: MIT
// Arbitrary bytes through kordump: the first one chooses the format, the rest is the file. Whatever
// it is, it must come back from its JSON byte for byte.
#include "apps/kordump/document.h"
#include "apps/kordump/json_report.h"
#include "apps/kordump/restore.h"

#include <cstdint>
#include <cstdlib>

namespace {

kordump::Plan make_plan(unsigned choice, kordump::ByteSpan bytes)
{
    kordump::Plan plan;
    plan.layouts.Parse(kordump::known_layouts);
    plan.layouts.Parse("class FuzzTreeNode 2 : CTreeNode\n text string\n"
                       "class FuzzText 2\n wide string\n narrow string\n flag bool\n number f64\n"
                       "class FuzzNode 3\n text object\n any object\n nodes object[]\n");
    constexpr kordump::Format formats[] = { kordump::Format::Archive, kordump::Format::CustomData,
        kordump::Format::Preferences, kordump::Format::Tree };
    plan.format = choice % 6 < 4 ? formats[choice % 6] : kordump::detect_format(bytes);
    if (choice % 6 == 5) {
        plan.format = kordump::Format::Archive;
        plan.top = kordump::LayoutTable::ParseFields(
            "string count i16[] custom_data f32 object string[] bool u8[] f64[] tree time");
    }
    return plan;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
    if (size == 0)
        return 0;
    kordump::ByteSpan const bytes(data + 1, size - 1);
    kordump::Plan const plan = make_plan(data[0], bytes);
    std::string json;
    kordump::JsonReport report([&](std::string_view text) { json += text; });
    report_file(bytes, plan, report);
    report.Finish();
    kordump::TextReport lines([](std::string_view) {});
    report_file(bytes, plan, lines);
    std::string const back = kordump::restore_file(json, {});
    if (back != std::string_view(reinterpret_cast<char const *>(data) + 1, size - 1))
        std::abort();
    return 0;
}
