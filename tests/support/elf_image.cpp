#include "tests/support/elf_image.h"

#include <algorithm>
#include <array>
#include <bit>
#include <fstream>
#include <stdexcept>

namespace test {
namespace {

std::vector<char> contentsOf(const std::filesystem::path& path) {
    // At once: sanitized binaries are large.
    std::vector<char> bytes(std::filesystem::file_size(path));
    std::ifstream(path, std::ios::binary)
        .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

}  // namespace

ElfImage::ElfImage(const std::filesystem::path& path) : bytes_(contentsOf(path)) {}

template <class Record>
Record ElfImage::recordAt(std::size_t position) const {
    if (position + sizeof(Record) > bytes_.size()) {
        throw std::out_of_range("not inside the file");
    }
    std::array<char, sizeof(Record)> bytes;
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(position), sizeof(Record),
                bytes.begin());
    return std::bit_cast<Record>(bytes);
}

Elf64_Ehdr ElfImage::header() const {
    return recordAt<Elf64_Ehdr>(0);
}

Elf64_Shdr ElfImage::section(std::size_t index) const {
    return recordAt<Elf64_Shdr>(header().e_shoff + index * header().e_shentsize);
}

std::vector<Elf64_Phdr> ElfImage::segments() const {
    std::vector<Elf64_Phdr> segments;
    for (std::size_t i = 0; i < header().e_phnum; ++i) {
        segments.push_back(recordAt<Elf64_Phdr>(header().e_phoff + i * header().e_phentsize));
    }
    return segments;
}

DynamicSymbols ElfImage::symbols() const {
    DynamicSymbols symbols;
    for (std::size_t i = 0; i < header().e_shnum; ++i) {
        const Elf64_Shdr table = section(i);
        if (table.sh_type != SHT_DYNSYM) {
            continue;
        }
        const Elf64_Shdr strings = section(table.sh_link);
        // The first symbol of every table is the undefined one without a name.
        for (std::size_t at = table.sh_entsize; at < table.sh_size; at += table.sh_entsize) {
            const auto symbol = recordAt<Elf64_Sym>(table.sh_offset + at);
            const std::string name(&bytes_.at(strings.sh_offset + symbol.st_name));
            (symbol.st_shndx == SHN_UNDEF ? symbols.undefined : symbols.defined).insert(name);
        }
    }
    return symbols;
}

Elf64_Xword ElfImage::dynamicValue(Elf64_Sxword tag) const {
    for (const Elf64_Phdr& segment : segments()) {
        if (segment.p_type != PT_DYNAMIC) {
            continue;
        }
        for (std::size_t at = 0; at < segment.p_filesz; at += sizeof(Elf64_Dyn)) {
            const auto entry = recordAt<Elf64_Dyn>(segment.p_offset + at);
            if (entry.d_tag == tag) {
                return entry.d_un.d_val;
            }
        }
    }
    return 0;
}

std::vector<std::string> ElfImage::dynamicTexts(Elf64_Sxword tag) const {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < header().e_shnum; ++i) {
        const Elf64_Shdr dynamic = section(i);
        if (dynamic.sh_type != SHT_DYNAMIC) {
            continue;
        }
        const Elf64_Shdr strings = section(dynamic.sh_link);
        for (std::size_t at = 0; at < dynamic.sh_size; at += sizeof(Elf64_Dyn)) {
            const auto entry = recordAt<Elf64_Dyn>(dynamic.sh_offset + at);
            if (entry.d_tag == tag) {
                texts.emplace_back(&bytes_.at(strings.sh_offset + entry.d_un.d_val));
            }
        }
    }
    return texts;
}

}  // namespace test
