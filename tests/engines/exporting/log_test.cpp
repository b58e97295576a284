#include "engines/exporting/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <share.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "base/file.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

namespace speech {
namespace {

using test::readFile;
using test::TemporaryFolder;
using ::testing::EndsWith;

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
  return files;
}

/// The one log file below a base folder.
std::filesystem::path logFile(const std::filesystem::path& base) {
  const auto files = filesIn(base / "log");
  EXPECT_EQ(files.size(), 1u);
  return files.at(0);
}

class DiagnosticLog : public ::testing::Test {
 protected:
  ~DiagnosticLog() override { setFreeBytesQuestion(nullptr); }
  TemporaryFolder folder_;
  std::string base_ = folder_.path().string();
};

std::string stamp(void(WINAPI* clock)(SYSTEMTIME*)) {
  SYSTEMTIME now;
  clock(&now);
  char text[32];
  std::snprintf(text, sizeof text, "| %04d-%02d-%02d %02d:%02d:%02d:%03d", now.wYear, now.wMonth, now.wDay,
                now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
  return text;
}

TEST_F(DiagnosticLog, WritesALinePerCallIntoAFileOfTheDay) {
  const std::string before = stamp(GetLocalTime);
  ASSERT_NE(before.substr(0, 18), stamp(GetSystemTime).substr(0, 18))
      << "run me in a time zone, as ctest does";
  ASSERT_EQ(writeLog(base_.c_str(), "%s", "first"), 1);
  const std::string after = stamp(GetLocalTime);
  ASSERT_EQ(writeLog(base_.c_str(), "number %d", 2), 1);

  const std::filesystem::path file = logFile(folder_.path());
  EXPECT_EQ(file.filename().string(), before.substr(2, 10) + ".log");
  EXPECT_EQ(GetFileAttributesW(file.c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
  const std::string content = readFile(file);
  const std::regex lines(
      R"((\| \d{4}-\d\d-\d\d \d\d:\d\d:\d\d:\d{3})\|first\n\| \d{4}-\d\d-\d\d \d\d:\d\d:\d\d:\d{3}\|number 2\n)");
  std::smatch parts;
  ASSERT_TRUE(std::regex_match(content, parts, lines)) << content;
  EXPECT_LE(before, parts[1].str());
  EXPECT_LE(parts[1].str(), after);
}

TEST_F(DiagnosticLog, KeepsPercentSignsAndCutsAnOverlongMessageButStillEndsTheLine) {
  const std::string nested = base_ + "\\a\\b";  // made where it is missing
  ASSERT_EQ(writeLog(nested.c_str(), "%s", ("100%\\%s%n" + std::string(5000, 'x')).c_str()), 1);
  const std::string line = readFile(filesIn(nested + "\\log").at(0));
  EXPECT_EQ(line.size(), 1023u);
  EXPECT_THAT(line, ::testing::HasSubstr("|100%\\%s%nxxx"));
  EXPECT_THAT(line, EndsWith("xxx\n"));
}

TEST_F(DiagnosticLog, RefusesWhenExactlyTheReserveAndTheTwoTextsAreLeft) {
  static uint64_t left;
  setFreeBytesQuestion([](const char*) { return left; });
  constexpr uint64_t kStampLength = 25;
  left = 10'240'000 + kStampLength + 5;
  EXPECT_EQ(writeLog(base_.c_str(), "%s", "12345"), 0);
  EXPECT_TRUE(filesIn(folder_ / "log").empty());
  ++left;
  EXPECT_EQ(writeLog(base_.c_str(), "%s", "12345"), 1);
}

TEST_F(DiagnosticLog, WritesNothingToADiskThatIsNearlyFull) {
  const char* const disk = std::getenv("SPEECH_SMALL_DISK");
  ASSERT_NE(disk, nullptr) << "run me through tests/support/with-small-disk";
  EXPECT_EQ(writeLog(disk, "%s", "x"), 0);
  EXPECT_TRUE(filesIn(std::filesystem::path(disk) / "log").empty());
}

TEST_F(DiagnosticLog, AFileThatCouldNotTakeALineStaysOpenAndDeniedToWriters) {
  const std::filesystem::path disk = std::getenv("SPEECH_SMALL_DISK");
  const std::string base = (disk / "full").string();
  ASSERT_TRUE(makeDirectoryPath((base + "/log").c_str()));
  std::ofstream(disk / "filling") << std::string(1 << 20, 'x');
  setFreeBytesQuestion([](const char*) { return ~uint64_t{0}; });
  EXPECT_EQ(writeLog(base.c_str(), "%s", "lost"), 0);
  std::filesystem::remove(disk / "filling");
  EXPECT_EQ(writeLog(base.c_str(), "%s", "denied"), 0);
  EXPECT_FALSE(File(_wfsopen(logFile(base).c_str(), L"ab", _SH_DENYNO)));
  EXPECT_TRUE(File(_wfsopen(logFile(base).c_str(), L"rb", _SH_DENYNO))) << "readers are not denied";
}

TEST_F(DiagnosticLog, YieldsToAnotherWriter) {
  ASSERT_EQ(writeLog(base_.c_str(), "%s", "before"), 1);
  std::FILE* const other = _wfsopen(logFile(folder_.path()).c_str(), L"ab", _SH_DENYWR);
  ASSERT_NE(other, nullptr);
  EXPECT_EQ(writeLog(base_.c_str(), "%s", "lost"), 0);
  std::fclose(other);
  EXPECT_EQ(writeLog(base_.c_str(), "%s", "after"), 1);
  EXPECT_EQ(readFile(logFile(folder_.path())).find("lost"), std::string::npos);
}

TEST(DirectoryPath, IsMadeElementByElementWithEitherSeparator) {
  const TemporaryFolder folder;
  const std::string base = folder.path().string();
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  for (const std::string& path : {base + "\\a/b\\c\\", std::string("single"), std::string("outer/inner")}) {
    EXPECT_TRUE(makeDirectoryPath(path.c_str()));
    EXPECT_TRUE(makeDirectoryPath(path.c_str())) << "all there already";
    EXPECT_TRUE(std::filesystem::is_directory(path)) << path;
  }
  std::filesystem::current_path(before);
  // Up to the next backslash a network path names its server, slashes and all.
  const std::filesystem::path disk = std::getenv("SPEECH_SMALL_DISK");
  EXPECT_TRUE(makeDirectoryPath(("\\\\?/unix" + disk.generic_string() + "\\share/deep").c_str()));
  EXPECT_TRUE(std::filesystem::is_directory(disk / "share/deep"));

  test::writeFile(folder / "file", "");
  for (const std::string& path : {base + "\\file\\x", std::string(), std::string("\\\\server")}) {
    EXPECT_FALSE(makeDirectoryPath(path.c_str())) << path;
  }
  EXPECT_EQ(writeLog((base + "\\file").c_str(), "%s", "x"), 0);
}

}  // namespace
}  // namespace speech
