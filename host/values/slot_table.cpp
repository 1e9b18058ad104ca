#include "host/values/slot_table.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "host/values/element_memory.h"
#include "host/values/value_types.h"

namespace host {

namespace {

/// Never 0, so that every table has memory; raises std::length_error.
std::size_t bytesOf(std::size_t count) {
    constexpr std::size_t slotLength = sizeof(void*);
    constexpr std::size_t most = std::numeric_limits<std::ptrdiff_t>::max();
    if (count > most / slotLength) {
        refuseCount(count);
    }
    return std::max<std::size_t>(count, 1) * slotLength;
}

}  // namespace

SlotTable::SlotTable(std::size_t count)
    : slots_(static_cast<zxArray**>(ElementMemory::allocateZeroed(bytesOf(count))), {count}) {}

void SlotTable::Release::operator()(zxArray** slots) const noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        Value::destroy(static_cast<Value*>(slots[i]));
    }
    ElementMemory::release(slots, bytesOf(count));
}

}  // namespace host
