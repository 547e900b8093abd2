// SPDX-License-Identifier: MIT
// Loads files to be shown: on a worker thread, with the progress dialog in front of the view.
#pragma once

#include "apps/scoutrix/document.h"
#include "kortools/ui/back_end.h"

namespace viewer {

using Text = CXTString<wchar_t>;

struct Loaded {
    kortools::ui::Picture picture;
    Text error; // why there is no picture; empty: there is one
    int code = 0;
};

// On the main thread, which goes on serving its windows. The file's type and what loads it come
// from the registry of file types; `model_size` is that of the picture that is made of a model.
Loaded load_file(
    Text const &path, kortools::ui::BackEnd &back_end, CWnd *parent, CXSize const &model_size);

} // namespace viewer
