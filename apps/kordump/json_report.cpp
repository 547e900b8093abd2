// SPDX-License-Identifier: MIT
#include "apps/kordump/json_report.h"

#include "apps/kordump/text_codec.h"

#include <algorithm>

namespace kordump {
namespace {

constexpr std::size_t piece = 1 << 16;     // bytes handed to the output at a time
constexpr std::size_t deepest_indent = 40; // structures; deeper ones are not indented more

} // namespace

JsonReport::JsonReport(Output output)
    : m_output(std::move(output))
    , m_text("{")
    , m_open { { Bracket::Object, 0 } }
{
}

void JsonReport::Finish()
{
    CloseDownTo(0);
    m_text += "\n}\n";
    Flush(0);
}

void JsonReport::BeginLine(std::size_t indent)
{
    m_text += '\n';
    m_text.append(2 * std::min(indent, deepest_indent), ' ');
}

void JsonReport::BeginMember(std::string_view key, Begin begin)
{
    Structure &parent = m_open.back();
    if (!parent.empty)
        m_text += ',';
    if (begin == Begin::OnALineOfItsOwn) {
        BeginLine(parent.indent + 1);
        parent.lines = true;
    } else if (!parent.empty) {
        m_text += ' ';
    }
    parent.empty = false;
    if (parent.bracket == Bracket::Object)
        m_text += quote(key) + ": ";
}

void JsonReport::BeginStructure(std::string_view key, Begin begin, Bracket bracket)
{
    BeginMember(key, begin);
    m_text += static_cast<char>(bracket);
    std::size_t const indent = m_open.back().indent;
    m_open.push_back({ bracket, begin == Begin::OnALineOfItsOwn ? indent + 1 : indent });
}

// Whatever is in the file's own object begins a line.
JsonReport::Begin JsonReport::GetQuietBegin() const
{
    return m_open.size() == 1 ? Begin::OnALineOfItsOwn : Begin::InLine;
}

void JsonReport::Open(Line const &, std::string_view key, Bracket bracket)
{
    BeginStructure(key, Begin::OnALineOfItsOwn, bracket);
}

void JsonReport::OpenQuietly(std::string_view key, Bracket bracket)
{
    BeginStructure(key, GetQuietBegin(), bracket);
}

void JsonReport::Close()
{
    Structure const closed = m_open.back();
    m_open.pop_back();
    if (closed.lines)
        BeginLine(closed.indent);
    m_text += closed.bracket == Bracket::Object ? '}' : ']';
    Flush(piece);
}

void JsonReport::Put(Line const &, std::string_view key, std::string_view json)
{
    BeginMember(key, Begin::OnALineOfItsOwn);
    m_text += json;
    Flush(piece);
}

void JsonReport::PutQuietly(std::string_view key, std::string_view json)
{
    BeginMember(key, GetQuietBegin());
    m_text += json;
    Flush(piece);
}

void JsonReport::Flush(std::size_t least)
{
    if (m_text.size() < least)
        return;
    m_output(m_text);
    m_text.clear();
}

} // namespace kordump
