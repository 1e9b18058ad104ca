#include "tool/chain_summary.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace tool {
namespace {

using corvinex::inspect::Directory;
using corvinex::inspect::Entry;
using corvinex::inspect::Value;

constexpr std::uint16_t subIfds = 330;
constexpr std::uint16_t exifPointer = 34665;

/// The module takes pointers at a stride of 4 bytes from the value as it lies in memory, whatever
/// its type, with zeros behind its end.
std::uint32_t pointerIn(const Value& value, std::uint64_t index) {
    const std::span<const std::byte> bytes = value.bytes();
    std::uint32_t pointer = 0;
    if (const std::uint64_t at = index * sizeof(pointer); at < bytes.size()) {
        const auto rest = bytes.subspan(static_cast<std::size_t>(at));
        std::memcpy(&pointer, rest.data(), std::min(sizeof(pointer), rest.size()));
    }
    return pointer;
}

/// Visits every directory that the module would read, each of them once as part of a chain and once
/// as an EXIF directory.
class Visit {
  public:
    Visit(DirectoryChains& chains, std::uint64_t limit)
        : chains_(chains),
          limit_(limit == 0 ? std::numeric_limits<std::uint64_t>::max() : limit),
          isInChain_(chains.file().directories().size()),
          hasPointersSeen_(isInChain_.size()) {}

    ChainSummary run(std::uint32_t start) {
        visitChain(start);
        summary_.mainDirectories = summary_.longest;
        summary_.mainComesBack = summary_.anyComesBack;
        summary_.isMainKnown = chains_.from(start).isKnown;
        while (!pending_.empty()) {
            const Target target = pending_.back();
            pending_.pop_back();
            if (target.isChain) {
                visitChain(target.directory);
            } else {
                followPointers(target.directory);
            }
        }
        summary_.mayNeverEnd = summary_.mayNeverEnd || (chains_.isJpeg() && !summary_.isWhole);
        return summary_;
    }

  private:
    struct Target {
        std::uint32_t directory;
        bool isChain;
    };

    void visitChain(std::uint32_t start) {
        const ChainFacts& facts = chains_.from(start);
        summary_.longest = std::max<std::uint64_t>(summary_.longest, facts.directories);
        summary_.anyComesBack = summary_.anyComesBack || facts.comesBack;
        summary_.isWhole = summary_.isWhole && facts.isKnown;
        summary_.mayNeverEnd = summary_.mayNeverEnd || (facts.isEndless && facts.kept < limit_);
        for (std::uint32_t at = start; DirectoryChains::isDirectory(at) && !isInChain_[at];
             at = chains_.next(at)) {
            isInChain_[at] = true;
            followPointers(at);
        }
    }

    void followPointers(std::uint32_t index) {
        const Directory& directory = chains_.file().directories()[index];
        if (hasPointersSeen_[index] || isCutOff(directory)) {
            return;
        }
        hasPointersSeen_[index] = true;
        for (const Entry& entry : directory.entries()) {
            if (entry.number() == subIfds || entry.number() == exifPointer) {
                followPointer(entry);
            }
        }
    }

    void followPointer(const Entry& entry) {
        if (!isRead(entry) || entry.count() == 0) {
            return;
        }
        const std::optional<Value> value = entry.targets().empty() ? std::nullopt : entry.value();
        if (!value) {
            summary_.isWhole = false;
            return;
        }
        for (std::uint64_t i = 0; i < entry.count(); ++i) {
            const std::uint32_t directory = chains_.at(pointerIn(*value, i));
            if (DirectoryChains::isDirectory(directory)) {
                pending_.push_back({directory, entry.number() == subIfds});
            }
            summary_.isWhole = summary_.isWhole && directory != DirectoryChains::unknown;
        }
    }

    DirectoryChains& chains_;
    std::uint64_t limit_;
    ChainSummary summary_;
    std::vector<bool> isInChain_;
    std::vector<bool> hasPointersSeen_;
    std::vector<Target> pending_;
};

}  // namespace

ChainSummary summarizeChains(DirectoryChains& chains, std::uint32_t start, std::uint64_t limit) {
    return Visit(chains, limit).run(start);
}

}  // namespace tool
