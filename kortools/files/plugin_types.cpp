// SPDX-License-Identifier: MIT
#include "kortools/files/plugin_types.h"

#include "kortools/files/plugin_calls.h"
#include "kortools/files/plugin_records.h"

#include <algorithm>

namespace kortools::files {
namespace {

constexpr std::size_t maximum_types = 1000; // of one plug-in; beyond that it has lost its way

struct Question {
    unsigned int kind;
    PluginTypes answer;
};

bool take(Question &question, IoPluginType const *type)
{
    auto &[is_usable, types, refusals] = question.answer;
    if (types.size() + refusals.size() >= maximum_types)
        return false;
    CFileExt taken;
    Fault fault = take_type(type, question.kind, taken);
    if (!fault && std::ranges::find(types, taken.m_class, &CFileExt::m_class) != types.end())
        fault = "it was handed out before";
    if (fault) {
        std::string const name = type ? "type " + to_code_text(type->file_class) : "a type";
        refusals.push_back(name + ": " + *fault);
        return false;
    }
    types.push_back(std::move(taken));
    return true;
}

bool add_type(void *host, IoPluginType const *type) noexcept
{
    try {
        return host && take(*static_cast<Question *>(host), type);
    } catch (...) { // without memory; nothing may pass the plug-in's frames
        return false;
    }
}

} // namespace

PluginTypes ask_for_types(IoPluginCallback callback, unsigned int kind)
{
    Question question { kind, {} };
    IoPluginTypes record;
    IO_PLUGIN_INIT(record);
    record.host = &question;
    record.add = add_type;
    CallOutcome const outcome = call_plugin(callback, ioModeTypes, &record);
    PluginTypes &answer = question.answer;
    answer.is_usable = outcome == CallOutcome::Done;
    if (outcome == CallOutcome::Threw)
        answer.refusals.emplace_back("an exception left it");
    if (outcome == CallOutcome::Failed)
        answer.refusals.emplace_back("it gave no types");
    for (CFileExt &type : answer.types)
        type.m_callback = callback;
    return std::move(question.answer);
}

} // namespace kortools::files
