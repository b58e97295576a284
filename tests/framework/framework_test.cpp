#include "framework/framework.h"

#include <gtest/gtest.h>

namespace {

/// Whether `operation` throws the framework's pointer.
template <class Operation>
bool throwsInvalidArgument(Operation operation) {
  try {
    operation();
    return false;
  } catch (CInvalidArgException* exception) {
    exception->Delete();
    return true;
  }
}

TEST(String, PlacesBeyondTheTextAreBroughtIntoIt) {
  const CStringW text = L"voice";
  EXPECT_EQ(text.Left(9), L"voice");
  EXPECT_EQ(text.Left(-1), L"");
  EXPECT_EQ(text.Mid(9), L"");
  EXPECT_EQ(text.Mid(-2, 2), L"vo");
  EXPECT_EQ(text.Mid(3, 9), L"ce");
  EXPECT_EQ(text.Find(L'v', 9), -1);
  EXPECT_EQ(text.Find(L"ice", 1), 2);
  EXPECT_TRUE(throwsInvalidArgument([&] { text.GetAt(5); }));
  EXPECT_TRUE(throwsInvalidArgument([&] { text.GetAt(-1); }));
}

TEST(String, NullIsTheEmptyTextAndAReplacementIsNotLookedAtAgain) {
  CStringW text(nullptr);
  text += nullptr;
  EXPECT_EQ(text.CompareNoCase(nullptr), 0);
  text = L"a&b&";
  EXPECT_EQ(text.Replace(nullptr, L"x"), 0);
  EXPECT_EQ(text.Replace(L"&", L"&&"), 2);
  EXPECT_EQ(text, L"a&&b&&");
}

TEST(String, FormatsTextOfEitherWidth) {
  CStringW wide;
  wide.Format(L"%s %S %d", L"wide", "narrow", -7);
  wide.Format(L"%s!", wide.GetString());
  EXPECT_EQ(wide, L"wide narrow -7!");
  CStringA narrow;
  narrow.Format("%s %S", "narrow", L"wide");
  EXPECT_EQ(narrow, "narrow wide");
}

TEST(StringArray, KeepsTextsInPlaceAndThrowsAPointerOutsideItsRange) {
  CStringArray array;
  EXPECT_EQ(array.Add(L"en-US"), 0);
  const wchar_t* const first = array.GetAt(0);
  for (int i = 0; i < 1000; ++i) array.Add(L"ko-KR");
  EXPECT_EQ(array.GetAt(0).GetString(), first);
  EXPECT_EQ(array.GetAt(0), L"en-US");
  EXPECT_TRUE(throwsInvalidArgument([&] { array.GetAt(1001); }));
  EXPECT_TRUE(throwsInvalidArgument([&] { array.GetAt(-1); }));
}

TEST(PointerList, WalksAndEmptiesInOrder) {
  CTypedPtrList<CPtrList, int*> list;
  int numbers[] = {1, 2, 3};
  for (int& number : numbers) list.AddTail(&number);
  int walked = 0;
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) walked = walked * 10 + *list.GetNext(at);
  EXPECT_EQ(walked, 123);
  EXPECT_EQ(list.GetAt(list.FindIndex(2)), &numbers[2]);
  EXPECT_EQ(list.FindIndex(3), nullptr);
  EXPECT_EQ(list.RemoveHead(), &numbers[0]);
  EXPECT_EQ(list.GetHead(), &numbers[1]);
  list.RemoveAll();
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_TRUE(throwsInvalidArgument([&] { list.GetHead(); }));
}

}  // namespace
