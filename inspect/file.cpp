#include "corvinex/file.h"

#include <array>
#include <utility>

#include "inspect/file_content.h"
#include "inspect/rules/rules.h"

namespace corvinex::inspect {

namespace {

std::unique_ptr<FileContent> read(Source source, const Options& options) {
    auto content = std::make_unique<FileContent>(std::move(source));
    readHeader(*content, options);
    readDirectories(*content);
    return content;
}

Status statusOf(const FileContent& content, std::span<const Finding> findings) {
    if (!content.container) {
        return Status::NotAnImage;
    }
    Severity worst = Severity::Note;
    for (const Finding& finding : findings) {
        worst = std::max(worst, finding.severity);
    }
    if (worst != Severity::Note) {
        return worst == Severity::Error ? Status::Damaged : Status::Warnings;
    }
    return content.header.position ? Status::Ok : Status::NoMetadata;
}

}  // namespace

File::File(std::unique_ptr<FileContent> content) noexcept : content_(std::move(content)) {}
File::File(File&& other) noexcept = default;
File& File::operator=(File&& other) noexcept = default;
File::~File() = default;

File File::open(const std::filesystem::path& path, const Options& options) {
    return File(read(Source::open(path), options));
}

File File::fromDescriptor(int descriptor, const Options& options) {
    return File(
        read(Source::ofDescriptor(Descriptor(descriptor, Descriptor::Owner::Caller)), options));
}

File File::fromBytes(std::span<const std::byte> bytes, const Options& options) {
    return File(read(Source::ofMemory(bytes), options));
}

std::uint64_t File::size() const noexcept {
    return content_->source.size();
}

std::optional<std::int64_t> File::modified() const noexcept {
    return content_->source.modified();
}

std::optional<Container> File::container() const noexcept {
    return content_->container;
}

std::optional<ByteOrder> File::byteOrder() const noexcept {
    return content_->header.byteOrder;
}

std::optional<std::uint64_t> File::headerOffset() const noexcept {
    return content_->header.position;
}

std::span<const Directory> File::directories() const noexcept {
    return content_->directories;
}

std::span<const Entry> File::entries() const noexcept {
    return content_->entries;
}

std::span<const Finding> File::findings() const {
    if (!content_->findings) {
        content_->findings = findProblems(*content_);
    }
    return *content_->findings;
}

Status File::status() const {
    return statusOf(*content_, findings());
}

HeaderLocation findHeader(const std::filesystem::path& path) {
    FileContent content(Source::open(path));
    readHeader(content, {});
    return {content.container, content.header.position};
}

std::string_view containerName(Container container) noexcept {
    static constexpr std::array<std::string_view, 3> names{"JPEG", "TIFF", "BigTIFF"};
    return names.at(static_cast<std::size_t>(container));
}

std::string_view byteOrderName(ByteOrder order) noexcept {
    return order == ByteOrder::LittleEndian ? "little-endian" : "big-endian";
}

std::string_view statusName(Status status) noexcept {
    static constexpr std::array<std::string_view, 6> names{
        "ok", "warnings", "damaged", "no-metadata", "not-an-image", "unreadable"};
    return names.at(static_cast<std::size_t>(status));
}

}  // namespace corvinex::inspect
