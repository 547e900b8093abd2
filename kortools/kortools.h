// SPDX-License-Identifier: MIT
// The whole library in one include. These headers, and what they include, are the public ones: they
// are installed, the others are not.
#pragma once

#include "kortools/export.h"

#include "kortools/core/array.h"
#include "kortools/core/char_array.h"
#include "kortools/core/conversion.h"
#include "kortools/core/critical_section.h"
#include "kortools/core/ex_lc_string.h"
#include "kortools/core/hash_map.h"
#include "kortools/core/hash_table.h"
#include "kortools/core/int_map.h"
#include "kortools/core/prime.h"
#include "kortools/core/string_encoding.h"
#include "kortools/core/throw.h"
#include "kortools/core/xstring.h"

#include "kortools/text/string_table.h"

#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/file.h"
#include "kortools/archive/mem_file.h"
#include "kortools/archive/runtime_class.h"
#include "kortools/archive/stdio_file.h"
#include "kortools/archive/stdio_file_ex.h"

#include "kortools/data/custom_data.h"
#include "kortools/data/custom_data_class.h"
#include "kortools/data/duration.h"
#include "kortools/data/guid_mgr.h"
#include "kortools/data/string_list.h"
#include "kortools/data/system_time.h"
#include "kortools/data/time_text.h"
#include "kortools/data/tree.h"
#include "kortools/data/tree_node.h"
#include "kortools/data/tree_traversal.h"
#include "kortools/data/xtime.h"

#include "kortools/files/compact_path.h"
#include "kortools/files/directories.h"
#include "kortools/files/extension_list.h"
#include "kortools/files/file_changes.h"
#include "kortools/files/file_guard.h"
#include "kortools/files/file_info.h"
#include "kortools/files/file_names.h"
#include "kortools/files/file_status.h"
#include "kortools/files/numbered_names.h"
#include "kortools/files/path_parts.h"
#include "kortools/files/path_separators.h"
#include "kortools/files/relative_path.h"
#include "kortools/files/tmp_name.h"
#include "kortools/files/wildcards.h"

#include "kortools/app/log.h"
#include "kortools/app/log_info.h"
#include "kortools/app/custom_thread.h"
#include "kortools/app/parallel.h"
#include "kortools/app/progress_callback.h"
#include "kortools/app/thread.h"
#include "kortools/app/thread_registry.h"

// For applications, of the layer below: the ANSI page, drives and shares, message boxes, UTF-8
// arguments and output.
#include "kortools/platform/code_pages.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/known_folders.h"
#include "kortools/platform/message_box.h"
#include "kortools/platform/os_error.h"
#include "kortools/platform/terminal.h"
#include "kortools/platform/user_interrupt.h"
