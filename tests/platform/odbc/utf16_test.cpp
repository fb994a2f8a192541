// UTF-8 and UTF-16, there and back.
#include "platform/odbc/utf16.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace kestrova::odbc {
namespace {

TEST(Utf16, HoldsEveryLetter) {
  const std::string utf8 = "Aä€🌲\u007F\u0080\u07FF\u0800\uFFFD\U0010FFFF";
  const std::u16string utf16 = u"Aä€🌲\u007F\u0080\u07FF\u0800\uFFFD\U0010FFFF";
  EXPECT_EQ(to_utf16(utf8), utf16);
  EXPECT_EQ(to_utf8(utf16), utf8);
  EXPECT_EQ(to_utf16(""), u"");
  EXPECT_EQ(to_utf8(u""), "");
}

TEST(Utf16, HalfAPairComesThroughBothWays) {
  for (const std::u16string& half :
       {std::u16string{0xD83C}, std::u16string{0xDF32}, std::u16string{0xD83C, u'x'},
        std::u16string{0xDF32, 0xD83C}}) {
    EXPECT_EQ(to_utf16(to_utf8(half)), half);
  }
}

TEST(Utf16, BytesThatAreNoUtf8AreRefused) {
  for (const char* bytes : {"a\xFF", "a\xC3", "a\xC3(", "a\x80", "a\xC0\x80", "a\xE0\x80\x80",
                            "a\xF0\x80\x80\x80", "a\xF4\x90\x80\x80", "a\xF5\x80\x80\x80"}) {
    try {
      to_utf16(bytes);
      ADD_FAILURE() << bytes;
    } catch (const DatabaseError& error) {
      EXPECT_STREQ(error.what(), "The text is no UTF-8 at byte 2.");
      EXPECT_EQ(error.sqlstate(), "22021");
    }
  }
}

}  // namespace
}  // namespace kestrova::odbc
