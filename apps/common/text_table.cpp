// SPDX-License-Identifier: MIT
#include "apps/common/text_table.h"

#include "apps/common/console.h"

#include <algorithm>

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
        CXTString<wchar_t> line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line.AppendFormat(L"%-*s  ", widths[i], row[i].GetConstBuffer());
        print_line(line.TrimRight());
    }
}

} // namespace kor_apps
