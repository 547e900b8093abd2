// SPDX-License-Identifier: MIT
// The user's language.
#pragma once

namespace kortools::platform {

// The primary Windows language of the user's locale: 9 English, 12 French, ...; 9 when unknown.
unsigned int get_user_primary_language();

} // namespace kortools::platform
