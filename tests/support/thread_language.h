// SPDX-License-Identifier: MIT
// Sets the language of the calling thread's texts while it lives.
#pragma once

#include "kortools/text/string_table.h"

class ThreadLanguage {
public:
    explicit ThreadLanguage(unsigned int language)
    {
        kortools::text::set_thread_language(language);
    }
    ~ThreadLanguage() { kortools::text::set_thread_language(0); }
    ThreadLanguage(ThreadLanguage const &) = delete;
    ThreadLanguage &operator=(ThreadLanguage const &) = delete;
};
