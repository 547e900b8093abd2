// SPDX-License-Identifier: MIT
#include "apps/common/text_table.h"

#include "apps/common/console.h"

#include <algorithm>
#include <string>

namespace kor_apps {

void TextTable::Print() const
{
    std::vector<int> widths;
    for (Row const &row : m_rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].GetLength());
    }
    for (Row const &row : m_rows) {
        std::wstring line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += static_cast<std::wstring_view>(row[i]);
            line.append(static_cast<std::size_t>(widths[i] - row[i].GetLength() + 2), L' ');
        }
        line.erase(line.find_last_not_of(L' ') + 1);
        print_line(line.c_str());
    }
}

} // namespace kor_apps
