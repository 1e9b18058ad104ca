#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/entry.h"
#include "corvinex/file.h"
#include "inspect/directory_siblings.h"
#include "inspect/file_content.h"
#include "inspect/interpretation.h"
#include "inspect/reading/derived.h"
#include "inspect/reading/reading.h"
#include "inspect/reading/words.h"
#include "inspect/value_budget.h"
#include "vocabulary/registry.h"

// What entries, directories and files mean to a person.

namespace corvinex::inspect {

namespace {

/// Calls a function with what is read, when the registry knows the tag.
template <class Read>
auto readEntry(const FileContent& file, const Entry& entry, const Value& value, Read read)
    -> decltype(read(std::declval<const reading::Subject&>())) {
    const Directory& directory = entry.directory();
    const registry::TagFact* fact = registry::findTag(directory.kind(), entry.number());
    if (fact == nullptr) {
        return std::nullopt;
    }
    const reading::TextGuesses::Use use(file.guesses);
    const DirectorySiblings siblings(file, directory);
    return read(reading::Subject{.kind = directory.kind(),
                                 .number = entry.number(),
                                 .fact = *fact,
                                 .value = value,
                                 .siblings = siblings,
                                 .fileOrder = entry.fileOrder()});
}

/// The first directory for which a question is answered with yes, or null.
template <class Question>
std::optional<DirectorySiblings> findFirst(const FileContent& file, Question question) {
    for (const Directory& directory : file.directories) {
        const DirectorySiblings siblings(file, directory);
        if (question(directory, siblings)) {
            return siblings;
        }
    }
    return std::nullopt;
}

std::optional<DirectorySiblings> findFirst(const FileContent& file, DirectoryKind kind) {
    return findFirst(file, [&](const Directory& directory, const DirectorySiblings&) {
        return directory.kind() == kind;
    });
}

/// Directories can share their byte counts, so that a small file may tell of any number of them.
/// Only those are added up that come, from the first directory on, to what a record may give.
std::size_t countSummedDirectories(const FileContent& file) {
    if (!file.summedDirectories) {
        ValueBudget budget(file.source.size());
        const auto isWithin = [&budget](const Entry& entry) {
            const bool isByteCounts = entry.number() == 279 || entry.number() == 325;
            return !isByteCounts || !entry.isInFile() || budget.take(entry.byteCount());
        };
        const auto first =
            std::ranges::find_if_not(file.directories, [&isWithin](const Directory& directory) {
                return std::ranges::all_of(directory.entries(), isWithin);
            });
        file.summedDirectories = static_cast<std::size_t>(first - file.directories.begin());
    }
    return *file.summedDirectories;
}

}  // namespace

std::optional<std::string> Entry::text() const {
    const std::optional<Value> read = value();
    return read ? text(*read) : std::nullopt;
}

std::optional<std::string> Entry::text(const Value& value) const {
    return readEntry(*file_, *this, value, reading::readingOf);
}

std::optional<std::vector<std::string>> Entry::texts(const Value& value) const {
    Interpretation meaning = interpret(*this, value);
    const bool isText =
        meaning.form == Interpretation::Form::Text || meaning.form == Interpretation::Form::Texts;
    return isText ? std::optional(std::move(meaning.texts)) : std::nullopt;
}

std::optional<std::vector<std::string>> Entry::words(const Value& value) const {
    return readEntry(
        *file_, *this, value,
        [](const reading::Subject& subject) -> std::optional<std::vector<std::string>> {
            if (auto flags = reading::flagWords(subject)) {
                return std::vector{*std::move(flags)};
            }
            return reading::codeWords(subject);
        });
}

std::vector<DerivedFact> Directory::derived() const {
    if (!isImageKind(kind())) {
        return {};
    }
    const reading::TextGuesses::Use use(file_->guesses);
    const auto place = static_cast<std::size_t>(this - file_->directories.data());
    return reading::directoryFacts(DirectorySiblings(*file_, *this),
                                   place < countSummedDirectories(*file_));
}

std::vector<DerivedFact> File::derived() const {
    const FileContent& file = *content_;
    if (!file.container) {
        return {};
    }
    const reading::TextGuesses::Use use(file.guesses);
    const auto first = findFirst(file, DirectoryKind::Main);
    const auto image =
        findFirst(file, [](const Directory& directory, const DirectorySiblings& siblings) {
            return isImageKind(directory.kind()) && !reading::isReducedImage(siblings);
        });
    const auto exif = findFirst(file, DirectoryKind::Exif);
    const auto gps = findFirst(file, DirectoryKind::Gps);
    reading::FileParts parts{.pages = file.mainDirectories,
                             .first = first ? &*first : nullptr,
                             .image = image ? &*image : nullptr,
                             .exif = exif ? &*exif : nullptr,
                             .gps = gps ? &*gps : nullptr,
                             .frame = std::nullopt};
    if (file.segments && file.segments->frame) {
        parts.frame = {file.segments->frame->width, file.segments->frame->height};
    }
    return reading::fileFacts(parts);
}

}  // namespace corvinex::inspect
