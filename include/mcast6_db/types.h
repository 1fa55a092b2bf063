/* Types that every header of the library uses. */
#ifndef MCAST6_DB_TYPES_H
#define MCAST6_DB_TYPES_H

#include <stdint.h>

#if defined(__GNUC__)
#define MCAST6_API __attribute__((visibility("default")))
#else
#define MCAST6_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Results that are the library's own. */
enum {
    MCAST6_DB_SUCCESS = 0,
    MCAST6_DB_FAILED = 1,    /* null parameter, or a failure for which an operation does not return the engine's code */
    MCAST6_DB_NO_RECORD = 60 /* no such record, or the end of an iteration */
};

/* IPv6 address: 128 bits as four words in host order, word[0] holds the first four bytes. */
typedef struct Mcast6Ipv6Addr {
    uint32_t word[4];
} Mcast6Ipv6Addr;

/* Engine object or root iterator; 0 is none. */
typedef uint64_t Mcast6DbHandle;

/* Describes a key: the key word (length in bytes in bits 0-15, kind in bits 16-23, index number in bits 24-31), then 12
 * zero bytes. */
typedef struct Mcast6DbKeyDesc {
    uint32_t keyWord;
    uint32_t reserved[3];
} Mcast6DbKeyDesc;

#ifdef __cplusplus
}
#endif

#endif
