// SPDX-License-Identifier: MIT
#include "apps/common/json_output.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace kor_apps {

std::string to_text(nlohmann::ordered_json const &json)
{
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void print_json(nlohmann::ordered_json const &json)
{
    std::string const text = to_text(json) + '\n';
    std::fwrite(text.data(), 1, text.size(), stdout);
}

} // namespace kor_apps
