#include "mcast6_platform/host.h"
#include "platform/host/bounded_copy.h"

int memcpy_s(void* destination, size_t destinationSize, const void* source, size_t count) {
    return mcast6::host::boundedCopy(destination, destinationSize, source, count);
}
