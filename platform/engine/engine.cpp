// Objects and their fields.
#include "platform/engine/engine.h"

#include <atomic>
#include <cstring>

#include "platform/engine/answers.h"
#include "platform/schema/copy_field.h"

namespace mcast6::engine {

namespace {

// A number for each engine of the process, so that handles of an earlier one are rejected. Never 0.
uint32_t nextNonce() {
    static std::atomic<uint32_t> given{0};
    return given.fetch_add(1, std::memory_order_relaxed) % kNonceMask + 1;
}

bool isObjType(uint32_t objType) {
    switch (objType) {
        case 0:
        case 1:
        case 3:
        case 4:
        case 5:
        case 9:
            return true;
        default:
            return false;
    }
}

bool takesFields(const Object& object) { return object.type == ObjType::write || object.type == ObjType::update; }

std::vector<TableFacts> factsOf(std::span<const schema::Table> tables) {
    std::vector<TableFacts> facts;
    facts.reserve(tables.size());
    for (uint32_t id = 0; id < tables.size(); ++id) facts.emplace_back(id, tables[id]);
    return facts;
}

}  // namespace

Engine::Engine(std::unique_ptr<store::Store> store, std::span<const schema::Table> tables)
    : store_(std::move(store)),
      front_(store_.get()),
      batches_(std::make_unique<Batches>(*store_, front_)),
      tables_(factsOf(tables)),
      nonce_(nextNonce()),
      objects_(HandleKind::object, nonce_),
      iterators_(HandleKind::iterator, nonce_) {}

Engine::~Engine() = default;

uint32_t Engine::createObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept {
    return makeObject(table, objType, connType, false, object);
}

uint32_t Engine::createCacheObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept {
    return makeObject(table, objType, connType, true, object);
}

uint32_t Engine::makeObject(uint32_t table, uint32_t objType, uint32_t connType, bool isCache,
                            uint64_t* object) noexcept {
    if (object == nullptr || connType != 0 || !isObjType(objType) || table >= tables_.size()) {
        return refused(MCAST6_DB_BAD_ARGUMENT);
    }
    Object* made = objects_.claim();
    if (made == nullptr) return refused(MCAST6_DB_NO_MEMORY);
    made->facts = &tables_[table];
    made->type = static_cast<ObjType>(objType);
    made->isCache = isCache;
    *object = objects_.publish(*made);
    return MCAST6_DB_OK;
}

namespace {

void forget(Object& object) {
    object.fieldsSet = 0;
    object.hasRead = false;
    object.lastStepped = nullptr;
    object.statement.state = Statement::State::none;
}

}  // namespace

void Engine::releaseObject(uint32_t table, uint64_t object) noexcept {
    Object* released = objectOf(table, object);
    if (released == nullptr || !objects_.withdraw(*released, object)) return;
    dropIterators(*released, false);
    forget(*released);
    objects_.recycle(*released);
}

uint32_t Engine::resetObject(uint32_t table, uint64_t object, uint32_t objType) noexcept {
    Object* reset = objectOf(table, object);
    if (reset == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
    if (!isObjType(objType)) return refused(MCAST6_DB_BAD_ARGUMENT);
    dropIterators(*reset, false);
    forget(*reset);
    reset->type = static_cast<ObjType>(objType);
    return MCAST6_DB_OK;
}

uint32_t Engine::resetCacheObject(uint32_t table, uint64_t object) noexcept {
    Object* reset = objectOf(table, object);
    if (reset == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
    if (!reset->isCache) return refused(MCAST6_DB_BAD_OPERATION);
    dropIterators(*reset, true);
    forget(*reset);
    return MCAST6_DB_OK;
}

uint32_t Engine::setAllFields(uint32_t table, uint64_t object, const void* row, uint32_t length) noexcept {
    Object* filled = objectOf(table, object);
    if (filled == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
    if (!takesFields(*filled)) return refused(MCAST6_DB_BAD_OPERATION);
    if (row == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
    const TableFacts& facts = *filled->facts;
    if (length != facts.recordSize) return refused(MCAST6_DB_BAD_LENGTH);
    std::memcpy(filled->row.data(), row, length);
    filled->fieldsSet = filled->type == ObjType::write ? facts.allFields : facts.allFields & ~facts.primaryFields;
    return MCAST6_DB_OK;
}

uint32_t Engine::setField(uint32_t table, uint32_t field, uint64_t object, const void* value,
                          uint32_t length) noexcept {
    Object* filled = objectOf(table, object);
    if (filled == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
    if (!takesFields(*filled)) return refused(MCAST6_DB_BAD_OPERATION);
    const TableFacts& facts = *filled->facts;
    if (value == nullptr || field >= facts.table->fields.size()) return refused(MCAST6_DB_BAD_ARGUMENT);
    const uint64_t bit = uint64_t{1} << field;
    if (filled->type == ObjType::update && (facts.primaryFields & bit) != 0) return refused(MCAST6_DB_BAD_OPERATION);
    const schema::Field& place = facts.table->fields[field];
    if (length != place.width) return refused(MCAST6_DB_BAD_LENGTH);
    // Of an update only the fields that were set are ever looked at.
    if (filled->fieldsSet == 0 && filled->type == ObjType::write) std::memset(filled->row.data(), 0, facts.recordSize);
    schema::copyField(filled->row.data() + place.offset, value, place.width);
    filled->fieldsSet |= bit;
    return MCAST6_DB_OK;
}

// Fetches the field into the object's row, for an iterate object from the record at its position. Other fields in the
// row stay as they are, so bytes that were handed out before keep their value.
uint32_t Engine::fetchField(uint32_t table, uint32_t field, uint64_t object, Object*& fetched) {
    Object* source = objectOf(table, object);
    if (source == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
    if (field >= source->facts->table->fields.size()) return refused(MCAST6_DB_BAD_ARGUMENT);
    fetched = source;
    if (source->type == ObjType::read)
        return source->hasRead ? uint32_t{MCAST6_DB_OK} : refused(MCAST6_DB_BAD_OPERATION);
    if (source->type != ObjType::iterate || source->lastStepped == nullptr) return refused(MCAST6_DB_BAD_OPERATION);
    if (source->lastStepped->place != Iterator::Place::onRecord) return MCAST6_DB_NO_SUCH_RECORD;

    std::array<std::byte, schema::kMaxRecordSize> row;
    const uint32_t code = codeOf(source->lastStepped->scan->read(row.data()), MCAST6_DB_NO_SUCH_RECORD);
    if (code != MCAST6_DB_OK) return code;
    const schema::Field& place = source->facts->table->fields[field];
    std::memcpy(source->row.data() + place.offset, row.data() + place.offset, place.width);
    return MCAST6_DB_OK;
}

uint32_t Engine::getField(uint32_t table, uint32_t field, uint64_t object, void* value) noexcept {
    return guarded([&] {
        if (value == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
        Object* source = nullptr;
        const uint32_t code = fetchField(table, field, object, source);
        if (code != MCAST6_DB_OK) return code;
        const schema::Field& place = source->facts->table->fields[field];
        schema::copyField(value, source->row.data() + place.offset, place.width);
        return uint32_t{MCAST6_DB_OK};
    });
}

uint32_t Engine::getFieldBytes(uint32_t table, uint32_t field, uint64_t object, void** bytes,
                               uint32_t* length) noexcept {
    return guarded([&] {
        if (bytes == nullptr || length == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
        Object* source = nullptr;
        const uint32_t code = fetchField(table, field, object, source);
        if (code != MCAST6_DB_OK) return code;
        const schema::Field& place = source->facts->table->fields[field];
        *bytes = source->row.data() + place.offset;
        *length = place.width;
        return uint32_t{MCAST6_DB_OK};
    });
}

void Engine::detachObject(Object& object) {
    dropIterators(object, object.isCache);
    forget(object);
    const uint64_t handle = object.handle.load(std::memory_order_relaxed);
    if (!object.isCache) {
        if (objects_.withdraw(object, handle)) objects_.recycle(object);
        return;
    }
    for (Iterator* kept = object.iterators; kept != nullptr; kept = kept->nextOfOwner) {
        kept->scan.reset();
        kept->place = Iterator::Place::unset;
    }
}

void Engine::detach() noexcept {
    batches_.reset();
    objects_.forEachLive([this](Object& object) { detachObject(object); });
    store_.reset();
}

void Engine::attach(std::unique_ptr<store::Store> store) {
    batches_ = std::make_unique<Batches>(*store, front_);
    store_ = std::move(store);
    front_.store(store_.get(), std::memory_order_relaxed);
}

uint32_t Engine::begin() noexcept {
    return guarded([&] { return batches_->beginBatch(); });
}

uint32_t Engine::commit() noexcept {
    return guarded([&] { return batches_->commitBatch(); });
}

uint32_t Engine::abort() noexcept {
    return guarded([&] { return batches_->abortBatch(); });
}

uint64_t Engine::memory() const noexcept { return store_->memory(); }

}  // namespace mcast6::engine
