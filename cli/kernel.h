// What the tool's own code uses of the kernel's state by its bare name.
#pragma once

#include "kernel/apply/changes.h"
#include "kernel/link_table.h"
#include "kernel/text.h"

namespace mcast6::ctl {

using kernel::addressText;
using kernel::counted;
using kernel::Fate;
using kernel::FateCounts;
using kernel::isAnyAddress;
using kernel::isMulticastAddress;
using kernel::isPrintable;
using kernel::kFates;
using kernel::kMainTable;
using kernel::Link;
using kernel::LinkTable;
using kernel::parseAddress;
using kernel::parseNumber;
using kernel::parseRoutingTable;
using kernel::printable;
using kernel::sameAddress;
using kernel::shown;
using kernel::timeText;

}  // namespace mcast6::ctl
