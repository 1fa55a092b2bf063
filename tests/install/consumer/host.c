/* A host in C: writes a forwarding entry, reads it back by its group, and tells the version of its headers. */
#include <inttypes.h>
#include <mcast6_db.h>
#include <mcast6_platform/platform.h>
#include <stdio.h>

int main(void) {
    const L3Mc6MfibEntry entry = {.vrfId = 254, .groupAddr = {{0xFF0E0000, 0, 0, 0x1234}}, .inIfIndex = 3};
    L3Mc6MfibEntry found = {0};
    Mcast6DbRes query;

    if (mcast6_platform_open("memory:") != 0 || MCAST6_DB_WriteL3Mfib(&entry) != 0) return 1;
    if (MCAST6_DB_CreateL3MfibFwdIter(&query, L3_MFIB_QUERY_GROUP, &entry) != 0) return 1;
    if (MCAST6_DB_GetL3MfibEntry(&query, &found) != 0) return 1;
    MCAST6_DB_ReleaseL3MfibObject(query.object);
    printf("mcast6db %s: in by interface %" PRIu32 "\n", MCAST6_DB_VERSION, found.inIfIndex);
    return 0;
}
