// SPDX-License-Identifier: MIT
// A report as indented lines, each with the offset it was read at.
#pragma once

#include "apps/kordump/cursor.h"
#include "apps/kordump/report.h"

#include <functional>
#include <vector>

namespace kordump {

// Takes text in pieces.
using Output = std::function<void(std::string_view)>;

class TextReport : public Report {
public:
    explicit TextReport(Output output);

    bool WantsLines() const override { return true; }
    void Open(Line const &line, std::string_view key, Bracket bracket) override;
    void OpenQuietly(std::string_view key, Bracket bracket) override;
    void Close() override;
    void Put(Line const &line, std::string_view key, std::string_view json) override;
    void PutQuietly(std::string_view key, std::string_view json) override;
    int GetDepth() const override { return static_cast<int>(m_open.size()); }

private:
    void Print(Line const &line, std::string_view value);

    Output m_output;
    std::vector<unsigned int> m_open; // by how many levels what lies in a structure is indented
    unsigned int m_indent = 0;        // their sum
};

// Lines of 16 bytes in hexadecimal, with their offsets and characters.
void print_hex(ByteSpan bytes, unsigned long long offset, Output const &output);

} // namespace kordump
