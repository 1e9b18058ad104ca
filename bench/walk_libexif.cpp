// Reads every value of JPEG files' EXIF blocks through libexif's interface.
//   walk_libexif [--repeat N] FILE... | @LIST

#include <libexif/exif-data.h>
#include <libexif/exif-loader.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "bench/arguments.h"
#include "bench/totals.h"

namespace {

struct Release {
    void operator()(ExifLoader* loader) const { exif_loader_unref(loader); }
    void operator()(ExifData* data) const { exif_data_unref(data); }
};

double numberAt(const ExifEntry& entry, unsigned long element, ExifByteOrder order) {
    const unsigned char* const at = entry.data + element * exif_format_get_size(entry.format);
    switch (entry.format) {
        case EXIF_FORMAT_SHORT:
            return exif_get_short(at, order);
        case EXIF_FORMAT_SSHORT:
            return exif_get_sshort(at, order);
        case EXIF_FORMAT_LONG:
            return exif_get_long(at, order);
        case EXIF_FORMAT_SLONG:
            return exif_get_slong(at, order);
        case EXIF_FORMAT_RATIONAL: {
            const ExifRational quotient = exif_get_rational(at, order);
            return static_cast<double>(quotient.numerator) / quotient.denominator;
        }
        case EXIF_FORMAT_SRATIONAL: {
            const ExifSRational quotient = exif_get_srational(at, order);
            return static_cast<double>(quotient.numerator) / quotient.denominator;
        }
        default:
            return *at;
    }
}

struct Walk {
    ExifByteOrder order = EXIF_BYTE_ORDER_INTEL;
    bench::Totals totals;
    double sum = 0;
};

void readEntry(ExifEntry* entry, void* context) {
    Walk& walk = *static_cast<Walk*>(context);
    ++walk.totals.values;
    for (unsigned long i = 0; i < entry->components; ++i) {
        walk.sum += numberAt(*entry, i, walk.order);
    }
}

void readDirectory(ExifContent* directory, void* context) {
    if (directory->count != 0) {
        ++static_cast<Walk*>(context)->totals.directories;
        exif_content_foreach_entry(directory, readEntry, context);
    }
}

void readFile(const std::string& file, Walk& walk) {
    const std::unique_ptr<ExifLoader, Release> loader(exif_loader_new());
    exif_loader_write_file(loader.get(), file.c_str());
    const unsigned char* block = nullptr;
    unsigned size = 0;
    exif_loader_get_buf(loader.get(), &block, &size);
    const std::unique_ptr<ExifData, Release> data(exif_data_new());
    if (block == nullptr || !data) {
        static_cast<void>(
            std::fprintf(stderr, "walk_libexif: %s holds no EXIF block\n", file.c_str()));
        std::exit(1);
    }
    // The data are wanted as the file has them: with unknown tags, and without those that it lacks.
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_IGNORE_UNKNOWN_TAGS);
    exif_data_load_data(data.get(), block, size);
    walk.order = exif_data_get_byte_order(data.get());
    exif_data_foreach_content(data.get(), readDirectory, &walk);
    if (data->data != nullptr) {
        walk.totals.values += 2;  // the library keeps the thumbnail's position and length apart
    }
}

}  // namespace

int main(int count, char** words) {
    const bench::Arguments arguments(count, words);
    Walk walk;
    arguments.forEachFile([&walk](const std::string& file) { readFile(file, walk); });
    bench::keep(&walk.sum);
    walk.totals.print();
    return 0;
}
