#include "tool/chain_summary.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace tool {
namespace {

using corvinex::inspect::Directory;
using corvinex::inspect::Entry;
namespace pointer_state = corvinex::inspect::pointer_state;

constexpr std::uint16_t subIfds = 330;

/// Visits every directory that the module would read, each of them once as part of a chain and once
/// as an EXIF directory.
class Visit {
  public:
    Visit(DirectoryChains& chains, std::uint64_t limit)
        : chains_(chains),
          limit_(limit == 0 ? std::numeric_limits<std::uint64_t>::max() : limit),
          isInChain_(chains.file().directories.size()),
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
        const Directory& directory = chains_.file().directories[index];
        if (hasPointersSeen_[index] || isCutOff(directory)) {
            return;
        }
        hasPointersSeen_[index] = true;
        summary_.isWhole = summary_.isWhole && !directory.record().isDepthRefused;
        for (const Entry& entry : directory.entries()) {
            if (entry.record().targets == pointer_state::totalRefused) {
                summary_.isWhole = false;
            }
            for (const std::uint32_t target : entry.targets()) {
                followTarget(chains_.behind(target), entry.number() == subIfds);
            }
        }
    }

    void followTarget(std::uint32_t directory, bool isChain) {
        if (DirectoryChains::isDirectory(directory)) {
            pending_.push_back({directory, isChain});
        }
        summary_.isWhole = summary_.isWhole && directory != DirectoryChains::unknown;
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
