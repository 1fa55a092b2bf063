// One table of the shared store: records, a hash of their primary keys, and for each further key a hash of the sets of
// slots that have it, with the keys in order where the index is sorted.
//
// Looks take a view and may meet a change under way; then they throw Torn, or return what is void because a sequence
// number moved. Changes are the lock's holder's. They have three parts:
//   - everything is found, brought near, and made room for where that takes long: readers go on;
//   - the indexes change, under openAll(): now whoever reads by an index, walks or counts waits;
//   - the rows and the hash of the primary keys change, under openRows(): now reads by key wait, too.
// The windows close when the change has been committed or undone, so nobody sees what may be undone.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/schema/schema.h"
#include "platform/store/memory/key_shape.h"
#include "platform/store/shared/hash.h"
#include "platform/store/shared/layout.h"
#include "platform/store/shared/region.h"
#include "platform/store/shared/rows.h"
#include "platform/store/shared/slot_set.h"
#include "platform/store/shared/sorted.h"
#include "platform/store/store.h"

namespace mcast6::store::shared {

using memory::HashSecrets;
using memory::KeyBuffer;
using memory::KeyShape;

// A key in a form whose bytes compare as its values do, with zeros behind it.
struct OrderKey {
    std::array<std::byte, schema::kMaxKeyLength> bytes{};
    bool operator<(const OrderKey& other) const {
        return std::memcmp(bytes.data(), other.bytes.data(), bytes.size()) < 0;
    }
    bool operator==(const OrderKey& other) const = default;
};

class Table {
public:
    Table(Region& in, const schema::Table& description, const HashSecrets& secrets);
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    // Makes the table in the region, as a part of a change; or knows it by its reference. Throws NoRoom.
    Ref create();
    void attach(Ref table) { at = table; }

    const schema::Table& description() const { return schema; }
    const KeyShape& primaryShape() const { return primaryKey; }
    const KeyShape& shape(uint32_t index) const { return *shapes[index]; }

    const uint64_t& rowSequence() const { return head(region.view()).rowSequence; }
    const uint64_t& sequence() const { return head(region.view()).sequence; }

    // --- Looks.
    // The row with this primary key, null: there is none. 'hash' is the key's, which has the schema's constants.
    const std::byte* find(const View& view, uint32_t hash, const std::byte* key) const;
    uint64_t count(const View& view) const { return peek(head(view).records); }
    uint64_t countByKey(const View& view, uint32_t index, uint32_t hash, const std::byte* key) const;
    // The first slots at or after 'from', up to 'wanted': of the table, or with a key.
    uint32_t nextSlots(const View& view, uint32_t from, uint32_t* to, uint32_t wanted) const;
    uint32_t nextSlots(const View& view, uint32_t index, uint32_t hash, const std::byte* key, uint32_t from,
                       uint32_t* to, uint32_t wanted) const;
    // The lowest key of a sorted index, above 'after' if given. False: there is none.
    bool nextKey(const View& view, uint32_t index, const OrderKey* after, OrderKey& key) const;
    void copyRow(const View& view, uint32_t slot, std::byte* to) const {
        copyOut(to, rows(view).row(slot), schema.recordSize);
    }
    void prefetchRow(const View& view, uint32_t slot) const { rows(view).prefetch(slot); }

    // Checks every index against every row. Tells what is wrong, or nothing; adds the bytes of all blocks.
    std::string check(const View& view, uint64_t& bytes) const;

    // --- Changes. NoRoom and Torn go through to the caller, who undoes.
    Answer put(const std::byte* row);
    Answer patch(const std::byte* key, const std::byte* row, uint64_t fields);
    Answer erase(const std::byte* key);
    // Whether a hash has become much too large; makes one of them smaller.
    bool isLoose();
    void trim();

    // Brings near what a change of the record with this key begins with.
    void prefetch(uint32_t hash) const { primaryView(region.view()).prefetch(hash); }

    // Ends the windows: what was changed is committed, or undone.
    void close();
    // Has readers look again who may have seen what was undone, though no window was open.
    void disturb();

private:
    struct Gap {
        uint16_t offset;
        uint16_t width;
    };

    // A record's key on its way through an index.
    struct Lookup {
        uint32_t hash;
        uint32_t place;  // probed, which is nearly always right, then found; kNone when no record has the key
        OtherArray larger;
    };
    using Lookups = std::array<Lookup, kIndexes>;
    using Orders = Sorted<OrderKey>;

    const TableHead& head(const View& view) const { return view.at<TableHead>(at); }
    const TableHead& head() const { return head(region.view()); }
    RowsView rows(const View& view) const { return {view, head(view), stride}; }
    RowsWriter rowsWriter() { return {region, head(), stride}; }
    HashView primaryView(const View& view) const { return {view, head(view).primary}; }
    HashView indexView(const View& view, uint32_t index) const { return {view, head(view).indexes[index]}; }
    // Of an index, or behind them of the primary key.
    HashWriter writerOf(uint32_t number) {
        return {region, number < shapes.size() ? head().indexes[number] : head().primary};
    }
    HashWriter indexWriter(uint32_t index) { return {region, head().indexes[index]}; }

    bool isSorted(uint32_t index) const { return schema.indexes[index].kind() == schema::KeyKind::sorted; }
    bool matches(const KeyShape& shape, const std::byte* row, const std::byte* key) const;
    uint32_t slotsEnd() const { return head().slabs * kCells; }

    // The upper bit of a reference in an index tells sets from slots.
    static constexpr uint32_t kSet = uint32_t{1} << 31;
    static bool isSet(uint32_t ref) { return (ref & kSet) != 0; }
    static uint32_t sampleOf(const View& view, uint32_t ref) {
        return isSet(ref) ? SlotSet::sample(view, ref & ~kSet) : ref;
    }

    uint32_t findPrimary(const std::byte* key, uint32_t hash) const;
    // Where the key of a row stands in an index, or kNone.
    uint32_t findLike(uint32_t index, uint32_t hash, const std::byte* row) const;
    OrderKey orderKey(uint32_t index, const std::byte* row) const;

    void hashKeys(const std::byte* row, uint64_t which, Lookups& keys) const;
    void prefetchChange(uint64_t which, Lookups& keys, uint32_t slot, bool isAddition) const;
    void findKeys(const std::byte* row, uint64_t which, Lookups& keys);
    void add(uint32_t index, const Lookup& key, uint32_t slot, const std::byte* row);
    void remove(uint32_t index, uint32_t hash, uint32_t slot, const std::byte* row);

    Answer insert(const std::byte* row, uint32_t hash);
    void change(uint32_t slot, const std::byte* row, uint64_t which);
    void openAll();
    void openRows();
    void clean(std::byte* row) const;

    std::string checkIndex(const View& view, uint32_t index, const std::vector<uint32_t>& live, uint64_t& bytes) const;
    std::string checkMembers(const View& view, uint32_t index, uint32_t hash, uint32_t ref, uint64_t& bytes,
                             std::vector<uint32_t>& members) const;

    Region& region;
    const schema::Table& schema;
    const KeyShape primaryKey;
    std::vector<std::unique_ptr<KeyShape>> shapes;
    const size_t stride;
    uint64_t allIndexes = 0;                               // bit i: index i
    std::array<uint64_t, schema::kMaxFields> indexesOf{};  // of each field
    std::vector<Gap> gaps;                                 // bytes that no field names
    Ref at = 0;
};

}  // namespace mcast6::store::shared
