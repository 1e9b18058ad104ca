#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "host-kit/check.h"

// Cell and struct arrays: what they own, and what a store that fails leaves behind.

namespace hostkit {

namespace api = matrix::detail::noninlined::zx_array_api;

namespace {

void setCell(const Owner& cell, std::size_t index, Owner value) {
    api::zxSetCell(cell.get(), index, value.get());
    static_cast<void>(value.release());
}

void setField(const Owner& array, std::size_t element, const char* name, Owner value) {
    api::zxSetField(array.get(), element, name, value.get());
    static_cast<void>(value.release());
}

bool newCellsAreEmpty(Context& context) {
    const Owner cell = makeCells(1, 3);
    bool areUnset = is(context.host, cell.get(), ValueClass::Cell, {1, 3});
    for (std::size_t i = 0; i < 3; ++i) {
        areUnset = areUnset && isUnset(context.host, context.host.cellAt(*cell, i));
    }
    return areUnset;
}

bool emptyCellArrays(Context& context) {
    return is(context.host, makeCells(1, 0).get(), ValueClass::Cell, {1, 0}) &&
           is(context.host, makeCells(0, 0).get(), ValueClass::Cell, {0, 0});
}

bool cellsHoldWhatIsStored(Context& context) {
    const Owner cell = makeCells(1, 3);
    setCell(cell, 0, makeNumber(1));
    setCell(cell, 2, makeNumber(3));
    return isNumber(context.host, context.host.cellAt(*cell, 0), 1) &&
           isUnset(context.host, context.host.cellAt(*cell, 1)) &&
           isNumber(context.host, context.host.cellAt(*cell, 2), 3);
}

bool cellsAreReplaced(Context& context) {
    const Owner cell = makeCells(1, 1);
    setCell(cell, 0, makeNumber(1));
    const std::size_t before = context.host.livingValues();
    setCell(cell, 0, makeNumber(2));
    return context.host.livingValues() == before &&
           isNumber(context.host, context.host.cellAt(*cell, 0), 2);
}

/// A store into target that the host has to refuse: whether it raises and leaves the value alone.
template <class Store>
bool leavesValueToCaller(const Context& context, Store&& store) {
    Owner value = makeNumber(7);
    const std::size_t before = context.host.livingValues();
    const bool isRaised = raises([&] { store(value.get()); });
    if (!isRaised || context.host.livingValues() != before) {
        // The store took the value or destroyed it, so it must be neither asked nor destroyed.
        static_cast<void>(value.release());
        return false;
    }
    return isNumber(context.host, value.get(), 7);
}

bool failingCellStoresLeaveTheValue(Context& context) {
    const Owner cell = makeCells(1, 2);
    const auto store = [&](zxArray* value) { api::zxSetCell(cell.get(), 2, value); };
    return leavesValueToCaller(context, store);
}

bool failingCellStoresLeaveTheCells(Context& context) {
    const Owner cell = makeCells(1, 1);
    setCell(cell, 0, makeNumber(1));
    // Never destroyed here: whose it is after the store is another check.
    zxArray* const value = makeNumber(7).release();
    static_cast<void>(raises([&] { api::zxSetCell(cell.get(), 1, value); }));
    return isNumber(context.host, context.host.cellAt(*cell, 0), 1);
}

bool fieldsStandInOrder(Context& context) {
    const Owner array = makeStructs(2, 1, {"b", "a", "UnknownTags"});
    return is(context.host, array.get(), ValueClass::Struct, {2, 1}) &&
           context.host.fieldNamesOf(*array) == std::vector<std::string>{"b", "a", "UnknownTags"};
}

bool newFieldsAreUnset(Context& context) {
    const Owner array = makeStructs(2, 1, {"a", "b"});
    for (const std::size_t element : {0U, 1U}) {
        for (const char* const name : {"a", "b"}) {
            if (!isUnset(context.host, context.host.fieldAt(*array, element, name))) {
                return false;
            }
        }
    }
    return true;
}

bool namesAreCopied(Context& context) {
    std::string name = "first";
    std::vector<const char*> names{name.c_str()};
    const std::array<std::size_t, 2> dims{1, 1};
    const Owner array(api::zxCreateStructArray(2, dims.data(), 1, names.data()));
    name = "other";
    names.front() = nullptr;
    return context.host.fieldNamesOf(*array) == std::vector<std::string>{"first"};
}

bool structsWithoutElements(Context& context) {
    const Owner array = makeStructs(0, 1, {"a", "b"});
    return is(context.host, array.get(), ValueClass::Struct, {0, 1}) &&
           context.host.fieldNamesOf(*array) == std::vector<std::string>{"a", "b"};
}

bool structsWithoutFields(Context& context) {
    const Owner array = makeStructs(3, 1, {});
    return is(context.host, array.get(), ValueClass::Struct, {3, 1}) &&
           context.host.fieldNamesOf(*array).empty();
}

bool fieldsHoldWhatIsStored(Context& context) {
    const Owner array = makeStructs(2, 1, {"a", "b"});
    setField(array, 0, "b", makeNumber(1));
    setField(array, 1, "a", makeNumber(2));
    return isUnset(context.host, context.host.fieldAt(*array, 0, "a")) &&
           isNumber(context.host, context.host.fieldAt(*array, 0, "b"), 1) &&
           isNumber(context.host, context.host.fieldAt(*array, 1, "a"), 2) &&
           isUnset(context.host, context.host.fieldAt(*array, 1, "b"));
}

bool fieldNamesAreWhole(Context& context) {
    const Owner array = makeStructs(1, 1, {"Tag", "TagName", "tag"});
    setField(array, 0, "tag", makeNumber(1));
    setField(array, 0, "TagName", makeNumber(2));
    return isUnset(context.host, context.host.fieldAt(*array, 0, "Tag")) &&
           isNumber(context.host, context.host.fieldAt(*array, 0, "tag"), 1) &&
           isNumber(context.host, context.host.fieldAt(*array, 0, "TagName"), 2);
}

bool fieldsAreReplaced(Context& context) {
    const Owner array = makeStructs(1, 1, {"a"});
    setField(array, 0, "a", makeNumber(1));
    const std::size_t before = context.host.livingValues();
    setField(array, 0, "a", makeNumber(2));
    return context.host.livingValues() == before &&
           isNumber(context.host, context.host.fieldAt(*array, 0, "a"), 2);
}

bool nullUnsetsFields(Context& context) {
    const Owner array = makeStructs(1, 1, {"a", "b"});
    const std::size_t before = context.host.livingValues();
    setField(array, 0, "a", makeNumber(1));
    setField(array, 0, "a", nullptr);
    setField(array, 0, "b", nullptr);
    return isUnset(context.host, context.host.fieldAt(*array, 0, "a")) &&
           isUnset(context.host, context.host.fieldAt(*array, 0, "b")) &&
           context.host.livingValues() == before;
}

bool failingFieldStoresLeaveTheValue(Context& context) {
    const Owner array = makeStructs(2, 1, {"a"});
    const auto atNoField = [&](zxArray* value) { api::zxSetField(array.get(), 0, "b", value); };
    const auto atNoElement = [&](zxArray* value) { api::zxSetField(array.get(), 2, "a", value); };
    return leavesValueToCaller(context, atNoField) && leavesValueToCaller(context, atNoElement);
}

bool failingFieldStoresLeaveTheFields(Context& context) {
    const Owner array = makeStructs(2, 1, {"a"});
    setField(array, 0, "a", makeNumber(1));
    setField(array, 1, "a", makeNumber(2));
    // Never destroyed here: whose they are after the stores is another check.
    zxArray* const first = makeNumber(7).release();
    zxArray* const second = makeNumber(8).release();
    static_cast<void>(raises([&] { api::zxSetField(array.get(), 0, "b", first); }));
    static_cast<void>(raises([&] { api::zxSetField(array.get(), 2, "a", second); }));
    return isNumber(context.host, context.host.fieldAt(*array, 0, "a"), 1) &&
           isNumber(context.host, context.host.fieldAt(*array, 1, "a"), 2);
}

bool containersOwnTheirContents(Context& context) {
    const std::size_t before = context.host.livingValues();
    Owner value = makeNumber(1);
    for (int depth = 0; depth < 50; ++depth) {
        Owner cell = makeCells(1, 2);
        setCell(cell, 1, std::move(value));
        Owner array = makeStructs(2, 1, {"a", "b"});
        setField(array, 0, "b", makeDoubles(1, 3));
        setField(array, 1, "a", std::move(cell));
        value = std::move(array);
    }
    const bool areCounted = context.host.livingValues() == before + 151;
    value.reset();
    return areCounted && context.host.livingValues() == before;
}

bool manyFieldsAreFound(Context& context) {
    constexpr std::size_t count = 3000;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back("Field" + std::to_string(i));
    }
    std::vector<const char*> list(count);
    std::ranges::transform(names, list.begin(), &std::string::c_str);
    const Owner array = makeStructs(1, 1, list);
    for (std::size_t i = 0; i < count; ++i) {
        setField(array, 0, list[i], makeNumber(static_cast<double>(i)));
    }
    bool areThere = context.host.fieldNamesOf(*array) == names;
    for (std::size_t i = 0; i < count; i += 100) {
        areThere = areThere && isNumber(context.host, context.host.fieldAt(*array, 0, names[i]),
                                        static_cast<double>(i));
    }
    return areThere;
}

bool manyElementsAreFound(Context& context) {
    constexpr std::size_t count = 50000;
    const Owner array = makeStructs(count, 1, {"a", "b"});
    for (std::size_t i = 0; i < count; ++i) {
        setField(array, i, "b", makeNumber(static_cast<double>(i)));
    }
    bool areThere = true;
    for (std::size_t i = 0; i < count; i += 999) {
        areThere =
            areThere &&
            isNumber(context.host, context.host.fieldAt(*array, i, "b"), static_cast<double>(i)) &&
            isUnset(context.host, context.host.fieldAt(*array, i, "a"));
    }
    return areThere;
}

constexpr Check checks[] = {
    {"cells-empty", "zxCreateCellArray", "All cells of a new cell array must be empty.",
     newCellsAreEmpty},
    {"cells-zero-size", "zxCreateCellArray",
     "A size with a zero, such as 1 x 0, must be kept as it is.", emptyCellArrays},
    {"cell-stored", "zxSetCell",
     "A value must be found at the zero-based index that it was stored at.", cellsHoldWhatIsStored},
    {"cell-replaced", "zxSetCell", "What the cell held must be destroyed and replaced.",
     cellsAreReplaced},
    {"cell-failing-value", "zxSetCell",
     "A store beyond the last cell must raise and leave the value with its caller.",
     failingCellStoresLeaveTheValue},
    {"cell-failing-cells", "zxSetCell", "A store that raises must leave the cells as they were.",
     failingCellStoresLeaveTheCells},
    {"struct-order", "zxCreateStructArray",
     "Size and field names must be kept, the names in the order given.", fieldsStandInOrder},
    {"struct-unset", "zxCreateStructArray", "All fields of a new struct array must be unset.",
     newFieldsAreUnset},
    {"struct-names-copied", "zxCreateStructArray",
     "The names must be copied: the caller's are gone after the call.", namesAreCopied},
    {"struct-no-elements", "zxCreateStructArray",
     "A struct array without elements must keep its size and its field names.",
     structsWithoutElements},
    {"struct-no-fields", "zxCreateStructArray",
     "A struct array may have no fields, and keeps its size.", structsWithoutFields},
    {"field-stored", "zxSetField",
     "A value must be found in the element and the field that it was stored in.",
     fieldsHoldWhatIsStored},
    {"field-whole-names", "zxSetField", "Field names must be told apart whole and by case.",
     fieldNamesAreWhole},
    {"field-replaced", "zxSetField", "What the field held must be destroyed and replaced.",
     fieldsAreReplaced},
    {"field-null", "zxSetField", "Null must leave the field unset and destroy what it held.",
     nullUnsetsFields},
    {"field-failing-value", "zxSetField",
     "A store in a field or an element that is not there must raise and leave the value with its "
     "caller.",
     failingFieldStoresLeaveTheValue},
    {"field-failing-fields", "zxSetField",
     "A store that raises must leave the fields as they were.", failingFieldStoresLeaveTheFields},
    {"fields-many", "zxSetField", "Each of several thousand fields must be found.",
     manyFieldsAreFound},
    {"elements-many", "zxSetField", "Each of many elements must have fields of its own.",
     manyElementsAreFound},
    {"contents-owned", "destroyArray",
     "What a cell or struct array holds must be destroyed with it, however deep.",
     containersOwnTheirContents},
};

}  // namespace

std::span<const Check> containerChecks() {
    return checks;
}

}  // namespace hostkit
