#include "lxapi/bundled/csv_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace speech::lxapi {
namespace {

using testing::ElementsAre;
using Fields = std::vector<std::string>;
using Status = CsvParser::Status;

std::vector<Fields> records(std::string_view text) {
  CsvParser parser(text);
  std::vector<Fields> result;
  Fields fields;
  while (parser.next(fields) == Status::kRecord) result.push_back(fields);
  return result;
}

TEST(CsvParser, ReadsFieldsAndRecords) {
  EXPECT_THAT(records("a\r,b\nc,,d\r\n"), ElementsAre(Fields{"a\r", "b"}, Fields{"c", "", "d"}));
  EXPECT_THAT(records("\xEF\xBB\xBF"
                      "a,b"),
              ElementsAre(Fields{"a", "b"}));
  EXPECT_THAT(records("a,\n\n,"), ElementsAre(Fields{"a", ""}, Fields{""}, Fields{"", ""}));
  EXPECT_THAT(records(""), ElementsAre());
}

TEST(CsvParser, QuotesHoldCommasLineEndsAndQuotes) {
  EXPECT_THAT(records("\"a,\"\"b\"\"\r\nc\",d\r\n\"\",\"x\""),
              ElementsAre(Fields{"a,\"b\"\r\nc", "d"}, Fields{"", "x"}));
  EXPECT_THAT(records("a\"b,c\n"), ElementsAre(Fields{"a\"b", "c"}))
      << "a quote inside a plain field is itself";
}

TEST(CsvParser, TellsWhatIsMalformedAndOnWhichLine) {
  CsvParser open("a,b\n\"c\nd,\n");
  Fields fields;
  EXPECT_EQ(open.next(fields), Status::kRecord);
  EXPECT_EQ(open.next(fields), Status::kOpenQuote);
  EXPECT_EQ(open.line(), 2U);
  EXPECT_EQ(open.next(fields), Status::kEnd);

  CsvParser stray("\"a\nb\"c,d\ne,f\n");
  EXPECT_EQ(stray.next(fields), Status::kStrayQuote);
  EXPECT_EQ(stray.line(), 1U);
  EXPECT_EQ(stray.next(fields), Status::kRecord);
  EXPECT_EQ(stray.line(), 3U);
  EXPECT_THAT(fields, ElementsAre("e", "f"));
}

TEST(CsvParser, ReadsWhatItMakes) {
  for (const Fields& fields : {Fields{"plain", "two words"}, Fields{"a,b", "\"quoted\""},
                               Fields{"line\r\nend", ""}, Fields{"", "x"}, Fields{"\xEF\xBB\xBF", "y"}}) {
    EXPECT_THAT(records(makeCsvRecord(fields)), ElementsAre(fields));
  }
  EXPECT_EQ(makeCsvRecord({"a", "b"}), "a,b\r\n");
}

}  // namespace
}  // namespace speech::lxapi
