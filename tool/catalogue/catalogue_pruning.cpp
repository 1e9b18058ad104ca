#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tool/catalogue/catalogue.h"

// What of a catalogue is taken out because it has gone.

namespace tool {
namespace {

/// Whether errno says that a name leads nowhere, rather than that it cannot be followed.
bool leadsNowhere() {
    return errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
}

bool isGone(const std::string& path, bool isUnreadable, bool isOfThisScan) {
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0) {
        return leadsNowhere();
    }
    if (isOfThisScan) {
        return false;
    }
    if (stat(path.c_str(), &facts) != 0) {
        return leadsNowhere();
    }
    // A folder has a row while it cannot be read.
    return !S_ISREG(facts.st_mode) &&
           !(S_ISDIR(facts.st_mode) && isUnreadable && access(path.c_str(), R_OK | X_OK) != 0);
}

bool isFolder(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

bool isBelow(std::string_view path, std::string_view root) {
    return path.starts_with(root) &&
           (path.size() == root.size() || root.ends_with('/') || path[root.size()] == '/');
}

}  // namespace

bool Catalogue::hasBelow(const std::string& root) {
    const std::lock_guard lock(mutex_);
    Statement list(database_, "SELECT path FROM files");
    while (list.next()) {
        if (isBelow(list.text(0), root)) {
            return true;
        }
    }
    return false;
}

Pruning Catalogue::removeGone(std::span<const std::string> roots, bool isForced) {
    const std::lock_guard lock(mutex_);
    struct RootFiles {
        std::uint64_t all = 0;
        std::vector<std::int64_t> gone;
    };
    std::vector<RootFiles> files(roots.size());
    Statement list(database_, "SELECT id, path, status, scan_id FROM files");
    while (list.next()) {
        const std::string path(list.text(1));
        std::optional<bool> gone;
        for (std::size_t root = 0; root < roots.size(); ++root) {
            if (!isBelow(path, roots[root])) {
                continue;
            }
            if (!gone) {
                gone = isGone(path, list.text(2) == unreadable, list.integer(3) == scan_);
            }
            ++files[root].all;
            if (*gone) {
                files[root].gone.push_back(list.integer(0));
            }
        }
    }
    Pruning pruning;
    std::vector<std::int64_t> gone;
    for (std::size_t root = 0; root < roots.size(); ++root) {
        const RootFiles& below = files[root];
        if (!isForced && below.all != 0 && below.gone.size() == below.all &&
            isFolder(roots[root])) {
            pruning.refused.push_back(roots[root]);
        } else {
            gone.insert(gone.end(), below.gone.begin(), below.gone.end());
        }
    }
    // One root may lie below another.
    std::ranges::sort(gone);
    // Not std::ranges::unique, which clang 14 cannot take from this library.
    gone.erase(std::unique(gone.begin(), gone.end()), gone.end());
    removeAll(gone);
    pruning.removed = gone.size();
    return pruning;
}

void Catalogue::removeAll(std::span<const std::int64_t> files) {
    while (!files.empty()) {
        const auto some = files.first(std::min<std::size_t>(files.size(), filesInTransaction));
        begin();
        std::ranges::for_each(some, [this](std::int64_t file) { removeRows(file); });
        database_.execute("COMMIT");
        hasCommitted_ = true;
        files = files.subspan(some.size());
    }
}

}  // namespace tool
