#include "tool/extract_command.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <fstream>
#include <functional>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "inspect/file_content.h"
#include "inspect/record/tag_selection.h"
#include "inspect/stored_value.h"
#include "inspect/thumbnail.h"
#include "tool/inspected_file.h"
#include "tool/tag_catalog.h"
#include "tool/text_display.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

using corvinex::inspect::Entry;
using corvinex::inspect::File;

struct Wish {
    std::string tag;  ///< empty for the thumbnail
    std::string file;
    std::optional<std::string> output;  ///< nothing: the standard output
};

Wish wishOf(const Arguments& arguments) {
    const std::vector<std::string>& operands = arguments.operands();
    const bool isThumbnail = arguments.isGiven("thumbnail");
    if (isThumbnail && operands.size() == 2) {
        throw UsageError("--thumbnail takes a FILE alone, without a TAG");
    }
    if (!isThumbnail && operands.size() == 1) {
        throw UsageError("TAG or FILE is missing");
    }
    Wish wish{.tag = isThumbnail ? "" : operands.front(), .file = operands.back(), .output = {}};
    if (!isThumbnail) {
        static_cast<void>(numbersAskedFor(wish.tag));
        wish.tag = fullName(wish.tag);
    }
    if (wish.file == InspectedFile::standardInput && isatty(STDIN_FILENO) != 0) {
        throw UsageError("the standard input is a terminal");
    }
    const auto output = arguments.text("output");
    if (!output && isatty(STDOUT_FILENO) != 0) {
        throw UsageError("the standard output is a terminal; --output FILE says where to write");
    }
    if (output && *output != "-") {
        wish.output = std::string(*output);
    }
    return wish;
}

/// Bytes that lie in the file.
struct Extract {
    std::uint64_t length = 0;
    /// Gives those from a place on. False when the file has become shorter.
    std::function<bool(std::uint64_t from, std::span<std::byte> target)> read;
};

/// The first entry of those asked for whose value lies in the file; without one the first at all.
const Entry* findEntry(const File& file, const std::string& tag) {
    const corvinex::inspect::TagSelection selection(std::span(&tag, 1));
    const Entry* first = nullptr;
    for (const auto& directory : file.directories()) {
        const std::string path = directory.path();
        for (const Entry& entry : directory.entries()) {
            if (selection.contains(entry, path)) {
                if (entry.isInFile() && entry.byteCount() != 0) {
                    return &entry;
                }
                first = first == nullptr ? &entry : first;
            }
        }
    }
    return first;
}

/// What can be told of a file that does not hold what was asked for.
class NotThere : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Where a block may stand that programs write into a JPEG, but not into its EXIF block.
std::string besideExif(const File& file, const std::string& tag) {
    static constexpr std::array<std::uint16_t, 4> blocks{700, 33723, 34377, 34675};
    const auto numbers = numbersMeantBy(tag);
    const bool isBlock = std::ranges::any_of(numbers, [](std::uint16_t number) {
        return std::ranges::find(blocks, number) != blocks.end();
    });
    return isBlock && file.container() == corvinex::inspect::Container::Jpeg
               ? "; beside the EXIF block of a JPEG it is not looked for"
               : "";
}

Extract valueOf(const File& file, const std::string& tag) {
    const Entry* const entry = findEntry(file, tag);
    if (entry == nullptr) {
        throw NotThere("the file has no tag " + tag + besideExif(file, tag));
    }
    const std::string name = std::string(entry->name().empty() ? "tag" : entry->name()) + " (" +
                             std::to_string(entry->number()) + ')';
    if (entry->byteCount() == 0) {
        throw NotThere(name + " has no value");
    }
    if (!entry->isInFile()) {
        throw NotThere("the value of " + name + " does not lie in the file");
    }
    return {.length = entry->byteCount(),
            .read = [&file, entry](std::uint64_t from, std::span<std::byte> target) {
                return corvinex::inspect::readValueBytes(file.content(), entry->record(), from,
                                                         target);
            }};
}

Extract thumbnailOf(const File& file) {
    const auto range = corvinex::inspect::findThumbnail(file);
    if (!range) {
        throw NotThere("the file has no thumbnail that is a JPEG and lies in the file");
    }
    return {
        .length = range->length,
        .read = [&file, start = range->position](std::uint64_t from, std::span<std::byte> target) {
            return file.content().source.read(start + from, target);
        }};
}

/// False when the output takes no more.
bool copyTo(std::ostream& out, const Extract& extract) {
    constexpr std::size_t blockSize = std::size_t{64} << 10U;
    std::vector<char> block(
        static_cast<std::size_t>(std::min<std::uint64_t>(extract.length, blockSize)));
    for (std::uint64_t from = 0; from < extract.length && out; from += block.size()) {
        block.resize(
            static_cast<std::size_t>(std::min<std::uint64_t>(extract.length - from, blockSize)));
        if (!extract.read(from, std::as_writable_bytes(std::span(block)))) {
            throw NotThere("the file has become shorter");
        }
        out.write(block.data(), static_cast<std::streamsize>(block.size()));
    }
    return static_cast<bool>(out.flush());
}

/// Whether the output is the file that is read, by whatever name.
bool isInput(const std::string& file, const std::string& output) {
    struct stat in {};
    struct stat out {};
    const int found =
        file == InspectedFile::standardInput ? fstat(STDIN_FILENO, &in) : stat(file.c_str(), &in);
    return found == 0 && stat(output.c_str(), &out) == 0 && in.st_dev == out.st_dev &&
           in.st_ino == out.st_ino;
}

ExitStatus write(const Extract& extract, const Wish& wish, std::ostream& out, std::ostream& err) {
    if (!wish.output) {
        return copyTo(out, extract) ? Success : OutputFailed;
    }
    if (isInput(wish.file, *wish.output)) {
        throw UsageError("the output is the file itself");
    }
    errno = 0;
    std::ofstream file(*wish.output, std::ios::binary | std::ios::trunc);
    if (!file || !copyTo(file, extract)) {
        const std::error_code error(errno, std::generic_category());
        err << "corvinex: cannot write to " << visibleText(*wish.output)
            << (error ? ": " + error.message() : std::string()) << '\n';
        return OutputFailed;
    }
    return Success;
}

}  // namespace

ExitStatus runExtract(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    const Wish wish = wishOf(arguments);
    const auto fail = [&](std::string_view reason) {
        err << "corvinex: " << visibleText(wish.file) << ": " << reason << '\n';
        return Failed;
    };
    const InspectedFile file(wish.file, {.headerOffset = arguments.whole("header-offset")});
    if (file.error()) {
        return fail(file.errorText());
    }
    if (!file.isImage()) {
        return fail("no TIFF, BigTIFF or JPEG file");
    }
    try {
        return write(wish.tag.empty() ? thumbnailOf(*file.file()) : valueOf(*file.file(), wish.tag),
                     wish, out, err);
    } catch (const NotThere& reason) {
        return fail(visibleText(std::string_view(reason.what())));
    } catch (const std::system_error& error) {
        return fail(error.code().message());
    }
}

}  // namespace tool
