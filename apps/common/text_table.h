// SPDX-License-Identifier: MIT
// Lines in columns, each as wide as its widest cell.
#pragma once

#include "kortools/core/xstring.h"

#include <vector>

namespace kor_apps {

class TextTable {
public:
    using Row = std::vector<CXTString<wchar_t>>;

    explicit TextTable(Row heads) { Add(std::move(heads)); }

    // Rows may be shorter than the heads.
    void Add(Row cells) { m_rows.push_back(std::move(cells)); }

    // On standard output, the heads first, also when nothing is below them.
    void Print() const;

private:
    std::vector<Row> m_rows;
};

} // namespace kor_apps
