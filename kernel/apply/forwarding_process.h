// What the forwarding process of a device does to l3mc6_elb: the library reads and counts that table and leaves writing
// it to that process, whose place the tool takes here, on the engine's accessors.
#pragma once

#include <cstdint>

#include "mcast6_db/l3_egress.h"

namespace mcast6::kernel {

// Adds the outgoing interface, or writes over the one with the same key. Its creation time is kept unless it is 0, then
// it is the current time; its smooth time becomes the current time. 0, or the engine's code.
uint32_t writeOutgoingInterface(const L3Mc6ElbEntry* entry);

// Removes the outgoing interface with the key of 'entry'. 0, or the engine's code; 13044 when there is none.
uint32_t removeOutgoingInterface(const L3Mc6ElbEntry* entry);

}  // namespace mcast6::kernel
