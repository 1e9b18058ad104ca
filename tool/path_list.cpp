#include "tool/path_list.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iostream>
#include <system_error>

namespace tool {
namespace {

constexpr std::string_view standardInput = "-";

/// Endings of images, without their point.
constexpr std::array<std::string_view, 6> imageEndings{"tif", "tiff", "btf", "dng", "jpg", "jpeg"};

constexpr char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Whether a name ends in a point and this ending, in any case.
bool endsIn(std::string_view name, std::string_view ending) {
    if (ending.starts_with('.')) {
        ending.remove_prefix(1);
    }
    if (name.size() <= ending.size() || name[name.size() - ending.size() - 1] != '.') {
        return false;
    }
    return std::equal(ending.begin(), ending.end(),
                      name.end() - static_cast<std::ptrdiff_t>(ending.size()),
                      [](char left, char right) { return lowered(left) == lowered(right); });
}

template <class Endings>
bool endsInOneOf(std::string_view name, const Endings& endings) {
    return std::any_of(endings.begin(), endings.end(),
                       [name](std::string_view ending) { return endsIn(name, ending); });
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

std::optional<FileStamp> stampFrom(const struct stat& facts) {
    if (!S_ISREG(facts.st_mode)) {
        return std::nullopt;
    }
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return FileStamp{.size = static_cast<std::uint64_t>(facts.st_size),
                     .modified = facts.st_mtim.tv_sec * nanoseconds + facts.st_mtim.tv_nsec,
                     .inode = facts.st_ino};
}

}  // namespace

bool hasImageEnding(std::string_view name) {
    return endsInOneOf(name, imageEndings);
}

std::optional<FileStamp> stampOf(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 ? stampFrom(facts) : std::nullopt;
}

PathList::PathList(PathOptions options) : options_(std::move(options)) {
    if (!options_.namesFrom) {
        return;
    }
    if (*options_.namesFrom == standardInput) {
        list_ = &std::cin;
        return;
    }
    listFile_.open(*options_.namesFrom, std::ios::binary);
    if (!listFile_) {
        throw std::system_error(errno, std::generic_category(), *options_.namesFrom);
    }
    list_ = &listFile_;
}

std::optional<std::string> PathList::nextOperand() {
    if (operand_ < options_.operands.size()) {
        return options_.operands[operand_++];
    }
    std::string name;
    while (list_ != nullptr && std::getline(*list_, name, '\0')) {
        if (!name.empty()) {
            return name;
        }
    }
    return std::nullopt;
}

bool PathList::enter(const std::string& path) {
    struct stat facts {};
    if (stat(path.c_str(), &facts) != 0) {
        return false;
    }
    // A link may lead to a folder on the way to it.
    const bool isOnTheWay =
        std::any_of(folders_.begin(), folders_.end(), [&](const Folder& folder) {
            return folder.device == facts.st_dev && folder.inode == facts.st_ino;
        });
    if (isOnTheWay) {
        return true;
    }
    auto names = FolderNames::read(path);
    if (!names) {
        return false;
    }
    folders_.push_back({path, *std::move(names), facts.st_dev, facts.st_ino});
    return true;
}

bool PathList::promisesImage(std::string_view name) const {
    return hasImageEnding(name) || endsInOneOf(name, options_.extensions);
}

bool PathList::isWanted(std::string_view name) const {
    return options_.extensions.empty() || endsInOneOf(name, options_.extensions);
}

std::optional<ListedPath> PathList::nextInFolder() {
    while (!folders_.empty()) {
        Folder& folder = folders_.back();
        if (folder.names.isEmpty()) {
            folders_.pop_back();
            continue;
        }
        const FolderNames::Name name = folder.names.takeFirst();
        std::string path = joined(folder.path, name.text);
        if (name.isFile && !options_.wantsStamps) {
            if (isWanted(name.text)) {
                return ListedPath{std::move(path), promisesImage(name.text)};
            }
        } else if (auto found = look(name.text, std::move(path))) {
            return found;
        }
    }
    return std::nullopt;
}

std::optional<ListedPath> PathList::look(const std::string& name, std::string path) {
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0) {
        // What has gone meanwhile is not there to be read. Anything else, such as a folder that may
        // be listed but not entered, would hide files.
        return errno == ENOENT ? std::nullopt : std::optional(ListedPath{std::move(path), true});
    }
    const bool isLink = S_ISLNK(facts.st_mode);
    const bool leadsSomewhere = !isLink || stat(path.c_str(), &facts) == 0;
    if (leadsSomewhere && S_ISDIR(facts.st_mode)) {
        const bool isTold = (!isLink || options_.followsLinks) && !enter(path);
        return isTold ? std::optional(ListedPath{std::move(path), true}) : std::nullopt;
    }
    const bool isPromised = promisesImage(name);
    // A link that leads nowhere, and what is neither file nor folder, is told where an image should
    // be.
    if (!isWanted(name) || !((leadsSomewhere && S_ISREG(facts.st_mode)) || isPromised)) {
        return std::nullopt;
    }
    return ListedPath{std::move(path), isPromised,
                      leadsSomewhere ? stampFrom(facts) : std::nullopt};
}

bool PathList::mayWait() const {
    if (std::ranges::any_of(folders_,
                            [](const Folder& folder) { return !folder.names.isEmpty(); })) {
        return false;
    }
    if (operand_ < options_.operands.size()) {
        return options_.operands[operand_] == standardInput ||
               (operand_ != 0 && options_.operands[operand_ - 1] == standardInput);
    }
    if (list_ == &std::cin) {
        pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        return poll(&input, 1, 0) <= 0;
    }
    return list_ != nullptr && list_->rdbuf()->in_avail() <= 0;
}

std::optional<ListedPath> PathList::next() {
    for (;;) {
        if (auto found = nextInFolder()) {
            return found;
        }
        auto operand = nextOperand();
        if (!operand) {
            return std::nullopt;
        }
        struct stat facts {};
        const bool isThere = *operand != standardInput && stat(operand->c_str(), &facts) == 0;
        if (!isThere || !S_ISDIR(facts.st_mode) || !enter(*operand)) {
            return ListedPath{*std::move(operand), true, isThere ? stampFrom(facts) : std::nullopt};
        }
    }
}

}  // namespace tool
