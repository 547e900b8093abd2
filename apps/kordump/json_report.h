// SPDX-License-Identifier: MIT
// A report as JSON, written while it is told: nothing is kept of it, and nothing recurses.
#pragma once

#include "apps/kordump/printer.h"

#include <vector>

namespace kordump {

class JsonReport : public Report {
public:
    // Everything lies in one object.
    explicit JsonReport(Output output);

    // Closes everything and puts out what was kept. Nothing can be reported after it.
    void Finish();

    bool WantsLines() const override { return false; }
    void Open(Line const &line, std::string_view key, Bracket bracket) override;
    void OpenQuietly(std::string_view key, Bracket bracket) override;
    void Close() override;
    void Put(Line const &line, std::string_view key, std::string_view json) override;
    void PutQuietly(std::string_view key, std::string_view json) override;
    int GetDepth() const override { return static_cast<int>(m_open.size()) - 1; }

private:
    struct Structure {
        Bracket bracket;
        std::size_t indent; // levels of the line that it began in
        bool empty = true;
        bool lines = false; // something in it began a line
    };

    enum class Begin { InLine, OnALineOfItsOwn };

    void BeginMember(std::string_view key, Begin begin);
    void BeginStructure(std::string_view key, Begin begin, Bracket bracket);
    void BeginLine(std::size_t indent);
    Begin GetQuietBegin() const;
    void Flush(std::size_t least);

    Output m_output;
    std::string m_text; // not put out yet
    std::vector<Structure> m_open;
};

} // namespace kordump
