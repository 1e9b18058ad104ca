// Reads every EXIF value of files through libexiv2's interface.
//   walk_exiv2 [--repeat N] FILE... | @LIST
// The library reads the first page of a TIFF with the directories that its pointers lead to, and
// all of a JPEG's EXIF block.

#include <bitset>
#include <cstdio>
#include <exception>
#include <exiv2/exiv2.hpp>
#include <string>

#include "bench/arguments.h"
#include "bench/totals.h"

namespace {

constexpr bool isPointer(unsigned tag) {
    return tag == 0x8769 || tag == 0x8825 || tag == 0xA005;
}

class Walk {
  public:
    void readFile(const std::string& file) {
        const auto image = Exiv2::ImageFactory::open(file);
        image->readMetadata();
        std::bitset<256> directories;
        for (const Exiv2::Exifdatum& datum : image->exifData()) {
            directories.set(static_cast<std::size_t>(datum.ifdId()));
            if (!isPointer(datum.tag())) {
                readDatum(datum);
            }
        }
        totals_.directories += directories.count();
    }

    void print() const {
        bench::keep(&sum_);
        totals_.print();
    }

  private:
    void readDatum(const Exiv2::Exifdatum& datum) {
        ++totals_.values;
        if (datum.typeId() == Exiv2::asciiString || datum.typeId() == Exiv2::comment) {
            sum_ += static_cast<double>(datum.toString().size());
            return;
        }
        const Exiv2::Value& value = datum.value();
        for (long i = 0; i < value.count(); ++i) {
            sum_ += static_cast<double>(value.toFloat(i));
        }
    }

    bench::Totals totals_;
    double sum_ = 0;
};

}  // namespace

int main(int count, char** words) {
    const bench::Arguments arguments(count, words);
    try {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Walk walk;
        arguments.forEachFile([&walk](const std::string& file) { walk.readFile(file); });
        walk.print();
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "walk_exiv2: %s\n", error.what()));
        return 1;
    }
    return 0;
}
