#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tool/main_chain.h"

namespace tool {

/// What a person asked of a file: directories to skip and to keep at most (0 for no limit), and
/// where the TIFF header is when the tool is not to look for it.
struct ReadRequest {
    std::optional<std::uint64_t> headerOffset;
    std::uint64_t skip = 0;
    std::uint64_t limit = 0;
};

/// What is handed to the module so that the read finds the header and comes to an end.
struct ReadPlan {
    std::uint64_t headerOffset = 0;
    std::uint64_t limit = 0;  ///< never 0
    std::string warning;      ///< what the person should know of it; often empty
    MainChain chain;          ///< as far as the read goes, or further
};

/// Inspects a file and plans its read: finds the EXIF block of a JPEG, and where no limit was asked
/// for sets one that ends every chain of directories that comes back on itself and cuts no other,
/// unless the file tells more directories than it could hold. Raises InputRefused for a JPEG
/// without an EXIF block, for one whose chain no limit could end, and where every directory of the
/// chain is skipped.
ReadPlan planRead(const std::string& path, const ReadRequest& request);

}  // namespace tool
