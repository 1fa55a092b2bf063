/* The host functions that the multicast library calls: counters, the debug line, the common global version, and the
 * bounded copy. Part of the platform contract; see engine.h. None of them fails but where it returns a code. */
#ifndef MCAST6_PLATFORM_HOST_H
#define MCAST6_PLATFORM_HOST_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Adds 1 to a diagnostic counter. Any id is valid. */
void MCAST6_DfxCounterInc(uint32_t counterId);

/* Adds 1 to a key performance indicator. Any id is valid. */
void MCAST6_KPI_AddKpiData(uint32_t kpiId);

/* Called once for every layer-3 forwarding entry that was removed: the host takes 1 from its count of entries. */
void MCAST6_TRAP_DecreaseMfib6DbCnt(void);

/* Prints a debug line; 'format' and the arguments are printf's. */
void MCAST6_DBG_Print(uint32_t module, uint32_t type, uint32_t level, const char *format, ...)
#ifdef __GNUC__
    __attribute__((format(printf, 4, 5)))
#endif
    ;

/* The global version that IPv4 and IPv6 multicast share, one for each key of three 32-bit words. A record is 40 bytes:
 * key words at 0, 4 and 8, the version (32 bits) at 20, the rest zero. Each function returns 0, or a code when the
 * version does not exist (Read, Update), exists already (Write), the pointer is null, or the store fails. Read fills
 * the version. This platform keeps the versions in its store, for all processes that open it. */
uint32_t MCAST_DB_ReadGlbVersion(void *record40);
uint32_t MCAST_DB_UpdateGlbVersion(void *record40);
uint32_t MCAST_DB_WriteGlbVersion(void *record40);

/* Copies 'count' bytes when they fit into 'destinationSize'. Returns 0; or a non-zero errno value when a pointer is
 * null, the sizes do not fit, or the areas overlap, and then leaves the destination zeroed where it can be written. */
int memcpy_s(void *destination, size_t destinationSize, const void *source, size_t count);

#ifdef __cplusplus
}
#endif

#endif
