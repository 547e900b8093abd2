// SPDX-License-Identifier: MIT
#include "kortools/platform/time_record_access.h"

#include <windows.h>

namespace kortools::platform {

bool get_local_date_time(_FILETIME const &record, DateTime &date_time)
{
    FILETIME local {};
    SYSTEMTIME fields {};
    if (!FileTimeToLocalFileTime(&record, &local) || !FileTimeToSystemTime(&local, &fields))
        return false;
    date_time = get_date_time(fields);
    return true;
}

} // namespace kortools::platform
