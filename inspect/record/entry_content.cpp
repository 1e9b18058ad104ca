#include "inspect/record/entry_content.h"

#include "inspect/record/record_head.h"

namespace corvinex::inspect {

EntryContent readContent(const Entry& entry, ValueBudget& budget) {
    EntryContent content;
    if (entry.isInFile() && !budget.take(entry.byteCount())) {
        content.isBeyondBudget = true;
        return content;
    }
    content.value = readIfPossible([&] { return entry.value(); });
    if (content.value) {
        content.interpretation = interpret(entry, *content.value);
        content.text = readIfPossible([&] { return entry.text(*content.value); });
    }
    return content;
}

std::optional<std::vector<std::string>> targetPaths(const File& file, const Entry& entry,
                                                    ValueBudget& budget) {
    std::vector<std::string> paths;
    for (const std::uint32_t target : entry.targets()) {
        const bool leadsNowhere = target >= file.directories().size();
        paths.push_back(leadsNowhere ? std::string() : file.directories()[target].path());
        if (!budget.take(paths.back().size())) {
            return std::nullopt;
        }
    }
    return paths;
}

}  // namespace corvinex::inspect
