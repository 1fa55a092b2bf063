// Compares a table's field map and keys with the layout that the platform publishes, at compile time. The two are
// written independently, so each checks the other. This finds what contiguous offsets cannot show: two fields of the
// same width that are swapped.
#pragma once

#include <string_view>

#include "frame/keys.h"
#include "mcast6_platform/layout.h"

namespace mcast6 {

// Declared but never defined: a difference is a compile error at the call whose name describes it.
void record_size_differs_from_the_published_layout();
void row_lacks_a_published_field();
void row_has_a_field_that_is_not_published();
void field_name_differs_from_the_published_layout();
void field_place_differs_from_the_published_layout();
void field_kind_differs_from_the_published_layout();

template <class Field>
constexpr void compareField(const layout::Field& published) {
    if (std::string_view(published.name) != Field::name()) field_name_differs_from_the_published_layout();
    if (published.offset != Field::offset || published.width != Field::width) {
        field_place_differs_from_the_published_layout();
    }
    if (published.isScalar != Field::isScalar) field_kind_differs_from_the_published_layout();
}

// Compares the row with the published one field by field; reserved bytes are not published.
template <class Row>
consteval bool agrees(uint16_t publishedSize, const auto& publishedFields) {
    if (publishedSize != Row::size) record_size_differs_from_the_published_layout();
    size_t next = 0;
    Row::forEach([&]<class Field>(const Field*) {
        if constexpr (!Field::isReserved) {
            if (next == std::size(publishedFields)) row_has_a_field_that_is_not_published();
            compareField<Field>(publishedFields[next++]);
        }
    });
    if (next != std::size(publishedFields)) row_lacks_a_published_field();
    return true;
}

// Whether the key is one of the published ones.
template <class Key>
consteval bool isPublished(const auto& publishedKeys) {
    for (const layout::Key& published : publishedKeys) {
        if (Key::agrees(published)) return true;
    }
    return false;
}

// Whether a published key has this key word. For keys made of separate values, of which only the length is known.
consteval bool isPublishedWord(const auto& publishedKeys, uint32_t word) {
    for (const layout::Key& published : publishedKeys) {
        if (published.word == word) return true;
    }
    return false;
}

}  // namespace mcast6
