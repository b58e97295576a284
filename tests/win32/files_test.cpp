#include "win32/move_file.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"
#include "win32/paths.h"
#include "win32/system_message.h"
#include "win32/unique_handle.h"

namespace speech {
namespace {

using test::readFile;
using test::writeFile;

TEST(Moving, WaitsForThoseWhoHaveOneOfTheFilesOpen) {
  const test::TemporaryFolder folder;
  const std::wstring from = folder / L"new", to = folder / L"old";
  for (const std::wstring& held : {from, to}) {
    writeFile(from, "new");
    writeFile(to, "old");
    UniqueHandle reader(
        CreateFileW(held.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_FALSE(MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING));
    std::thread scanner([&] {
      Sleep(100);
      reader.reset();
    });
    EXPECT_TRUE(moveFile(from, to));
    scanner.join();
    EXPECT_EQ(readFile(to), "new");
    EXPECT_FALSE(std::filesystem::exists(from));
  }
}

TEST(Moving, FailureLeavesBothWhereTheyWere) {
  const test::TemporaryFolder folder;
  const std::wstring from = folder / L"new", to = folder / L"old";
  std::filesystem::create_directory(to);
  EXPECT_FALSE(moveFile(from, folder / L"nowhere"));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
  writeFile(from, "new");
  EXPECT_FALSE(moveFile(from, to));
  EXPECT_EQ(readFile(from), "new");
  EXPECT_TRUE(std::filesystem::is_directory(to));
}

TEST(NarrowPath, TakesTheShortFormWhereTheCodePageLacksACharacter) {
  const test::TemporaryFolder folder;
  const std::wstring french = folder / L"caf\u00e9";
  EXPECT_EQ(narrowPath(french), toSystemCodePage(french));
  const std::wstring chinese = folder / L"\u4e2d";
  EXPECT_EQ(narrowPath(chinese), std::nullopt);
  std::filesystem::create_directory(chinese);
  writeFile(chinese + L"\\file", "content");
  for (const auto& narrow : {narrowPath(chinese + L"\\file"), narrowPathOfNewFile(chinese + L"\\new")}) {
    ASSERT_TRUE(narrow);
    EXPECT_EQ(fromSystemCodePage(*narrow).find(L'?'), std::wstring::npos);
  }
  EXPECT_EQ(readFile(fromSystemCodePage(*narrowPath(chinese + L"\\file"))), "content");
  writeFile(fromSystemCodePage(*narrowPathOfNewFile(chinese + L"\\new")), "new");
  EXPECT_EQ(readFile(chinese + L"\\new"), "new");
  EXPECT_EQ(narrowPathOfNewFile(chinese + L"\\\u4e2d"), std::nullopt);
}

TEST(SystemMessage, IsASentenceOrANumber) {
  const std::wstring denied = systemMessage(ERROR_ACCESS_DENIED);
  EXPECT_GT(denied.size(), 8U);
  EXPECT_EQ(denied.find(L'\n'), denied.npos);
  EXPECT_EQ(systemMessage(0x2FFFFFFF), std::to_wstring(0x2FFFFFFF));
}

}  // namespace
}  // namespace speech
