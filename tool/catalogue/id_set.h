#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace tool {

/// Numbers of rows. Takes about a bit for each, as rows are numbered without large gaps.
class IdSet {
  public:
    /// False when the number was there.
    bool insert(std::int64_t id) {
        auto bit = blocks_[blockOf(id)][placeOf(id)];
        const bool isNew = !bit;
        bit = true;
        return isNew;
    }
    void erase(std::int64_t id) { blocks_[blockOf(id)].reset(placeOf(id)); }
    [[nodiscard]] bool contains(std::int64_t id) const {
        const auto block = blocks_.find(blockOf(id));
        return block != blocks_.end() && block->second[placeOf(id)];
    }

  private:
    static constexpr std::uint64_t blockSize = 4096;

    static std::uint64_t blockOf(std::int64_t id) noexcept {
        return static_cast<std::uint64_t>(id) / blockSize;
    }
    static std::size_t placeOf(std::int64_t id) noexcept {
        return static_cast<std::size_t>(static_cast<std::uint64_t>(id) % blockSize);
    }

    std::unordered_map<std::uint64_t, std::bitset<blockSize>> blocks_;
};

}  // namespace tool
