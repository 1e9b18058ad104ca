#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include "host-kit/check.h"
#include "host/interface/platform.h"

// Files by UTF-16 name, and local time.

namespace hostkit {

namespace {

using boost::posix_time::ptime;
using fl::filesystem::file_status;
using namespace std::string_view_literals;

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { static_cast<void>(std::fclose(file)); }
};
using Stream = std::unique_ptr<std::FILE, CloseFile>;

Stream openFile(const std::u16string& path, const char* mode) {
    return Stream(fl::filesystem::fopen(path, mode));
}

std::u16string nameIn(const Context& context, std::u16string_view name) {
    return (context.folder / name).u16string();
}

/// Makes a file below the folder and returns its whole name.
std::u16string writeFile(const Context& context, std::u16string_view name,
                         std::string_view bytes = "bytes") {
    std::ofstream(context.folder / name, std::ios::binary) << bytes;
    return nameIn(context, name);
}

std::string contentOf(const Stream& stream) {
    std::string bytes(1000, '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), stream.get()));
    return bytes;
}

bool isInitial(const file_status& status) {
    return status.type == file_status::file_not_found && status.fileSize == 0 &&
           status.lastModification.is_not_a_date_time();
}

// A name with letters beyond ASCII and a character that takes a surrogate pair.
constexpr std::u16string_view oddName = u"m\u00FCll \u4E2D \U0001F600.tif";

bool existsTellsFiles(Context& context) {
    return fl::filesystem::exists(writeFile(context, u"there.tif")) &&
           fl::filesystem::exists(context.folder.u16string()) &&
           !fl::filesystem::exists(nameIn(context, u"missing.tif")) && !fl::filesystem::exists(u"");
}

bool existsReadsUtf16(Context& context) {
    return fl::filesystem::exists(writeFile(context, oddName));
}

bool existsRefusesImpossibleNames(Context& context) {
    const std::u16string there = writeFile(context, u"there.tif");
    const std::u16string loneSurrogate = nameIn(context, u"x") + char16_t{0xD83D};
    return !fl::filesystem::exists(there + u'\0') && !fl::filesystem::exists(loneSurrogate);
}

bool statusTellsSizes(Context& context) {
    const std::u16string file = writeFile(context, oddName, "seven b");
    const file_status status = fl::filesystem::status(file);
    return status.type == file_status::regular_file && status.fileSize == 7;
}

bool statusTellsLargeSizes(Context& context) {
    constexpr std::uint64_t size = (std::uint64_t{5} << 30) + 3;
    const std::u16string file = writeFile(context, u"large.tif", "");
    std::error_code refused;
    std::filesystem::resize_file(context.folder / "large.tif", size, refused);
    return refused || fl::filesystem::status(file).fileSize == size;
}

bool statusTellsFolders(Context& context) {
    return fl::filesystem::status(context.folder.u16string()).type == file_status::directory_file;
}

bool statusOfNothing(Context& context) {
    return isInitial(fl::filesystem::status(nameIn(context, u"missing.tif"))) &&
           isInitial(fl::filesystem::status(u""));
}

void setZone(const char* zone) {
    ::setenv("TZ", zone, 1);
    ::tzset();
}

ptime timeOf(int year, int month, int day, int hour, int minute, int second) {
    return ptime(boost::gregorian::date(static_cast<unsigned short>(year),
                                        static_cast<unsigned short>(month),
                                        static_cast<unsigned short>(day)),
                 boost::posix_time::time_duration(hour, minute, second));
}

bool statusTellsUtc(Context& context) {
    setZone("KIT-5:30");
    const std::u16string file = writeFile(context, u"dated.tif");
    // 2020-01-02 03:04:05 UTC.
    const std::array<std::timespec, 2> times{{{1577934245, 0}, {1577934245, 0}}};
    if (::utimensat(AT_FDCWD, (context.folder / "dated.tif").c_str(), times.data(), 0) != 0) {
        throw std::runtime_error("the kit cannot set the time of its file");
    }
    return fl::filesystem::status(file).lastModification == timeOf(2020, 1, 2, 3, 4, 5);
}

bool fopenReads(Context& context) {
    constexpr std::string_view bytes = "II*\0\r\n\x1A\xFF\n"sv;
    const std::u16string file = writeFile(context, oddName, bytes);
    const std::array modes{"r", "rb"};
    return std::ranges::all_of(modes, [&](const char* mode) {
        const Stream stream = openFile(file, mode);
        return stream != nullptr && std::ftell(stream.get()) == 0 && contentOf(stream) == bytes;
    });
}

bool fopenSeeks(Context& context) {
    const std::u16string file = writeFile(context, u"seek.tif", "0123456789");
    const Stream stream = openFile(file, "rb");
    return stream != nullptr && std::fseek(stream.get(), 7, SEEK_SET) == 0 &&
           contentOf(stream) == "789" && std::ftell(stream.get()) == 10;
}

bool fopenGivesNull(Context& context) {
    return openFile(nameIn(context, u"missing.tif"), "r") == nullptr &&
           openFile(nameIn(context, u"missing.tif"), "rb") == nullptr &&
           openFile(u"", "rb") == nullptr;
}

ptime localTime(const ptime& utc) {
    return fl::i18n::time_zone::from_utc(utc, fl::i18n::time_zone::timezone(""));
}

bool zonesAreApplied(Context& /*context*/) {
    setZone("KIT-5:30");
    return localTime(timeOf(2020, 1, 2, 3, 4, 5)) == timeOf(2020, 1, 2, 8, 34, 5) &&
           localTime(timeOf(1999, 12, 31, 23, 0, 0)) == timeOf(2000, 1, 1, 4, 30, 0) &&
           localTime(timeOf(1965, 1, 1, 0, 0, 0)) == timeOf(1965, 1, 1, 5, 30, 0);
}

bool summerTimeIsApplied(Context& /*context*/) {
    setZone("KIT-1KIS,M3.5.0,M10.5.0/3");
    return localTime(timeOf(2021, 1, 15, 12, 0, 0)) == timeOf(2021, 1, 15, 13, 0, 0) &&
           localTime(timeOf(2021, 7, 15, 12, 0, 0)) == timeOf(2021, 7, 15, 14, 0, 0);
}

bool specialTimesStay(Context& /*context*/) {
    return localTime(ptime(boost::posix_time::not_a_date_time)).is_not_a_date_time() &&
           localTime(ptime(boost::posix_time::pos_infin)).is_pos_infinity();
}

constexpr Check checks[] = {
    {"exists", "exists", "It must be true for what is there, and false for what is not.",
     existsTellsFiles},
    {"exists-utf16", "exists",
     "It must find a file whose name has letters beyond ASCII and a surrogate pair.",
     existsReadsUtf16},
    {"exists-impossible", "exists",
     "It must be false, and not raise, for names that no file can have.",
     existsRefusesImpossibleNames},
    {"status-size", "status", "It must tell a regular file as one, and its size in bytes.",
     statusTellsSizes},
    {"status-large", "status", "It must tell sizes beyond 4 GiB.", statusTellsLargeSizes},
    {"status-folder", "status", "It must tell a folder as one.", statusTellsFolders},
    {"status-missing", "status", "It must give the initial record where there is no file.",
     statusOfNothing},
    {"status-utc", "status", "The time of modification must be UTC.", statusTellsUtc},
    {"fopen-reads", "fopen",
     R"(Modes "r" and "rb" must open a file at its start and give its bytes unchanged.)",
     fopenReads},
    {"fopen-seeks", "fopen", "The stream must seek and tell its position.", fopenSeeks},
    {"fopen-missing", "fopen", "It must give null, and not raise, where there is no file.",
     fopenGivesNull},
    {"local-time", "from_utc", "It must give the wall-clock time of the local zone.",
     zonesAreApplied},
    {"summer-time", "from_utc", "It must know summer time.", summerTimeIsApplied},
    {"special-times", "from_utc", "Not-a-date-time and infinities must stay what they are.",
     specialTimesStay},
};

}  // namespace

std::span<const Check> fileChecks() {
    return checks;
}

}  // namespace hostkit
