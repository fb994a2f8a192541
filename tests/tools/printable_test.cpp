#include "tools/printable.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

namespace kestrova::tool {
namespace {

TEST(Printable, LeavesTextAsItIs) {
  for (const std::string text :
       {"", "Sägewerk Huber & Söhne", "a\tb\nc\r\nd", "\u0141\u00F3d\u017A \u2013 \U0001F332",
        "e\u0301", "\u00A0\u00AD", " \u00E4"}) {
    EXPECT_EQ(printable(text), text);
  }
}

TEST(Printable, ShowsEveryControlCharacterOnce) {
  for (int c = 0; c < 0x20; ++c) {
    if (c == '\t' || c == '\n') continue;
    EXPECT_EQ(printable(std::string("a") + static_cast<char>(c) + "b"), "a\uFFFDb") << c;
  }
  EXPECT_EQ(printable("\x7F"), "\uFFFD");
  for (int c = 0x80; c < 0xA0; ++c) {
    EXPECT_EQ(printable(std::string("\xC2") + static_cast<char>(c)), "\uFFFD") << c;
  }
}

TEST(Printable, ShowsMarksOfTheWritingDirection) {
  for (const std::string mark :
       {"\u061C", "\u200E", "\u200F", "\u2028", "\u2029", "\u202A", "\u202B", "\u202C", "\u202D",
        "\u202E", "\u2066", "\u2067", "\u2068", "\u2069"}) {
    EXPECT_EQ(printable("x" + mark), "x\uFFFD");
  }
  for (const std::string neighbour :
       {"\u061B", "\u061D", "\u200D", "\u2010", "\u2027", "\u202F", "\u2065", "\u206A"}) {
    EXPECT_EQ(printable(neighbour), neighbour);
  }
}

// A terminal that is not set to UTF-8 would take the byte 9B for the begin of a control sequence.
TEST(Printable, ShowsBytesThatAreNoUtf8) {
  EXPECT_EQ(printable("a\x9B"
                      "31mb"),
            "a\uFFFD"
            "31mb");
  EXPECT_EQ(printable("\xC3"), "\uFFFD");
  EXPECT_EQ(printable("\xE2\x80"), "\uFFFD\uFFFD");
  EXPECT_EQ(printable("\xC0\x9B"), "\uFFFD\uFFFD") << "an overlong form";
}

TEST(PrintableJson, KeepsWhatAProgramReads) {
  const std::string name = "Eder\x1B[31m\x7F\u009B\u202E \u00E4\"\\";
  const std::string document =
      printable_json(nlohmann::ordered_json{{"name", name}}.dump(2, ' ', false));
  EXPECT_EQ(document, "{\n  \"name\": \"Eder\\u001b[31m\\u007f\\u009b\\u202e \u00E4\\\"\\\\\"\n}");
  EXPECT_EQ(nlohmann::json::parse(document).at("name"), name);
}

TEST(PrintableStreamTest, FiltersWhatIsWrittenWhileItLives) {
  std::stringbuf written;
  std::ostream out(&written);
  {
    const PrintableStream filter(out);
    out << "a\x1B" << 'b' << '\r' << 7 << "\u202E" << std::flush;
    std::ostream unfiltered(PrintableStream::unfiltered(out));
    unfiltered << '\r';
  }
  out << '\x1B';
  EXPECT_EQ(written.str(), "a\uFFFDb\uFFFD7\uFFFD\r\x1B");
  EXPECT_EQ(PrintableStream::unfiltered(out), &written);
}

TEST(PrintableStreamTest, KeepsACharacterThatIsWrittenInPieces) {
  std::stringbuf written;
  std::ostream out(&written);
  {
    const PrintableStream filter(out);
    for (const char c : std::string("\r\n\r\u00E4\u2013\U0001F332\u009B")) out << c << std::flush;
    EXPECT_EQ(written.str(), "\r\n\uFFFD\u00E4\u2013\U0001F332\uFFFD");
    out << "\xE2\x80";
  }
  EXPECT_EQ(written.str(), "\r\n\uFFFD\u00E4\u2013\U0001F332\uFFFD\uFFFD\uFFFD") << "it has no end";
}

TEST(PrintableStreamTest, TellsThatNothingCanBeWritten) {
  struct Full : std::streambuf {};
  Full full;
  std::ostream out(&full);
  const PrintableStream filter(out);
  out << "a";
  EXPECT_FALSE(out);
}

}  // namespace
}  // namespace kestrova::tool
