/* A host in C: it writes one forwarding entry, queries all entries of its group, and prints them.
 *
 * A host links libmcast6db.so and a platform. libmcast6platform.so needs no initialisation; it keeps the tables in this
 * process. */
#include <inttypes.h>
#include <mcast6_db.h>
#include <stdarg.h>
#include <stdio.h>

/* Where the library's log lines go. */
static void printLog(uint32_t level, uint32_t logId, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    fprintf(stderr, "level %" PRIu32 ", 0x%08" PRIX32 ": ", level, logId);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
}

int main(void) {
    const Mcast6DbContext context = {printLog};
    const L3Mc6MfibEntry entry = {.vrfId = 254, .groupAddr = {{0xFF0E0000, 0, 0, 0x1234}}, .inIfIndex = 3};
    L3Mc6MfibEntry found = {0};
    Mcast6DbRes query;

    if (MCAST6_DB_RegCallBack(&context) != 0 || MCAST6_DB_WriteL3Mfib(&entry) != 0) return 1;
    if (MCAST6_DB_CreateL3MfibFwdIter(&query, L3_MFIB_QUERY_GROUP, &entry) != 0) return 1;
    while (MCAST6_DB_GetL3MfibEntry(&query, &found) == 0) {
        printf("in by interface %" PRIu32 ", written at %" PRIu64 "\n", found.inIfIndex, found.timeStampCreate);
    }
    MCAST6_DB_ReleaseL3MfibObject(query.object); /* releases the iterator too */

    return found.inIfIndex == entry.inIfIndex ? 0 : 1;
}
