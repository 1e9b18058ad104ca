#include "tool/directory_chains.h"

#include <algorithm>
#include <array>

#include "vocabulary/field_types.h"

namespace tool {

using corvinex::inspect::Container;
using corvinex::inspect::Directory;
using corvinex::inspect::DirectoryRecord;
using corvinex::inspect::Entry;
using corvinex::inspect::FieldType;
using corvinex::inspect::FileContent;

namespace {

// The EXIF block of a JPEG is one segment: the module takes no directory longer than that.
constexpr std::uint64_t jpegEntriesAtMost = 65536;

/// Tags that give a directory of a JPEG no field, or not in every case: width, height and the
/// pointers to directories.
constexpr bool givesSureField(std::uint16_t tag) {
    constexpr std::array<std::uint16_t, 6> unsure{256, 257, 330, 34665, 34853, 40965};
    return std::ranges::find(unsure, tag) == unsure.end();
}

/// Whether the module surely takes the entry for a field.
bool isKept(const Entry& entry) {
    const std::uint16_t code = entry.typeCode();
    return givesSureField(entry.number()) && corvinex::isKnownTypeCode(code) &&
           corvinex::getElementWidth(code) != 0 && entry.type() != FieldType::Ifd &&
           entry.type() != FieldType::Ifd8 && entry.isInFile();
}

}  // namespace

bool isCutOff(const Directory& directory) noexcept {
    return directory.record().isCutOff;
}

DirectoryChains::DirectoryChains(const FileContent& file)
    : file_(file), facts_(file.directories.size()), states_(file.directories.size(), State::New) {
    indexOf_.reserve(facts_.size());
    for (const Directory& directory : file.directories) {
        indexOf_.emplace(directory.record().offset, static_cast<std::uint32_t>(indexOf_.size()));
    }
}

bool DirectoryChains::isJpeg() const noexcept {
    return file_.container == Container::Jpeg;
}

std::uint32_t DirectoryChains::first() const {
    // The main chain comes first, and what pointers lead to hangs on it.
    return file_.directories.empty() ? nowhere : behind(0);
}

std::uint32_t DirectoryChains::behind(std::uint32_t target) const {
    if (target == corvinex::inspect::refusedDirectory) {
        return unknown;
    }
    const bool isRead = target != Entry::noDirectory && file_.directories[target].toldCount() != 0;
    return isRead ? target : nowhere;
}

std::uint32_t DirectoryChains::next(std::uint32_t index) const {
    const Directory& directory = file_.directories[index];
    const DirectoryRecord& record = directory.record();
    const bool isTooLong =
        isJpeg() && record.entryCount * file_.layout.entrySize > jpegEntriesAtMost;
    if (isCutOff(directory) || isTooLong) {
        return nowhere;
    }
    if (record.next == 0) {
        return nowhere;
    }
    if (const auto found = indexOf_.find(record.next); found != indexOf_.end()) {
        return behind(found->second);
    }
    // Of an image the walk has looked there.
    return isImageKind(directory.kind()) && !record.isNextRefused ? nowhere : unknown;
}

const ChainFacts& DirectoryChains::from(std::uint32_t index) {
    if (states_[index] != State::Known) {
        follow(index);
    }
    return facts_[index];
}

void DirectoryChains::follow(std::uint32_t start) {
    std::vector<std::uint32_t> way;
    std::uint32_t at = start;
    while (isDirectory(at) && states_[at] == State::New) {
        states_[at] = State::OnTheWay;
        way.push_back(at);
        at = next(at);
    }
    ChainFacts facts;
    if (!isDirectory(at)) {
        facts.isKnown = at == nowhere;
    } else {
        facts = states_[at] == State::Known ? facts_[at] : takeCycle(way, at);
    }
    for (; !way.empty(); way.pop_back()) {
        ++facts.directories;
        facts.kept += isSurelyKept(way.back()) ? 1 : 0;
        facts_[way.back()] = facts;
        states_[way.back()] = State::Known;
    }
}

/// Takes the directories from the one that the way comes back to off its end.
ChainFacts DirectoryChains::takeCycle(std::vector<std::uint32_t>& way, std::uint32_t back) {
    const auto begin = std::ranges::find(way, back);
    ChainFacts facts;
    facts.comesBack = true;
    facts.directories = static_cast<std::uint32_t>(way.end() - begin);
    facts.isEndless =
        std::none_of(begin, way.end(), [this](std::uint32_t index) { return isSurelyKept(index); });
    for (auto repeated = begin; repeated != way.end(); ++repeated) {
        facts_[*repeated] = facts;
        states_[*repeated] = State::Known;
    }
    way.erase(begin, way.end());
    return facts;
}

bool DirectoryChains::isSurelyKept(std::uint32_t index) const {
    return !isJpeg() || std::ranges::any_of(file_.directories[index].entries(), isKept);
}

}  // namespace tool
