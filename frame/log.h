// Logs one line, if the host has registered a callback.
#pragma once

#include "frame/codes.h"
#include "mcast6_db/context.h"

namespace mcast6 {

template <class... Arguments>
void logLine(uint32_t logId, const char* format, Arguments... arguments) {
    if (const Mcast6DbLogFunc log = MCAST6_DB_GetLogCallBack()) log(kLogLevel, logId, format, arguments...);
}

}  // namespace mcast6
