#include "service/form.h"

#include <gtest/gtest.h>

#include "service/utf8.h"

namespace speech::service {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

TEST(Form, FieldsAreFoundAsTheyWereSent) {
  const Form form("key=1&voice=English (America)+f2&text=a%26b%3Dc=d&empty=&bare&&=x&key=2");
  EXPECT_EQ(form.encodedValue("key"), "1");
  EXPECT_EQ(form.count("key"), 2);
  EXPECT_EQ(form.encodedValue("voice"), "English (America)+f2");
  EXPECT_EQ(form.encodedValue("text"), "a%26b%3Dc=d") << "only the first equals sign parts name and value";
  EXPECT_EQ(form.encodedValue("empty"), "");
  EXPECT_EQ(form.encodedValue("bare"), "");
  EXPECT_EQ(form.encodedValue("ext"), std::nullopt);
  EXPECT_EQ(form.count("ext"), 0);
  EXPECT_EQ(Form("").count(""), 0);
}

TEST(PercentDecode, EveryByteCanBeWrittenAndAPlusIsASpaceInFormsOnly) {
  EXPECT_EQ(percentDecode("%00%7f%C3%a9%fF", false), "\0\x7F\xC3\xA9\xFF"s);
  EXPECT_EQ(percentDecode("a+b%2Bc", true), "a b+c");
  EXPECT_EQ(percentDecode("a+b%2Bc", false), "a+b+c");
  for (const char* const malformed : {"%", "abc%", "%4", "%4g", "%g4", "%%41", "% 41", "%+1"}) {
    EXPECT_EQ(percentDecode(malformed, true), std::nullopt) << malformed;
  }
}

TEST(Utf8, CountsCharactersOrRefuses) {
  EXPECT_EQ(countUtf8Characters(""), 0u);
  EXPECT_EQ(countUtf8Characters("a\0b"sv), 3u);
  EXPECT_EQ(countUtf8Characters("\u00E9\u20AC\U0001F600\uFFFF\U0010FFFF"), 5u);
  for (const char* const malformed :
       {"\x80", "\xC3", "\xE2\x82",
        "\xE2\x82"
        "a",
        "\xC0\x80", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF"}) {
    EXPECT_EQ(countUtf8Characters(malformed), std::nullopt) << testing::PrintToString(malformed);
  }
}

}  // namespace
}  // namespace speech::service
