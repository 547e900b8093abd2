// SPDX-License-Identifier: MIT
// Files through kordump's parts: to text, to JSON and back.
#pragma once

#include "apps/kordump/document.h"
#include "apps/kordump/json_report.h"
#include "apps/kordump/restore.h"
#include "apps/kordump/text_codec.h"

#include "tests/support/files.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kor_test {

using Json = nlohmann::json;

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

// Without the layouts that the JSON should bring itself.
inline std::string restore(std::string_view json)
{
    return kordump::restore_file(json, {});
}

inline std::string from_json(Json const &json)
{
    return restore(json.dump());
}

// The bytes come back; what went wrong otherwise.
inline testing::AssertionResult comes_back(std::string_view bytes, kordump::Plan const &plan)
{
    std::string json;
    try {
        json = to_json(bytes, plan);
        if (restore(json) == bytes)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "other bytes from " << json.substr(0, 4000);
    } catch (std::exception const &error) {
        return testing::AssertionFailure() << error.what() << " in " << json.substr(0, 4000);
    }
}

} // namespace kor_test
