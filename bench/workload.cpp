#include "bench/workload.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace mcast6::bench {
namespace {

constexpr uint32_t kGroups = 1000;
constexpr uint32_t kVrfs = 4;
constexpr uint32_t kInterfaces = 60;
constexpr uint32_t kFirstRegisterInterface = 1000;
constexpr uint32_t kRegisteredOneIn = 8;
constexpr uint32_t kConflictOneIn = 997;
constexpr uint32_t kHashConflict = 5;

// splitmix64: the distributions of the standard library differ between implementations.
class Random {
public:
    explicit Random(uint64_t seed) : state(seed) {}

    uint64_t next() {
        uint64_t mixed = state += 0x9E3779B97F4A7C15U;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }

    template <class Item>
    void shuffle(std::vector<Item>& items) {
        for (size_t left = items.size(); left > 1; --left) std::swap(items[left - 1], items[next() % left]);
    }

private:
    uint64_t state;
};

Seed makeSeed(EntrySet set, uint32_t number) {
    const uint32_t group = number % kGroups;
    const uint32_t sender = set == EntrySet::shared ? number / kGroups : number + 1;  // 0: any source
    const uint32_t vrf = group % kVrfs;
    const uint64_t path = Random(uint64_t{sender} * kVrfs + vrf).next();
    Seed seed{};
    seed.number = number;
    seed.vrfId = vrf;
    seed.group = {0xFF3E0030, 0x20010DB8, vrf << 16, 0x80000000 | group};
    if (sender != 0) seed.source = {0x20010DB8, (sender % 250) << 16 | vrf, 0, sender};
    seed.inIfIndex = static_cast<uint32_t>(1 + path % kInterfaces);
    seed.regIfIndex = (path >> 32) % kRegisteredOneIn == 0 ? kFirstRegisterInterface + vrf : 0;
    seed.errorCode = number % kConflictOneIn == 0 ? kHashConflict : 0;
    return seed;
}

std::vector<uint32_t> randomOrder(Random& random, uint32_t size) {
    std::vector<uint32_t> order(size);
    std::iota(order.begin(), order.end(), 0U);
    random.shuffle(order);
    return order;
}

}  // namespace

Workload makeWorkload(EntrySet set, uint32_t size) {
    Random random(20);
    Workload workload;
    workload.seeds.reserve(size);
    for (uint32_t number = 0; number < size; ++number) workload.seeds.push_back(makeSeed(set, number));
    random.shuffle(workload.seeds);
    workload.readOrder = randomOrder(random, size);
    workload.deleteOrder = randomOrder(random, size);
    std::set<uint32_t> groupsSeen;
    std::set<uint32_t> vrfsSeen;
    for (const uint32_t position : workload.readOrder) {
        const Seed& seed = workload.seeds[position];
        if (groupsSeen.insert(seed.group[3]).second) workload.groups.push_back(position);
        if (vrfsSeen.insert(seed.vrfId).second) workload.vrfs.push_back(position);
    }
    return workload;
}

}  // namespace mcast6::bench
