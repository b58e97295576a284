#include "service/form.h"

#include <gtest/gtest.h>

#include <vector>

#include "service/utf8.h"

namespace speech::service {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

TEST(Form, FieldsAreFoundAsTheyWereSent) {
  const Form form("key=1&voice=English (America)+f2&text=a%26b%3Dc&empty=&bare&&=x&key=2");
  EXPECT_EQ(form.encodedValue("key"), "1");
  EXPECT_EQ(form.count("key"), 2);
  EXPECT_EQ(form.encodedValue("voice"), "English (America)+f2");
  EXPECT_EQ(form.encodedValue("text"), "a%26b%3Dc");
  EXPECT_EQ(form.encodedValue("empty"), "");
  EXPECT_EQ(form.encodedValue("bare"), "");
  EXPECT_EQ(form.encodedValue("ext"), std::nullopt);
  EXPECT_EQ(form.count("ext"), 0);
}

TEST(Form, OnlyTheFirstEqualsSignPartsNameAndValue) {
  EXPECT_EQ(Form("text=a=b").encodedValue("text"), "a=b");
}

TEST(Form, AnEmptyBodyHasNoFields) { EXPECT_EQ(Form("").count(""), 0); }

TEST(PercentDecode, EveryByteCanBeWritten) {
  EXPECT_EQ(percentDecode("%00%7f%C3%a9%fF", false), "\0\x7F\xC3\xA9\xFF"s);
}

TEST(PercentDecode, APlusIsASpaceInFormsOnly) {
  EXPECT_EQ(percentDecode("a+b%2Bc", true), "a b+c");
  EXPECT_EQ(percentDecode("a+b%2Bc", false), "a+b+c");
}

class MalformedEncoding : public testing::TestWithParam<const char*> {};

TEST_P(MalformedEncoding, IsRefused) { EXPECT_EQ(percentDecode(GetParam(), true), std::nullopt); }

INSTANTIATE_TEST_SUITE_P(Cases, MalformedEncoding,
                         testing::ValuesIn(std::vector<const char*>{"%", "abc%", "%4", "%4g", "%g4", "%%41",
                                                                    "% 41", "%+1"}));

struct TextCase {
  std::string_view bytes;
  std::optional<size_t> characters;
};

class Utf8Count : public testing::TestWithParam<TextCase> {};

TEST_P(Utf8Count, CountsCharactersOrRefuses) {
  EXPECT_EQ(countUtf8Characters(GetParam().bytes), GetParam().characters);
}

INSTANTIATE_TEST_SUITE_P(Cases, Utf8Count,
                         testing::ValuesIn(std::vector<TextCase>{
                             {"", 0},
                             {"abc", 3},
                             {"a\0b"sv, 3},
                             {"\u00E9\u20AC\U0001F600", 3},  // 2, 3 and 4 bytes
                             {"\uFFFF\U0010FFFF", 2},        // the last ones
                             {"\x80", std::nullopt},         // continuation alone
                             {"\xC3", std::nullopt},         // lead alone
                             {"\xE2\x82", std::nullopt},     // cut short
                             {"\xE2\x82"
                              "a",
                              std::nullopt},                          // interrupted
                             {"\xC0\x80", std::nullopt},              // over-long zero
                             {"\xE0\x9F\xBF", std::nullopt},          // over-long
                             {"\xED\xA0\x80", std::nullopt},          // surrogate
                             {"\xF4\x90\x80\x80", std::nullopt},      // above U+10FFFF
                             {"\xF8\x88\x80\x80\x80", std::nullopt},  // five bytes
                             {"\xFF", std::nullopt}}));

}  // namespace
}  // namespace speech::service
