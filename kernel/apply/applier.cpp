#include "kernel/apply/applier.h"

#include <unistd.h>

namespace mcast6::kernel {

Applier::Applier(uint32_t smoothVersion) : smoothVersion_(smoothVersion), pid_(static_cast<uint32_t>(getpid())) {}

}  // namespace mcast6::kernel
