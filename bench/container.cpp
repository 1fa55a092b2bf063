// The container for these queries without an engine: rows with the same content, a hashed unique primary key, the same
// 11 secondary keys hashed. It takes no locks and checks nothing. The smooth version and the time stamps are in no
// index, so they are changed in place.
#include <boost/multi_index/composite_key.hpp>
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index_container.hpp>
#include <boost/tuple/tuple.hpp>
#include <ctime>

#include "bench/subjects.h"

namespace mcast6::bench {
namespace {

namespace multi = boost::multi_index;

struct Address {
    uint64_t high;
    uint64_t low;

    friend bool operator==(const Address&, const Address&) = default;
    friend size_t hash_value(const Address& address) {
        return (address.high * 0x9E3779B97F4A7C15U) ^ ((address.low ^ (address.low >> 32)) * 0xD6E8FEB86659FD93U);
    }
};

struct ContainerKey {
    uint32_t vrId;
    uint32_t vrfId;
    Address group;
    Address source;
};

// 208 bytes, like the library's row.
struct ContainerRow {
    uint32_t vrId;
    uint32_t vrfId;
    Address group;
    Address source;
    uint32_t inIfIndex;
    uint32_t regIfIndex;
    uint32_t errorCode;
    mutable uint32_t smoothVersion;
    mutable uint64_t timeStampCreate;
    mutable uint64_t timeStampSmooth;
    std::array<uint32_t, 34> attributes;
};
static_assert(sizeof(ContainerRow) == 208);

template <auto member>
struct Field;
template <class Value, Value ContainerRow::*member>
struct Field<member> : multi::member<ContainerRow, Value, member> {};

using VrId = Field<&ContainerRow::vrId>;
using VrfId = Field<&ContainerRow::vrfId>;
using Group = Field<&ContainerRow::group>;
using Source = Field<&ContainerRow::source>;
using InIfIndex = Field<&ContainerRow::inIfIndex>;
using RegIfIndex = Field<&ContainerRow::regIfIndex>;
using ErrorCode = Field<&ContainerRow::errorCode>;

template <class... Parts>
using Fields = multi::composite_key<ContainerRow, Parts...>;

struct ByGroup {};
struct ByVrf {};

using Routes = multi::multi_index_container<
    ContainerRow,
    multi::indexed_by<multi::hashed_unique<Fields<VrId, VrfId, Group, Source>>, multi::hashed_non_unique<InIfIndex>,
                      multi::hashed_non_unique<multi::tag<ByVrf>, Fields<VrId, VrfId>>,
                      multi::hashed_non_unique<Fields<VrId, VrfId, Source>>,
                      multi::hashed_non_unique<multi::tag<ByGroup>, Fields<VrId, VrfId, Group>>,
                      multi::hashed_non_unique<Fields<VrId, VrfId, Source, InIfIndex>>,
                      multi::hashed_non_unique<Fields<VrId, VrfId, Group, InIfIndex>>,
                      multi::hashed_non_unique<Fields<VrId, VrfId, InIfIndex>>,
                      multi::hashed_non_unique<Fields<VrId, ErrorCode>>,
                      multi::hashed_non_unique<Fields<VrId, VrfId, RegIfIndex>>,
                      multi::hashed_non_unique<Fields<VrId, VrfId, Group, RegIfIndex>>,
                      multi::hashed_non_unique<Fields<VrId, VrfId, Source, RegIfIndex>>>>;

Address address(const std::array<uint32_t, 4>& words) {
    return {uint64_t{words[0]} << 32 | words[1], uint64_t{words[2]} << 32 | words[3]};
}

auto primaryKey(const ContainerKey& key) { return boost::make_tuple(key.vrId, key.vrfId, key.group, key.source); }

class Container {
public:
    using Record = ContainerRow;
    using Key = ContainerKey;
    static constexpr bool kHasHandles = false;

    static Key key(const Seed& seed) { return {seed.vrId, seed.vrfId, address(seed.group), address(seed.source)}; }

    static Record record(const Seed& seed) {
        Record row{};
        row.vrId = seed.vrId;
        row.vrfId = seed.vrfId;
        row.group = address(seed.group);
        row.source = address(seed.source);
        row.inIfIndex = seed.inIfIndex;
        row.regIfIndex = seed.regIfIndex;
        row.errorCode = seed.errorCode;
        row.smoothVersion = 1;
        row.attributes[4] = seed.attribute(4);
        row.attributes[10] = seed.attribute(10);
        row.attributes[15] = seed.attribute(15);
        return row;
    }

    static uint64_t digest(const Record& row) {
        return (uint64_t{static_cast<uint32_t>(row.source.low)} + row.inIfIndex + row.errorCode) *
                   (row.smoothVersion + 1) +
               row.attributes[15];
    }

    bool write(const Record& row) {
        const auto [place, isNew] = routes.insert(row);
        if (!isNew && !routes.replace(place, row)) return false;
        place->timeStampCreate = place->timeStampSmooth = static_cast<uint64_t>(time(nullptr));
        return true;
    }

    bool read(const Key& key, Record& row) {
        const auto place = routes.find(primaryKey(key));
        if (place == routes.end()) return false;
        row = *place;
        return true;
    }

    bool fastRead(const Key& key, Record& row) { return read(key, row); }

    bool update(const Key& key, uint32_t smoothVersion) {
        const auto place = routes.find(primaryKey(key));
        if (place == routes.end()) return false;
        place->smoothVersion = smoothVersion;
        place->timeStampSmooth = static_cast<uint64_t>(time(nullptr));
        return true;
    }

    bool erase(const Key& key) {
        const auto place = routes.find(primaryKey(key));
        if (place == routes.end()) return false;
        routes.erase(place);
        return true;
    }

    bool first(Query query, const Key& key, Record& row) {
        bool found = false;
        within(query, key, [&](auto place, auto end) {
            found = place != end;
            if (found) row = *place;
        });
        return found;
    }

    template <class Visit>
    void walk(Query query, const Key& key, const Visit& visit) {
        Record row;
        within(query, key, [&](auto place, auto end) {
            for (; place != end; ++place) {
                row = *place;
                visit(row);
            }
        });
    }

    uint64_t count(Query query, const Key& key) {
        switch (query) {
            case Query::all:
                return routes.size();
            case Query::group:
                return routes.get<ByGroup>().count(boost::make_tuple(key.vrId, key.vrfId, key.group));
            case Query::vrf:
                return routes.get<ByVrf>().count(boost::make_tuple(key.vrId, key.vrfId));
        }
        return 0;
    }

private:
    template <class Visit>
    void within(Query query, const Key& key, const Visit& visit) {
        if (query == Query::all) return visit(routes.begin(), routes.end());
        if (query == Query::group) {
            const auto range = routes.get<ByGroup>().equal_range(boost::make_tuple(key.vrId, key.vrfId, key.group));
            return visit(range.first, range.second);
        }
        const auto range = routes.get<ByVrf>().equal_range(boost::make_tuple(key.vrId, key.vrfId));
        visit(range.first, range.second);
    }

    Routes routes;
};

}  // namespace

void measureContainer(const Workload& workload, const Settings& settings, Findings& findings) {
    Measurement<Container>(workload, settings, findings).run();
}

}  // namespace mcast6::bench
