// SPDX-License-Identifier: MIT
// What the library itself enters in the thread registry, and tells the parallel loops.
#pragma once

namespace kortools::app {

// A new thread, with its parent. What an ended thread of the same identifier may have left is
// forgotten. Does not throw: without memory the thread has no parent.
void record_started_thread(unsigned long long thread, unsigned long long parent) noexcept;

// Forgets the thread's marks and its parent.
void forget_thread(unsigned long long thread) noexcept;

// The calling thread becomes the application's main thread.
void record_main_thread();

// What the OpenMP runtime allows becomes the number of threads of parallel loops; also returned.
int reset_max_thread_count();

// No thread is inside the registry between these. For stopping threads that do not go on.
void lock_thread_registry();
void unlock_thread_registry();

} // namespace kortools::app
