#include "win32/text.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace speech {
namespace {

TEST(Text, LoneSurrogatesBecomeTheReplacementCharacter) {
  const struct {
    std::wstring wide;
    std::string utf8;
  } cases[] = {
      {L"", ""},
      {L"caf\u00e9 \u20ac", "caf\xc3\xa9 \xe2\x82\xac"},
      {{0xD83D, 0xDE00}, "\xf0\x9f\x98\x80"},
      {{L'a', 0xD83D}, "a\xef\xbf\xbd"},
      {{0xD83D, L'b'},
       "\xef\xbf\xbd"
       "b"},
      {{0xDE00, 0xD83D}, "\xef\xbf\xbd\xef\xbf\xbd"},
  };
  for (const auto& [wide, utf8] : cases) EXPECT_EQ(toUtf8(wide), utf8);
}

TEST(Text, MalformedUtf8BecomesTheReplacementCharacter) {
  EXPECT_EQ(fromUtf8("a\xff"
                     "b"),
            L"a\ufffd"
            L"b");
  EXPECT_EQ(fromUtf8("\xf0\x9f\x98\x80"), (std::wstring{0xD83D, 0xDE00}));
  EXPECT_EQ(fromWellFormedUtf8("\xf0\x9f\x98\x80"), (std::wstring{0xD83D, 0xDE00}));
  EXPECT_EQ(fromWellFormedUtf8(""), L"");
  EXPECT_EQ(fromWellFormedUtf8("a\xff"), std::nullopt);
}

TEST(Text, NarrowTextIsInTheThreadsCodePage) {
  ASSERT_EQ(GetACP(), 1252u);
  EXPECT_EQ(toThreadCodePage(L"caf\u00e9"), "caf\xe9");
  EXPECT_EQ(fromThreadCodePage("caf\xe9 \x80"), L"caf\u00e9 \u20ac");
  EXPECT_EQ(toThreadCodePage(L"\u4e2d"), "?");
  EXPECT_EQ(toNarrowExactly(L"caf\u00e9", CodePage::kThread), "caf\xe9");
  EXPECT_EQ(toNarrowExactly(L"\u4e2d", CodePage::kThread), std::nullopt);
}

TEST(Text, NullStandsForTheEmptyText) {
  EXPECT_EQ(textOrEmpty(static_cast<const wchar_t*>(nullptr)), L"");
  EXPECT_EQ(textOrEmpty(static_cast<const char*>(nullptr)), "");
}

}  // namespace
}  // namespace speech
