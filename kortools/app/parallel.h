// SPDX-License-Identifier: MIT
// How many threads parallel loops use, and how such a loop is divided.
//
//   int const chunk = OMPGetScheduleChunkSize(count);
//   #pragma omp parallel for num_threads(OMPGetMaxThreadCount()) schedule(dynamic, chunk)
//   for (int i = 0; i < count; ++i)
//       Work(i);
#pragma once

#include "kortools/export.h"

// Sets the number of threads. At most what the OpenMP runtime allows (omp_get_max_threads(), which
// the environment variable OMP_NUM_THREADS changes), at least 1. May be called by any thread.
KORTOOLS_API void OMPSetMaxThreadCount(int count);

// What was set last; until then what the OpenMP runtime allows.
KORTOOLS_API int OMPGetMaxThreadCount();

// The number of iterations in a row that gives each thread about 24 parts of a loop of `count`; at
// least 1.
KORTOOLS_API unsigned int OMPGetScheduleChunkSize(unsigned int count);
