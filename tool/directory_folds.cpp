#include "tool/directory_folds.h"

#include <algorithm>
#include <optional>
#include <span>

#include "inspect/record/record_head.h"
#include "tool/file_phrase.h"

namespace tool {
namespace {

using corvinex::inspect::Directory;
using corvinex::inspect::Entry;
using corvinex::inspect::File;
using corvinex::inspect::readIfPossible;
using corvinex::inspect::Value;
using corvinex::inspect::ValueBudget;

bool haveSameTags(const Directory& left, const Directory& right) {
    return left.kind() == right.kind() &&
           std::ranges::equal(left.entries(), right.entries(), {}, &Entry::number, &Entry::number);
}

bool haveSameValue(const Entry& left, const Entry& right, ValueBudget& budget) {
    if (left.typeCode() != right.typeCode() || left.count() != right.count()) {
        return false;
    }
    if (left.record().field == right.record().field) {
        return true;  // the same number, or the same bytes of the file
    }
    if (!left.offset() || !right.offset() || !budget.take(left.byteCount())) {
        return false;
    }
    const auto read = [](const Entry& entry) {
        return readIfPossible([&] { return entry.value(); });
    };
    const std::optional<Value> leftValue = read(left);
    const std::optional<Value> rightValue = leftValue ? read(right) : std::nullopt;
    return rightValue && std::ranges::equal(leftValue->bytes(), rightValue->bytes());
}

}  // namespace

DirectoryFold foldAt(const File& file, std::size_t first, ValueBudget& budget) {
    const std::span<const Directory> all = file.directories();
    const Directory& model = all[first];
    const std::span<const Entry> entries = model.entries();
    const std::string phrase = phraseOf(file, model, nullptr);
    std::vector<bool> differs(entries.size());
    DirectoryFold fold{.first = first, .last = first, .differences = {}};
    for (std::size_t next = first + 1; next < all.size(); ++next) {
        const Directory& directory = all[next];
        if (!haveSameTags(model, directory) || phraseOf(file, directory, nullptr) != phrase) {
            break;
        }
        for (std::size_t i = 0; i < entries.size(); ++i) {
            // A tag that is known to differ needs no second look.
            differs[i] = differs[i] || !haveSameValue(entries[i], directory.entries()[i], budget);
        }
        fold.last = next;
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (differs[i]) {
            const std::string_view name = entries[i].name();
            fold.differences.push_back(name.empty() ? std::to_string(entries[i].number())
                                                    : std::string(name));
        }
    }
    return fold;
}

}  // namespace tool
