// The process-wide context: memory hooks, log callback, error statistics; and the time and address helpers.
#include "mcast6_db/context.h"

#include <cstdlib>
#include <cstring>
#include <ctime>

#include "frame/address.h"
#include "frame/log.h"

uint64_t g_mcast6DbErrStat[33][10];
Mcast6DbMemCallback g_mcast6DbMemCallback{malloc, free};
Mcast6DbLogFunc g_mcast6DbContext;

namespace mcast6 {

namespace {

constexpr uint32_t kTableNumbers = sizeof g_mcast6DbErrStat / sizeof g_mcast6DbErrStat[0];
constexpr uint32_t kErrorKinds = sizeof g_mcast6DbErrStat[0] / sizeof g_mcast6DbErrStat[0][0];
}  // namespace

}  // namespace mcast6

using namespace mcast6;

void MCAST6_DB_InitMem(const Mcast6DbMemCallback* callback) { g_mcast6DbMemCallback = *callback; }

void* MCAST6_DB_Malloc(uint32_t size) { return g_mcast6DbMemCallback.alloc(size); }

void MCAST6_DB_Free(void* block) { g_mcast6DbMemCallback.free(block); }

uint32_t MCAST6_DB_RegCallBack(const Mcast6DbContext* context) {
    if (context == nullptr) return kFailed;
    g_mcast6DbContext = context->log;
    memset(g_mcast6DbErrStat, 0, sizeof g_mcast6DbErrStat);
    return kOk;
}

Mcast6DbLogFunc MCAST6_DB_GetLogCallBack(void) { return g_mcast6DbContext; }

void MCAST6_DB_RecordErrState(uint32_t tableNumber, uint32_t errorKind) {
    if (tableNumber < kTableNumbers && errorKind < kErrorKinds) {
        ++g_mcast6DbErrStat[tableNumber][errorKind];
        return;
    }
    logLine(kLogConfiguration, "[MCAST6 DB] Set db error stat fail. table %u, error %u", tableNumber, errorKind);
}

int64_t MCAST6_DB_GetSysTime(void) { return time(nullptr); }

int MCAST6_DB_SetAddress(void* destination, uint32_t destinationSize, const void* source, uint32_t count) {
    return setAddress(destination, destinationSize, source, count);
}

int MCAST6_DB_GetAddress(void* destination, uint32_t destinationSize, const void* source, uint32_t count) {
    return getAddress(destination, destinationSize, source, count);
}

uint32_t MCAST6_DB_IsIpv6AddrEqual(const Mcast6Ipv6Addr* left, const Mcast6Ipv6Addr* right) {
    for (uint32_t i = 0; i < 4; ++i) {
        if (left->word[i] != right->word[i]) return 0;
    }
    return 1;
}
