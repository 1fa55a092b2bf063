// A host in C++ that calls the library alone: the platform opens its store by itself.
#include <mcast6_db.h>

#include <iostream>

#if MCAST6_DB_VERSION_NUMBER < 10000
#error "the headers' version as a number is too low"
#endif

int main() {
    L3Mc6MfibEntry entry{};
    entry.vrfId = 254;
    entry.groupAddr = {{0xFF0E0000, 0, 0, 0x1234}};
    entry.inIfIndex = 3;
    L3Mc6MfibEntry found = entry;
    found.inIfIndex = 0;
    if (MCAST6_DB_WriteL3Mfib(&entry) != 0 || MCAST6_DB_ReadL3Mfib(&found) != 0) return 1;
    std::cout << "mcast6db " << MCAST6_DB_VERSION << ": in by interface " << found.inIfIndex << '\n';
}
