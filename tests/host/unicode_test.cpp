#include "host/platform/unicode.h"

#include <gtest/gtest.h>

TEST(Unicode, ValidUtf8AndUtf16ConvertBothWays) {
    const std::u16string text = u"a\u00E9\u20AC\U0001F600\uFEFF\uFFFD";
    const std::optional<std::string> bytes = host::utf8FromUtf16(text);
    EXPECT_EQ(bytes, "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBB\xBF\xEF\xBF\xBD");
    EXPECT_EQ(host::utf16FromUtf8(*bytes), text);
    EXPECT_EQ(host::displayText(text), *bytes);
}

TEST(Unicode, EmptyTextsStayEmpty) {
    EXPECT_EQ(host::utf16FromUtf8(""), u"");
    EXPECT_EQ(host::utf8FromUtf16(u""), "");
    EXPECT_EQ(host::displayText(u""), "");
}

TEST(Unicode, ALeadingByteOrderMarkIsKept) {
    EXPECT_EQ(host::utf16FromUtf8("\xEF\xBB\xBF"
                                  "a"),
              u"\uFEFFa");
}

TEST(Unicode, ZeroUnitsAreOrdinary) {
    const std::u16string_view text(u"a\0b", 3);
    EXPECT_EQ(host::utf8FromUtf16(text), std::string("a\0b", 3));
    EXPECT_EQ(host::utf16FromUtf8(std::string_view("a\0b", 3)), text);
}

TEST(Unicode, InvalidUtf8HasNoUtf16) {
    for (const char* bytes : {"\x80", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                              "\xE2\x82", "\xFF", "\xC3(", "ok\xF0\x9F\x98"}) {
        EXPECT_EQ(host::utf16FromUtf8(bytes), std::nullopt) << bytes;
    }
}

TEST(Unicode, LoneSurrogatesHaveNoUtf8ButADisplayText) {
    for (const std::u16string_view text :
         {std::u16string_view(u"a\xD800"), std::u16string_view(u"a\xDC00"),
          std::u16string_view(u"a\xDBFF\xDBFF\xDFFF")}) {
        EXPECT_EQ(host::utf8FromUtf16(text), std::nullopt);
    }
    EXPECT_EQ(host::displayText(u"a\xD800"
                                u"b\xDC00\xDC00"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(host::displayText(u"\xD83D\xDE00\xD83D"), "\xF0\x9F\x98\x80\xEF\xBF\xBD");
}

TEST(Unicode, LongTextsConvertWholeWhereverTheirPartsMeet) {
    // Characters of 3 bytes and pairs of 2 units, shifted so that some lie across any inner limit.
    for (std::size_t shift = 0; shift < 4; ++shift) {
        std::string bytes(shift, 'a');
        std::u16string units(shift, u'a');
        for (int i = 0; i < 400000; ++i) {
            bytes += "\xE2\x82\xAC\xF0\x9F\x98\x80";
            units += u"\u20AC\U0001F600";
        }
        EXPECT_TRUE(host::utf16FromUtf8(bytes) == units) << shift;
        EXPECT_TRUE(host::utf8FromUtf16(units) == bytes) << shift;
    }
}
