// Root iterators and statements.
#include <cstring>

#include "platform/engine/answers.h"
#include "platform/engine/engine.h"
#include "platform/engine/primary_scan.h"

namespace mcast6::engine {

namespace {

constexpr uint32_t kRecordsAStep = 0;  // the property, whose only value is 1
constexpr uint32_t kStatementKind = 2;
constexpr uint32_t kSortCondition = 3;

}  // namespace

void Engine::dropListedIterators(Object& object, bool keepCached) {
    Iterator* kept = nullptr;
    for (Iterator* iterator = object.iterators; iterator != nullptr;) {
        Iterator* next = iterator->nextOfOwner;
        if (keepCached && iterator->isCached) {
            iterator->nextOfOwner = kept;
            kept = iterator;
        } else {
            iterators_.withdraw(iterator->handle.load(std::memory_order_relaxed));
            iterator->scan.reset();
            iterators_.recycle(*iterator);
        }
        iterator = next;
    }
    object.iterators = kept;
}

// Opens a scan on the key that the key word names, a secondary index or the primary key. 'key' may be null for a scan
// that gets its key by restart().
uint32_t Engine::openByKey(const TableFacts& facts, uint32_t keyWord, const void* key,
                           std::unique_ptr<store::Scan>& scan) {
    if (keyWord == facts.primaryWord) {
        scan = std::make_unique<PrimaryScan>(*store_, facts, keyBytes(key));
        return MCAST6_DB_OK;
    }
    const std::optional<uint32_t> index = facts.secondaryIndex(keyWord);
    if (!index) return refused(MCAST6_DB_BAD_KEY);
    return openRange(facts, {store::ScanRange::Order::index, *index, keyBytes(key)}, scan);
}

uint32_t Engine::openRange(const TableFacts& facts, const store::ScanRange& range, std::unique_ptr<store::Scan>& scan) {
    return codeOf(store_->open(facts.id, range, scan), MCAST6_DB_STORE_FAILED);
}

uint32_t Engine::makeIterator(Object& object, std::unique_ptr<store::Scan> scan, bool isCached, uint64_t* rootIter) {
    Iterator* made = iterators_.claim();
    if (made == nullptr) return refused(MCAST6_DB_NO_MEMORY);
    made->owner = &object;
    made->scan = std::move(scan);
    made->place = isCached ? Iterator::Place::unset : Iterator::Place::before;
    made->isCached = isCached;
    made->nextOfOwner = object.iterators;
    object.iterators = made;
    *rootIter = iterators_.publish(*made);
    return MCAST6_DB_OK;
}

uint32_t Engine::createRootIter(uint64_t object, const void* keyDesc, const void* key, uint64_t* rootIter) noexcept {
    return guarded([&] {
        Object* owner = objects_.find(object);
        if (owner == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
        if (owner->type != ObjType::iterate) return refused(MCAST6_DB_BAD_OPERATION);
        if (rootIter == nullptr || (keyDesc == nullptr) != (key == nullptr)) return refused(MCAST6_DB_BAD_ARGUMENT);
        std::unique_ptr<store::Scan> scan;
        const uint32_t code = keyDesc != nullptr
                                  ? openByKey(*owner->facts, keyWordAt(keyDesc), key, scan)
                                  : openRange(*owner->facts, {store::ScanRange::Order::table, 0, nullptr}, scan);
        return code == MCAST6_DB_OK ? makeIterator(*owner, std::move(scan), false, rootIter) : code;
    });
}

uint32_t Engine::createCacheRootIter(uint64_t object, const void* keyDesc, uint64_t* rootIter) noexcept {
    return guarded([&] {
        Object* owner = objects_.find(object);
        if (owner == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
        if (owner->type != ObjType::iterate) return refused(MCAST6_DB_BAD_OPERATION);
        if (rootIter == nullptr || keyDesc == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
        std::unique_ptr<store::Scan> scan;
        uint32_t code = openByKey(*owner->facts, keyWordAt(keyDesc), nullptr, scan);
        if (code == MCAST6_DB_OK) code = makeIterator(*owner, std::move(scan), true, rootIter);
        if (code == MCAST6_DB_OK) owner->iterators->keyWord = keyWordAt(keyDesc);
        return code;
    });
}

uint32_t Engine::resetCacheRootIter(uint64_t rootIter, const void* key) noexcept {
    return guarded([&] {
        Iterator* reset = iterators_.find(rootIter);
        if (reset == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
        if (!reset->isCached) return refused(MCAST6_DB_BAD_OPERATION);
        if (key == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
        if (reset->scan == nullptr) {
            const uint32_t code = openByKey(*reset->owner->facts, reset->keyWord, nullptr, reset->scan);
            if (code != MCAST6_DB_OK) return code;
        }
        const uint32_t code = codeOf(reset->scan->restart(keyBytes(key)), MCAST6_DB_STORE_FAILED);
        if (code != MCAST6_DB_OK) return code;
        reset->place = Iterator::Place::before;
        if (reset->owner->lastStepped == reset) reset->owner->lastStepped = nullptr;
        return uint32_t{MCAST6_DB_OK};
    });
}

uint32_t Engine::setRootIterProperty(uint64_t rootIter, uint32_t property, const void* value,
                                     uint32_t length) noexcept {
    if (iterators_.find(rootIter) == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
    if (property != kRecordsAStep) return refused(MCAST6_DB_BAD_PROPERTY);
    if (value == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
    uint32_t records = 0;
    if (length != sizeof records) return refused(MCAST6_DB_BAD_LENGTH);
    std::memcpy(&records, value, sizeof records);
    return records == 1 ? uint32_t{MCAST6_DB_OK} : refused(MCAST6_DB_BAD_ARGUMENT);
}

uint32_t Engine::next(uint64_t rootIter) noexcept {
    return guarded([&] {
        Iterator* stepped = iterators_.find(rootIter);
        if (stepped == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
        if (stepped->place == Iterator::Place::unset) return refused(MCAST6_DB_BAD_OPERATION);
        if (stepped->place != Iterator::Place::end) {
            const store::Answer answer = stepped->scan->next();
            if (answer != store::Answer::done && answer != store::Answer::end) {
                return codeOf(answer, MCAST6_DB_STORE_FAILED);
            }
            stepped->place = answer == store::Answer::done ? Iterator::Place::onRecord : Iterator::Place::end;
        }
        stepped->owner->lastStepped = stepped;
        return uint32_t{stepped->place == Iterator::Place::end ? MCAST6_DB_END_OF_ITERATION : MCAST6_DB_OK};
    });
}

uint32_t Engine::createStatement(uint64_t object, uint32_t kind, const void* params, uint32_t paramCount) noexcept {
    Object* owner = objects_.find(object);
    if (owner == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
    if (owner->type != ObjType::iterate) return refused(MCAST6_DB_BAD_OPERATION);
    if (kind != kStatementKind || params != nullptr || paramCount != 0) return refused(MCAST6_DB_BAD_ARGUMENT);
    owner->statement.state = Statement::State::begun;
    return MCAST6_DB_OK;
}

uint32_t Engine::appendCondition(uint64_t object, const char* keyName, uint32_t kind, uint32_t reserved1,
                                 const void* reserved2, uint32_t reserved3, const void* keyWord, const void* value,
                                 uint32_t valueLength) noexcept {
    Object* owner = objects_.find(object);
    if (owner == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
    Statement& statement = owner->statement;
    if (statement.state != Statement::State::begun) return refused(MCAST6_DB_BAD_OPERATION);
    if (kind != kSortCondition || reserved1 != 0 || reserved2 != nullptr || reserved3 != 0) {
        return refused(MCAST6_DB_BAD_ARGUMENT);
    }
    if (keyName == nullptr || keyWord == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
    const std::optional<uint32_t> index = owner->facts->sortedIndex(keyWordAt(keyWord), keyName);
    if (!index) return refused(MCAST6_DB_BAD_KEY);
    const uint32_t wantedLength = value != nullptr ? owner->facts->table->indexes[*index].length() : 0;
    if (valueLength != wantedLength) return refused(MCAST6_DB_BAD_LENGTH);

    if (value != nullptr) std::memcpy(statement.value.data(), value, valueLength);
    statement.isRestricted = value != nullptr;
    statement.index = *index;
    statement.state = Statement::State::conditioned;
    return MCAST6_DB_OK;
}

uint32_t Engine::createRootIterOfStatement(uint64_t object, uint64_t* rootIter) noexcept {
    return guarded([&] {
        Object* owner = objects_.find(object);
        if (owner == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
        const Statement& statement = owner->statement;
        if (statement.state != Statement::State::conditioned) return refused(MCAST6_DB_BAD_OPERATION);
        if (rootIter == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
        const std::byte* key = statement.isRestricted ? statement.value.data() : nullptr;
        std::unique_ptr<store::Scan> scan;
        const uint32_t code = openRange(*owner->facts, {store::ScanRange::Order::sorted, statement.index, key}, scan);
        return code == MCAST6_DB_OK ? makeIterator(*owner, std::move(scan), false, rootIter) : code;
    });
}

}  // namespace mcast6::engine
