// SPDX-License-Identifier: MIT
// Files through kordump's parts: to text and to JSON.
#pragma once

#include "apps/kordump/document.h"
#include "apps/kordump/json_report.h"
#include "apps/kordump/text_codec.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kor_test {

using Json = nlohmann::json;

inline std::string read_bytes(std::filesystem::path const &path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return { std::istreambuf_iterator<char>(file), {} };
}

inline kordump::LayoutTable parse_layouts(std::string_view text)
{
    kordump::LayoutTable layouts;
    layouts.Parse(kordump::known_layouts);
    layouts.Parse(text);
    return layouts;
}

// As it is recognised, or as `format`.
inline kordump::Plan make_plan(std::string_view bytes, std::string_view format = "")
{
    kordump::Plan plan;
    plan.layouts = parse_layouts("");
    plan.format = format.empty() ? kordump::detect_format(kordump::as_bytes(bytes))
                                 : *kordump::find_format(format);
    return plan;
}

inline std::string to_json(std::string_view bytes, kordump::Plan const &plan)
{
    std::string json;
    kordump::JsonReport report([&](std::string_view text) { json += text; });
    report_file(kordump::as_bytes(bytes), plan, report);
    report.Finish();
    return json;
}

inline Json to_parsed_json(std::string_view bytes, kordump::Plan const &plan)
{
    return Json::parse(to_json(bytes, plan));
}

} // namespace kor_test
