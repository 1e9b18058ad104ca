#pragma once

#include <cstdint>

namespace test {

/// Which allocation of a process is refused, and how many it has made. A file holds it, which test
/// and process share.
struct AllocationPlan {
    std::uint64_t refusedCall = 0;  ///< from 1 on; 0 for none
    std::uint64_t calls = 0;
};

inline constexpr const char* allocationPlanVariable = "CORVINEX_ALLOCATION_PLAN";

}  // namespace test
