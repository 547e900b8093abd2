// SPDX-License-Identifier: MIT
// Help for fields in which search expressions are typed (kortools/text/string_match.h).
#pragma once

#include "kortools/export.h"

class CEdit;

// Shows a menu of the operators below the field, and waits. The one that is chosen is typed in
// place of what is selected; quotes and parentheses are put around it instead, and the caret
// between them where nothing is. Nothing for null.
KORTOOLS_API void DisplayStringMatchMenu(CEdit *edit);
