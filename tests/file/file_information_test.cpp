#include "file/file_information.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "file/file_format.h"
#include "tests/support/default_fields.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

namespace {

using corvinex::FileFormat;
using corvinex::formatLocalTime;
using corvinex::getDefaultFieldNames;
using corvinex::getFormatText;
using test::Bytes;
using test::Layout;
using test::Order;
using test::Result;

using Names = std::vector<std::string>;

Names namesOf(FileFormat format) {
    const auto names = getDefaultFieldNames(format);
    return {names.begin(), names.end()};
}

test::TiffBuilder onePage(Order order, Layout layout) {
    test::TiffBuilder builder(order, layout);
    builder.add({test::text(315, "somebody")});
    return builder;
}

/// Sets the machine's local zone while it lives.
class LocalZone {
  public:
    explicit LocalZone(const std::string& zone) {
        if (const char* const before = std::getenv("TZ")) {
            before_ = before;
        }
        ::setenv("TZ", zone.c_str(), 1);
        ::tzset();
    }
    ~LocalZone() {
        if (before_) {
            ::setenv("TZ", before_->c_str(), 1);
        } else {
            ::unsetenv("TZ");
        }
        ::tzset();
    }
    LocalZone(const LocalZone&) = delete;
    LocalZone& operator=(const LocalZone&) = delete;

  private:
    std::optional<std::string> before_;
};

/// Sets when a file was last changed, in seconds after 1970 UTC; false when the file system cannot
/// hold that time.
bool setModificationTime(const std::filesystem::path& path, std::time_t seconds,
                         long nanoseconds = 0) {
    const std::array<timespec, 2> times{timespec{seconds, nanoseconds},
                                        timespec{seconds, nanoseconds}};
    struct stat record {};
    return ::utimensat(AT_FDCWD, path.c_str(), times.data(), 0) == 0 &&
           ::stat(path.c_str(), &record) == 0 && record.st_mtim.tv_sec == seconds;
}

/// Where files may have any time: disk file systems hold a few centuries, memory holds all.
std::filesystem::path farTimesFolder() {
    const std::filesystem::path memory = "/dev/shm";
    return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
}

/// What a file that was changed then shows in a zone.
std::string modificationDate(std::time_t seconds, const std::string& zone, long nanoseconds = 0) {
    const test::TemporaryFile file(onePage(Order::Little, Layout::Classic).bytes());
    if (!setModificationTime(file.path(), seconds, nanoseconds)) {
        throw std::runtime_error("cannot set the modification time");
    }
    const LocalZone scope(zone);
    return test::readFile(file.name()).text("FileModDate");
}

std::string refusal(const boost::posix_time::ptime& time) {
    try {
        return "formatted as " + formatLocalTime(time);
    } catch (const std::out_of_range& error) {
        return error.what();
    }
}

constexpr std::time_t march5At140709 = 1709647629;  // 2024-03-05 14:07:09 UTC
constexpr std::time_t march5At2330 = 1709681400;    // 2024-03-05 23:30:00 UTC
constexpr std::time_t march1At0030 = 1709253000;    // 2024-03-01 00:30:00 UTC
constexpr std::time_t hour = 3600;
constexpr std::time_t day = 24 * hour;

}  // namespace

TEST(DefaultFields, OfAJpegAreTheTenOfEveryKind) {
    EXPECT_EQ(namesOf(FileFormat::JPEG), test::commonFields);
}

TEST(DefaultFields, OfATiffOrBigTiffAreThirtyFive) {
    EXPECT_EQ(test::allTiffFields().size(), 35U);
    EXPECT_EQ(namesOf(FileFormat::ClassicTIFF), test::allTiffFields());
    EXPECT_EQ(namesOf(FileFormat::BigTIFF), test::allTiffFields());
}

TEST(DefaultFields, OpenTheOutputInTheirOrder) {
    Names expected = test::allTiffFields();
    expected.push_back("Artist");
    for (const Layout layout : {Layout::Classic, Layout::Big}) {
        const Result result = test::read(onePage(Order::Big, layout).bytes());
        EXPECT_EQ(test::fieldsOf(result.output()), expected);
    }
    expected = test::commonFields;
    expected.push_back("Artist");
    const Result jpeg = test::readAsJpeg(onePage(Order::Big, Layout::Classic).bytes());
    EXPECT_EQ(test::fieldsOf(jpeg.output()), expected);
}

TEST(FormatText, IsJpgOrTifOrOther) {
    EXPECT_STREQ(getFormatText(FileFormat::JPEG), "jpg");
    EXPECT_STREQ(getFormatText(FileFormat::ClassicTIFF), "tif");
    EXPECT_STREQ(getFormatText(FileFormat::BigTIFF), "tif");
    EXPECT_STREQ(getFormatText(static_cast<FileFormat>(3)), "other");
    EXPECT_STREQ(getFormatText(static_cast<FileFormat>(0xFFFFFFFF)), "other");
}

TEST(FileFields, TellTheNameAsItWasPassedIn) {
    const test::TemporaryFile file(onePage(Order::Little, Layout::Classic).bytes());
    const std::u16string roundabout =
        file.path().parent_path().u16string() + u"/.//./" + file.path().filename().u16string();
    EXPECT_EQ(host::textOf(test::readFile(roundabout).value("Filename")), roundabout);
}

TEST(FileFields, TellTheSizeInBytes) {
    Bytes bytes = onePage(Order::Little, Layout::Classic).bytes();
    EXPECT_EQ(test::read(bytes).number("FileSize"), static_cast<double>(bytes.size()));
    bytes.resize(100001);
    EXPECT_EQ(test::read(bytes).number("FileSize"), 100001);
}

TEST(FileFields, TellTheFormatAndItsSignature) {
    const struct {
        Order order;
        Layout layout;
        std::vector<double> signature;
        const char* byteOrder;
    } kinds[] = {{Order::Little, Layout::Classic, {73, 73, 42, 0}, "little-endian"},
                 {Order::Big, Layout::Classic, {77, 77, 0, 42}, "big-endian"},
                 {Order::Little, Layout::Big, {73, 73, 43, 0}, "little-endian"},
                 {Order::Big, Layout::Big, {77, 77, 0, 43}, "big-endian"}};
    for (const auto& kind : kinds) {
        const Result result = test::read(onePage(kind.order, kind.layout).bytes());
        EXPECT_EQ(result.text("Format"), "tif");
        EXPECT_EQ(host::sizeOf(result.value("FormatSignature")), (host::Size{1, 4}));
        EXPECT_EQ(result.numbers("FormatSignature"), kind.signature);
        EXPECT_EQ(result.text("ByteOrder"), kind.byteOrder);
        EXPECT_EQ(host::classOf(result.value("ByteOrder")), host::ValueClass::Char);
    }
}

TEST(FileFields, OfAJpegHaveAnEmptySignatureAndNoByteOrder) {
    for (const Order order : {Order::Little, Order::Big}) {
        const Result result = test::readAsJpeg(onePage(order, Layout::Classic).bytes());
        EXPECT_EQ(result.text("Format"), "jpg");
        EXPECT_EQ(host::classOf(result.value("FormatSignature")), host::ValueClass::Double);
        EXPECT_EQ(host::sizeOf(result.value("FormatSignature")), (host::Size{0, 0}));
        EXPECT_FALSE(result.hasField("ByteOrder"));
        EXPECT_FALSE(result.hasField("Offset"));
    }
}

TEST(FileFields, AreTheSameInEveryDirectoryAndEachHasItsOwn) {
    test::TiffBuilder builder;
    for (const char* name : {"a", "b", "c"}) {
        builder.add({test::text(305, name)});
    }
    const Result result = test::read(builder.chain({0, 1, 2}).bytes());
    ASSERT_EQ(result.directories(), 3U);
    for (const char* field : {"Filename", "FileModDate", "Format", "ByteOrder"}) {
        for (std::size_t i = 1; i < 3; ++i) {
            EXPECT_EQ(result.text(field, i), result.text(field, 0)) << field;
            EXPECT_NE(&result.value(field, i), &result.value(field, i - 1)) << field;
        }
    }
    for (const char* field : {"FileSize", "FormatSignature"}) {
        for (std::size_t i = 1; i < 3; ++i) {
            EXPECT_EQ(result.numbers(field, i), result.numbers(field, 0)) << field;
            EXPECT_NE(&result.value(field, i), &result.value(field, i - 1)) << field;
        }
    }
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(result.hasField("FormatVersion"));
        EXPECT_FALSE(result.isSet("FormatVersion", i));
    }
}

TEST(FileFields, NeverSetAFormatVersion) {
    const Bytes classic = onePage(Order::Little, Layout::Classic).bytes();
    EXPECT_FALSE(test::read(classic).isSet("FormatVersion"));
    EXPECT_FALSE(test::read(onePage(Order::Big, Layout::Big).bytes()).isSet("FormatVersion"));
    EXPECT_FALSE(test::readAsJpeg(classic).isSet("FormatVersion"));
}

TEST(FileFields, OfNestedSetsAreNotThere) {
    test::TiffBuilder builder;
    builder.add({test::pointers(34665, test::LONG, {1})});
    builder.add({test::text(36867, "2024:03:05 14:07:09")});
    const Result result = test::read(builder.bytes());
    EXPECT_EQ(test::fieldsOf(result.value("DigitalCamera")), Names{"DateTimeOriginal"});
}

TEST(ModificationDate, IsDayMonthYearAndTime) {
    EXPECT_EQ(modificationDate(march5At140709, "UTC0"), "05-Mar-2024 14:07:09");
}

TEST(ModificationDate, IsTheLocalDateWhichMayBeTheNextOrThePreviousDay) {
    EXPECT_EQ(modificationDate(march5At2330, "UTC0"), "05-Mar-2024 23:30:00");
    EXPECT_EQ(modificationDate(march5At2330, "AAA-9"), "06-Mar-2024 08:30:00");
    EXPECT_EQ(modificationDate(march5At2330, "BBB5"), "05-Mar-2024 18:30:00");
    EXPECT_EQ(modificationDate(march1At0030, "BBB5"), "29-Feb-2024 19:30:00");
}

TEST(ModificationDate, FollowsTheDaylightSavingTimeOfTheDateItself) {
    const std::string zone = "CCC-1DDD,M3.5.0,M10.5.0/3";
    EXPECT_EQ(modificationDate(march5At140709, zone), "05-Mar-2024 15:07:09");
    EXPECT_EQ(modificationDate(march5At140709 + 120 * day, zone), "03-Jul-2024 16:07:09");
}

TEST(ModificationDate, DropsTheFractionOfTheSecond) {
    EXPECT_EQ(modificationDate(march5At140709, "UTC0", 999999999), "05-Mar-2024 14:07:09");
}

TEST(ModificationDate, NamesEveryMonth) {
    const char* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const LocalZone scope("UTC0");
    for (unsigned short i = 0; i < 12; ++i) {
        const boost::gregorian::date date(2023, static_cast<unsigned short>(i + 1), 9);
        EXPECT_EQ(formatLocalTime(boost::posix_time::ptime(date)),
                  std::string("09-") + months[i] + "-2023 00:00:00");
    }
}

TEST(ModificationDate, ReachesAsFarAsTheDateLibraryDoes) {
    const LocalZone scope("UTC0");
    using boost::posix_time::ptime;
    EXPECT_EQ(formatLocalTime(ptime(boost::gregorian::date(1400, 1, 1))), "01-Jan-1400 00:00:00");
    EXPECT_EQ(formatLocalTime(ptime(boost::gregorian::date(1969, 12, 31),
                                    boost::posix_time::time_duration(23, 59, 59))),
              "31-Dec-1969 23:59:59");
    EXPECT_EQ(formatLocalTime(ptime(boost::gregorian::date(9999, 12, 31),
                                    boost::posix_time::time_duration(23, 59, 59))),
              "31-Dec-9999 23:59:59");
}

TEST(ModificationDate, OfASpecialTimeIsTheDateLibrarysError) {
    using boost::posix_time::ptime;
    EXPECT_EQ(refusal(ptime(boost::posix_time::not_a_date_time)),
              "tm unable to handle not-a-date-time value");
    EXPECT_EQ(refusal(ptime(boost::posix_time::pos_infin)),
              "tm unable to handle +infinity date value");
    EXPECT_EQ(refusal(ptime(boost::posix_time::neg_infin)),
              "tm unable to handle -infinity date value");
}

TEST(ModificationDate, ThatTheDateLibraryRefusesEndsTheRequestWithoutAMessageID) {
    constexpr std::time_t year10000 = 253402300800;
    const test::TemporaryFile file(onePage(Order::Little, Layout::Classic).bytes(), ".tif",
                                   farTimesFolder());
    if (!setModificationTime(file.path(), year10000)) {
        GTEST_SKIP() << "no file system here holds such a time";
    }
    const Result result = test::readFile(file.name());
    ASSERT_TRUE(result.failed());
    EXPECT_FALSE(result.call().failure->report.has_value());
    EXPECT_FALSE(result.call().failure->message.empty());
}
