// An ordered list of items of one size, in blocks of a region. It is known by the reference of its head, which may move
// when the list grows or shrinks: insert() and erase() say where it is now.
//
// A short list is one block of items. A long one is a directory, the first item and the reference of each leaf, and
// leaves that are a quarter full at least, but for the last. Items that come in ascending order fill their leaves.
//
// Reading may meet a change under way; all else is the writer's.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "platform/store/shared/layout.h"
#include "platform/store/shared/region.h"
#include "platform/store/shared/view.h"

namespace mcast6::store::shared {

struct ListHead {
    uint32_t count;
    uint32_t sample;    // the list's user's own
    uint32_t capacity;  // items, or leaves of a directory; the upper bits tell the form
    uint32_t used;      // leaves of a directory
};

inline constexpr uint32_t kDirectory = uint32_t{1} << 31;
inline constexpr uint32_t kDense = uint32_t{1} << 30;
inline constexpr uint32_t kForms = kDirectory | kDense;

template <class Item>
class Sorted {
public:
    static constexpr uint32_t kLeafBytes = sizeof(Item) <= 4 ? 256 : 2048;
    static constexpr uint32_t kLeaf = (kLeafBytes - 8) / sizeof(Item);

    // An empty list with room for 'items'.
    static Ref make(Region& region, uint32_t items) {
        const size_t bytes = Region::sizeFor(sizeof(ListHead) + items * sizeof(Item));
        const Ref made = region.take(bytes);
        const auto capacity = static_cast<uint32_t>((bytes - sizeof(ListHead)) / sizeof(Item));
        const ListHead head{0, 0, capacity, 0};
        region.fill(&region.view().at<ListHead>(made), &head, sizeof head);
        return made;
    }

    // A list of these items, in a new block or directory. Throws NoRoom, and keeps nothing then.
    static Ref makeOf(Region& region, const Item* from, uint32_t count, uint32_t sample) {
        if (count <= kLeaf) {
            const Ref made = make(region, count + 1);
            const View view = region.view();
            region.fill(items(view, made), from, count * sizeof(Item));
            region.init(view.at<ListHead>(made).count, count);
            region.init(view.at<ListHead>(made).sample, sample);
            return made;
        }
        // Leaves with some room each.
        constexpr uint32_t kEach = kLeaf * 7 / 8;
        const uint32_t leaves = (count + kEach - 1) / kEach;
        const Ref made = makeDirectory(region, {count, sample, 0, 0}, leaves);
        uint32_t done = 0;
        for (uint32_t i = 0; i < leaves; ++i) {
            const uint32_t some = (count - done) / (leaves - i);
            try {
                setEntry(region, directory(region.view(), made)[i], makeLeaf(region, from + done, some));
            } catch (const NoRoom&) {
                drop(region, made);
                throw;
            }
            region.init(region.view().at<ListHead>(made).used, i + 1);
            done += some;
        }
        return made;
    }

    static void drop(Region& region, Ref list) {
        const View view = region.view();
        const ListHead& head = view.at<ListHead>(list);
        if (isDirectory(head)) {
            for (uint32_t i = 0; i < head.used; ++i) region.give(directory(view, list)[i].leaf, kLeafBytes);
        }
        region.give(list, bytesOf(head));
    }

    // Copies up to 'wanted' items, from the first on for which isBefore() does not hold. Those for which it holds come
    // before all others.
    template <class IsBefore>
    static uint32_t next(const View& view, Ref list, const IsBefore& isBefore, Item* to, uint32_t wanted) {
        const ListHead& head = view.at<ListHead>(list);
        const uint32_t capacity = peek(head.capacity);
        if ((capacity & kDirectory) == 0) {
            const uint32_t count = std::min(peek(head.count), capacity);
            view.expect(list, sizeof(ListHead) + uint64_t{count} * sizeof(Item));
            return copyFrom(items(view, list), count, isBefore, to, wanted);
        }
        const uint32_t used = std::min(peek(head.used), capacity & ~kForms);
        view.expect(list, sizeof(ListHead) + uint64_t{used} * sizeof(Entry));
        const Entry* const entries = directory(view, list);
        uint32_t leaf = boundary(used, [&](uint32_t i) { return isBefore(load(entries[i].first)); });
        if (leaf > 0) --leaf;
        uint32_t found = 0;
        for (; leaf < used && found < wanted; ++leaf) {
            const Ref at = peek(entries[leaf].leaf);
            view.expect(at, kLeafBytes);
            const Leaf& from = view.at<Leaf>(at);
            found += copyFrom(from.items, std::min(peek(from.count), kLeaf), isBefore, to + found, wanted - found);
        }
        return found;
    }

    // The item must not be there yet.
    static Ref insert(Region& region, Ref list, const Item& item, uint32_t sample) {
        const View view = region.view();
        const ListHead& head = view.at<ListHead>(list);
        if (!isDirectory(head)) {
            if (head.count < head.capacity) {
                insertInto(region, items(view, list), head.count, item);
                setHead(region, head, head.count + 1, sample);
                return list;
            }
            const Ref larger = head.count < kLeaf ? enlarged(region, list) : withDirectory(region, list);
            return insert(region, larger, item, sample);
        }
        const uint32_t at = leafOf(view, list, item);
        const Leaf& leaf = view.at<Leaf>(directory(view, list)[at].leaf);
        if (leaf.count == kLeaf) return insert(region, withRoom(region, list, at, item), item, sample);
        if (item < leaf.items[0]) region.write(&directory(view, list)[at].first, &item, sizeof item);
        insertInto(region, leaf.items, leaf.count, item);
        region.set(leaf.count, leaf.count + 1);
        setHead(region, head, head.count + 1, sample);
        return list;
    }

    // The item must be there. A list may become empty.
    static Ref erase(Region& region, Ref list, const Item& item) {
        const View view = region.view();
        const ListHead& head = view.at<ListHead>(list);
        if (!isDirectory(head)) {
            eraseFrom(region, items(view, list), head.count, item);
            region.set(head.count, head.count - 1);
            return shrunk(region, list);
        }
        const uint32_t at = leafOf(view, list, item);
        const Entry& entry = directory(view, list)[at];
        const Leaf& leaf = view.at<Leaf>(entry.leaf);
        eraseFrom(region, leaf.items, leaf.count, item);
        region.set(leaf.count, leaf.count - 1);
        region.set(head.count, head.count - 1);
        if (leaf.count == 0) {
            removeLeaf(region, list, at);
        } else {
            if (item < leaf.items[0]) region.write(&entry.first, &leaf.items[0], sizeof item);
            if (leaf.count < kLeaf / 4) joinNeighbours(region, list, at);
        }
        return shrunk(region, list);
    }

    // Has the memory brought that insert() or erase() will touch, where the head is near.
    static void prefetch(const View& view, Ref list, const Item& item) {
        const ListHead& head = view.at<ListHead>(list);
        if (!isDirectory(head)) {
            view.prefetch(list, sizeof(ListHead) + (head.count > 0 ? head.count - 1 : 0) * sizeof(Item));
            return;
        }
        const Ref leaf = directory(view, list)[leafOf(view, list, item)].leaf;
        constexpr uint32_t kNear = std::min(kLeafBytes, 256U);
        for (uint32_t offset = 0; offset < kNear; offset += 64) view.prefetch(leaf, offset);
    }

    // Checks the list by itself and calls each(item); adds the bytes of its blocks. Tells what is wrong, or nothing.
    template <class Each>
    static std::string check(const View& view, Ref list, uint64_t& bytes, const Each& each) {
        view.expect(list, sizeof(ListHead));
        const ListHead& head = view.at<ListHead>(list);
        view.expect(list, bytesOf(head));
        bytes += Region::sizeFor(bytesOf(head));
        const Item* last = nullptr;
        uint64_t seen = 0;
        const auto isAscending = [&](const Item* from, uint32_t count) {
            for (uint32_t i = 0; i < count; ++i, ++seen) {
                if (last != nullptr && !(*last < from[i])) return false;
                last = from + i;
                each(from[i]);
            }
            return true;
        };
        if (!isDirectory(head)) {
            if (head.count > head.capacity || !isAscending(items(view, list), head.count)) return "items of a list";
            return {};
        }
        if (head.used > (head.capacity & ~kForms) || head.used == 0) return "leaves of a list";
        for (uint32_t i = 0; i < head.used; ++i) {
            const Entry& entry = directory(view, list)[i];
            view.expect(entry.leaf, kLeafBytes);
            bytes += Region::sizeFor(kLeafBytes);
            const Leaf& leaf = view.at<Leaf>(entry.leaf);
            if (leaf.count == 0 || leaf.count > kLeaf || !(leaf.items[0] == entry.first)) return "a leaf of a list";
            if (!isAscending(leaf.items, leaf.count)) return "items of a leaf";
        }
        return seen == head.count ? "" : "the count of a list";
    }

private:
    struct Entry {
        Item first;
        Ref leaf;
    };
    struct Leaf {
        uint32_t count;
        uint32_t reserved;
        Item items[kLeaf];
    };
    static_assert(sizeof(Leaf) <= kLeafBytes);

    static bool isDirectory(const ListHead& head) { return (head.capacity & kDirectory) != 0; }
    static size_t bytesOf(const ListHead& head) {
        const size_t each = isDirectory(head) ? sizeof(Entry) : sizeof(Item);
        return sizeof(ListHead) + (head.capacity & ~kForms) * each;
    }
    static const Item* items(const View& view, Ref list) { return view.array<Item>(list, sizeof(ListHead)); }
    static const Entry* directory(const View& view, Ref list) { return view.array<Entry>(list, sizeof(ListHead)); }

    static Item load(const Item& place) {
        Item item;
        copyOut(&item, &place, sizeof item);
        return item;
    }

    // How many of the first numbers below 'count' isBefore() holds for. Without branches, as where a search goes cannot
    // be predicted.
    template <class IsBefore>
    static uint32_t boundary(uint32_t count, const IsBefore& isBefore) {
        if (count == 0 || isBefore(count - 1)) return count;
        uint32_t from = 0;
        while (count > 1) {
            const uint32_t half = count / 2;
            from += isBefore(from + half - 1) ? half : 0;
            count -= half;
        }
        return from + (isBefore(from) ? 1 : 0);
    }

    template <class IsBefore>
    static uint32_t copyFrom(const Item* from, uint32_t count, const IsBefore& isBefore, Item* to, uint32_t wanted) {
        const uint32_t first = boundary(count, [&](uint32_t i) { return isBefore(load(from[i])); });
        const uint32_t copied = std::min(count - first, wanted);
        copyOut(to, from + first, copied * sizeof(Item));
        return copied;
    }

    // The leaf whose item this is, or is to be.
    static uint32_t leafOf(const View& view, Ref list, const Item& item) {
        const Entry* const entries = directory(view, list);
        const uint32_t above =
            boundary(view.at<ListHead>(list).used, [&](uint32_t i) { return !(item < entries[i].first); });
        return above > 0 ? above - 1 : 0;
    }

    static void setHead(Region& region, const ListHead& head, uint32_t count, uint32_t sample) {
        const uint64_t both = uint64_t{sample} << 32 | count;
        region.set(*reinterpret_cast<const uint64_t*>(&head), both);
    }

    static void insertInto(Region& region, const Item* to, uint32_t count, const Item& item) {
        const uint32_t at = boundary(count, [&](uint32_t i) { return to[i] < item; });
        if (at < count) region.move(to + at + 1, to + at, (count - at) * sizeof(Item));
        writeItem(region, to[at], item);
    }

    static void eraseFrom(Region& region, const Item* from, uint32_t count, const Item& item) {
        const uint32_t at = boundary(count, [&](uint32_t i) { return from[i] < item; });
        if (at + 1 < count) region.move(from + at, from + at + 1, (count - at - 1) * sizeof(Item));
    }

    static void writeItem(Region& region, const Item& place, const Item& item) {
        if constexpr (sizeof(Item) == 4) {
            region.set(place, item);
        } else {
            region.write(&place, &item, sizeof item);
        }
    }

    // A copy in a block with room for more, or for less.
    static Ref copied(Region& region, Ref list, uint32_t room) {
        const ListHead old = region.view().at<ListHead>(list);
        const Ref made = make(region, room);
        const View view = region.view();
        const ListHead& head = view.at<ListHead>(made);
        const Item* from = items(view, list);
        if (isDirectory(old)) from = view.at<Leaf>(directory(view, list)[0].leaf).items;
        region.fill(items(view, made), from, old.count * sizeof(Item));
        region.init(head.count, old.count);
        region.init(head.sample, old.sample);
        drop(region, list);
        return made;
    }

    static Ref enlarged(Region& region, Ref list) {
        const uint32_t count = region.view().at<ListHead>(list).count;
        return copied(region, list, std::min(count + std::max(1U, count / 2), kLeaf));
    }

    static Ref makeDirectory(Region& region, const ListHead& old, uint32_t leaves) {
        const size_t bytes = Region::sizeFor(sizeof(ListHead) + leaves * sizeof(Entry));
        const Ref made = region.take(bytes);
        const auto capacity = static_cast<uint32_t>((bytes - sizeof(ListHead)) / sizeof(Entry));
        const ListHead head{old.count, old.sample, capacity | kDirectory, old.used};
        region.fill(&region.view().at<ListHead>(made), &head, sizeof head);
        return made;
    }

    // A full block as the first leaf of a directory.
    static Ref withDirectory(Region& region, Ref list) {
        ListHead old = region.view().at<ListHead>(list);
        // A block may have room for more than a leaf.
        const uint32_t firstLeaf = std::min(old.count, kLeaf);
        const Ref leaf = makeLeaf(region, items(region.view(), list), firstLeaf);
        const Ref more =
            old.count > kLeaf ? makeLeaf(region, items(region.view(), list) + firstLeaf, old.count - firstLeaf) : 0;
        old.used = more != 0 ? 2 : 1;
        const Ref made = makeDirectory(region, old, 4);
        const View view = region.view();
        setEntry(region, directory(view, made)[0], leaf);
        if (more != 0) setEntry(region, directory(view, made)[1], more);
        drop(region, list);
        return made;
    }

    // For fresh directories.
    static void setEntry(Region& region, const Entry& entry, Ref leaf) {
        const Item first = region.view().at<Leaf>(leaf).items[0];
        region.fill(&entry.first, &first, sizeof first);
        region.init(entry.leaf, leaf);
    }

    static Ref makeLeaf(Region& region, const Item* from, uint32_t count) {
        const Ref made = region.take(kLeafBytes);
        const Leaf& leaf = region.view().at<Leaf>(made);
        region.init(leaf.count, count);
        region.init(leaf.reserved, 0);
        region.fill(leaf.items, from, count * sizeof(Item));
        return made;
    }

    // The list with room for the item where its leaf is full: in two halves of it, or in a new one behind the last when
    // items ascend.
    static Ref withRoom(Region& region, Ref list, uint32_t at, const Item& item) {
        View view = region.view();
        const ListHead& head = view.at<ListHead>(list);
        const Leaf& full = view.at<Leaf>(directory(view, list)[at].leaf);
        const bool isAppended = at + 1 == head.used && full.items[kLeaf - 1] < item;
        const uint32_t kept = isAppended ? kLeaf - 1 : kLeaf / 2;
        const Ref made = makeLeaf(region, full.items + kept, kLeaf - kept);
        region.set(full.count, kept);
        if (head.used == (head.capacity & ~kForms)) list = withLargerDirectory(region, list);
        view = region.view();
        const ListHead& now = view.at<ListHead>(list);
        const Entry* const behind = directory(view, list) + at + 1;
        if (at + 1 < now.used) region.move(behind + 1, behind, (now.used - at - 1) * sizeof(Entry));
        const Entry entry{view.at<Leaf>(made).items[0], made};
        region.write(behind, &entry, sizeof entry);
        region.set(now.used, now.used + 1);
        return list;
    }

    static Ref withLargerDirectory(Region& region, Ref list) {
        const ListHead old = region.view().at<ListHead>(list);
        const Ref made = makeDirectory(region, old, old.used + old.used / 2);
        const View view = region.view();
        region.fill(directory(view, made), directory(view, list), old.used * sizeof(Entry));
        region.give(list, bytesOf(old));
        return made;
    }

    static void removeLeaf(Region& region, Ref list, uint32_t at) {
        const View view = region.view();
        const ListHead& head = view.at<ListHead>(list);
        const Entry* const entry = directory(view, list) + at;
        region.give(entry->leaf, kLeafBytes);
        if (at + 1 < head.used) region.move(entry, entry + 1, (head.used - at - 1) * sizeof(Entry));
        region.set(head.used, head.used - 1);
    }

    static void joinNeighbours(Region& region, Ref list, uint32_t at) {
        const View view = region.view();
        const uint32_t left = at > 0 ? at - 1 : at;
        if (left + 1 >= view.at<ListHead>(list).used) return;
        const Leaf& to = view.at<Leaf>(directory(view, list)[left].leaf);
        const Leaf& from = view.at<Leaf>(directory(view, list)[left + 1].leaf);
        if (to.count + from.count > kLeaf * 3 / 4) return;
        region.write(to.items + to.count, from.items, from.count * sizeof(Item));
        region.set(to.count, to.count + from.count);
        removeLeaf(region, list, left + 1);
    }

    // In a smaller block where it has become too small for its own, and there is memory for one.
    static Ref shrunk(Region& region, Ref list) {
        const ListHead& head = region.view().at<ListHead>(list);
        const bool isLow = !isDirectory(head) && head.capacity > 8 && head.count < head.capacity / 4;
        if (head.count == 0 || !(isLow || (isDirectory(head) && head.used == 1))) return list;
        try {
            return copied(region, list, std::min(head.count + head.count / 2 + 1, std::max(head.count, kLeaf)));
        } catch (const NoRoom&) {
            return list;
        }
    }
};

}  // namespace mcast6::store::shared
