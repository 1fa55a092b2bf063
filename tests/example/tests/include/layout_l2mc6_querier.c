/* Sizes and offsets of the record of l2mc6_querier. */
#include <assert.h>
#include <stddef.h>

#include "mcast6_db/l2mc6_querier.h"

static_assert(sizeof(L2Mc6QuerierEntry) == 56, "");
static_assert(offsetof(L2Mc6QuerierEntry, vrId) == 0, "");
static_assert(offsetof(L2Mc6QuerierEntry, bdId) == 4, "");
static_assert(offsetof(L2Mc6QuerierEntry, addrType) == 8, "");
static_assert(offsetof(L2Mc6QuerierEntry, querierAddr) == 12, "");
static_assert(offsetof(L2Mc6QuerierEntry, ifIndex) == 28, "");
static_assert(offsetof(L2Mc6QuerierEntry, version) == 32, "");
static_assert(offsetof(L2Mc6QuerierEntry, smoothVersion) == 36, "");
static_assert(offsetof(L2Mc6QuerierEntry, timeStampCreate) == 40, "");
static_assert(offsetof(L2Mc6QuerierEntry, timeStampSmooth) == 48, "");
