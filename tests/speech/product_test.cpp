#include <speech/text_to_speech.h>

#include <gmock/gmock.h>

#include <shlobj.h>

#include <cstring>
#include <cwchar>
#include <filesystem>
#include <type_traits>

#include "tests/support/recording_engine.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsSupersetOf;

// OLD static_assert(!std::is_constructible_v<LXAPIProductList> && !std::is_destructible_v<LXAPIProductList>,
// OLD "a list of the host's own would start and end the engine library under the module's");

class ProductTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ITextToSpeech::releaseInstance();
    recording().reset();
  }
  void TearDown() override { ITextToSpeech::releaseInstance(); }

  /// The product of one more engine, in a list that is built anew.
  static LXAPIProduct& make(const InstalledEngine& engine) {
    ITextToSpeech::releaseInstance();
    recording().install(engine);
    return *ITextToSpeech::getLXAPIProductList()->GetTail();
  }
};

TEST_F(ProductTest, TheListFollowsTheEngineLibrarysOrderAndEndsIt) {
  ITextToSpeech::getLXAPIProductList();
  ITextToSpeech::releaseInstance();
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Init()", "LXAPI_GetFirstInstalledEngine()", "LXAPI_Exit()"));
  make({.key1 = L"alex", .key2 = L"m", .sampleRateHz = 16000, .type = L"espeak"});
  make({.key1 = L"bea", .key2 = L"f", .sampleRateHz = 8000, .type = L"skyvo"});
  EXPECT_EQ(ITextToSpeech::getLXAPIProductList()->GetHead()->getEngineKey1(), L"Alex");
  EXPECT_EQ(ITextToSpeech::getLXAPIProductList()->GetTail()->getEngineKey1(), L"Bea");
  EXPECT_THAT(recording().takeCalls(),
              IsSupersetOf({"LXAPI_SetOutputAudio(1, {1, 16, 16000, -1})", "LXAPI_SetAttr(1, 4, 0)",
                            "LXAPI_SetAttr(1, 6, 0)", "LXAPI_GetEngine(\"Bea\", \"F\")"}));
}

TEST_F(ProductTest, AnEngineOfTypeNvIsLoadedWhileItIsAsked) {
  make({.key1 = L"A", .key2 = L"B", .type = L"nv"});
  std::vector<std::string> calls = recording().takeCalls();
  std::erase_if(calls, [](const std::string& call) {
    return !call.starts_with("LXAPI_CallEngineInternal") && !call.ends_with("101)");
  });
  std::vector<std::string> expected = {"LXAPI_SetEngineHandle(1, 101)", "LXAPI_LoadEngine(101)"};
  for (const int number : {16, 14, 15, 13, 11, 12, 19, 17, 18, 22, 20, 21, 26, 24, 25}) {
    expected.push_back("LXAPI_CallEngineInternal(101, \"LX_GetTTSInfo\", result, 0, 0, 1, " +
                       std::to_string(number) + ")");
  }
  expected.push_back("LXAPI_UnloadEngine(101)");
  EXPECT_THAT(calls, ElementsAreArray(expected));
}

TEST_F(ProductTest, OnlyALoadedEngineIsUnloadedAfterTheQuestions) {
  const struct {
    const wchar_t* type;
    const char* failing;
    int setHandleCalls, loadCalls;
  } cases[] = {
      {L"nv", "LXAPI_SetEngineHandle", 1, 0}, {L"nv", "LXAPI_LoadEngine", 1, 1}, {L"NV", "nothing", 0, 0}};
  for (const auto& [type, failing, setHandleCalls, loadCalls] : cases) {
    recording().reset();
    recording().answer(failing, -1);
    make({.key1 = L"A", .key2 = L"B", .type = type});
    const auto calls = recording().takeCalls();
    const auto times = [&](const std::string& call) { return std::count(calls.begin(), calls.end(), call); };
    EXPECT_EQ(times("LXAPI_SetEngineHandle(1, 101)"), setHandleCalls) << failing;
    EXPECT_EQ(times("LXAPI_LoadEngine(101)"), loadCalls) << failing;
    EXPECT_EQ(times("LXAPI_UnloadEngine(101)"), 0) << failing;
  }
}

/// Of speed, volume, pitch, pause and comma pause.
std::vector<std::pair<int, int>> ranges(TextToSpeech_Options& options) {
  using Options = TextToSpeech_Options;
  std::vector<std::pair<int, int>> all;
  for (const auto get : {&Options::getSpeedRange, &Options::getVolumeRange, &Options::getPitchRange,
                         &Options::getPauseRange, &Options::getCommaPauseRange}) {
    auto& [minimum, maximum] = all.emplace_back();
    (options.*get)(minimum, maximum);
  }
  return all;
}
std::vector<int> values(const TextToSpeech_Options& options) {
  return {options.getSpeed(), options.getVolume(), options.getPitch(), options.getPause(),
          options.getCommaPause()};
}

TEST_F(ProductTest, BoundsAndDefaultsAreTheEnginesAnswers) {
  for (const int number : {11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 24, 25, 26}) {
    recording().answerInternal("LX_GetTTSInfo(" + std::to_string(number) + ")", number * 10);
  }
  recording().answerInternal("LX_GetTTSInfo(16)", -1);  // speed's minimum
  recording().answerInternal("LX_GetTTSInfo(18)", -6);  // volume's default
  recording().answerInternal("LX_GetTTSInfo(20)", 0);   // pause's maximum
  TextToSpeech_Options& options = *make({.key1 = L"A", .key2 = L"B"}).getOptions();
  EXPECT_THAT(ranges(options), ElementsAre(std::pair(100, 140), std::pair(190, 170), std::pair(130, 110),
                                           std::pair(220, 0), std::pair(260, 240)));
  EXPECT_THAT(values(options), ElementsAre(150, 100, 120, 210, 250));
  EXPECT_EQ(options.getDefCommaPause(), 250);
}

TEST_F(ProductTest, ACloudVoiceIsNotAskedForItsBounds) {
  TextToSpeech_Options& options = *make({.key1 = L"A", .key2 = L"B", .type = L"SkyVo"}).getOptions();
  EXPECT_THAT(ranges(options), ::testing::Each(std::pair(0, 5000)));
  EXPECT_THAT(values(options), ::testing::Each(100));
}

TEST_F(ProductTest, WhatTheEngineLibrarySaysReachesItsOwnField) {
  LXAPIProduct& product = make({.key1 = L"\u00e9lan",
                                .key2 = L"",
                                .engineNumber = 3,
                                .text3 = L"three",
                                .text4 = L"four",
                                .text5 = L"five",
                                .gender = L"f",
                                .text7 = L"seven",
                                .sampleRateHz = 11025,
                                .number9 = -9,
                                .language = L"fr-FR",
                                .type = L"espeak"});
  const std::pair<CStringW, const wchar_t*> texts[] = {
      {product.getEngineKey1(), L"\u00c9lan"}, {product.getEngineKey2(), L""},
      {product.getInfoText3(), L"three"},      {product.getInfoText4(), L"four"},
      {product.getInfoText5(), L"five"},       {product.getGenderCode(), L"f"},
      {product.getInfoText7(), L"seven"},      {product.getLanguageCode(), L"fr-FR"},
      {product.getEngineType(), L"espeak"},    {product.getSampleRateText(), L"11025"},
      {product.getInfoNumber9Text(), L"-9"},   {product.getKeyLabel(), L"\u00c9lan-, five"}};
  for (const auto& [actual, expected] : texts) EXPECT_EQ(actual, expected);
  EXPECT_EQ(product.getSampleRateHz(), 11025);
  EXPECT_EQ(product.getInfoNumber9(), -9);
  EXPECT_EQ(product.getSynthHandle(), 1u);
  EXPECT_EQ(product.getEngineRef(), 101u);
  EXPECT_THAT(recording().takeCalls(), ::testing::Contains("LXAPI_GetEngine(\"\xc9lan\", \"\")"));
}

TEST_F(ProductTest, GenderAndRateAreReadLeniently) {
  LXAPIProduct& product = make({.key1 = L"A"});
  const std::pair<const wchar_t*, const wchar_t*> genders[] = {{L"F", L"FEMALE"},  {L"f", L"FEMALE"},
                                                               {L"M", L"MALE"},    {L"m", L"MALE"},
                                                               {L"x", L"UNKNOWN"}, {L"", L"UNKNOWN"}};
  for (const auto& [code, text] : genders) {
    EXPECT_EQ(product.setGenderCode(code), code);
    EXPECT_EQ(product.getGenderText(), text);
  }
  const std::pair<int, int> rates[] = {{8000, 0},  {16000, 1}, {22050, 2}, {44100, 3},
                                       {48000, 4}, {11025, 2}, {0, 2}};
  for (const auto& [rate, index] : rates) {
    EXPECT_EQ(product.setSampleRateHz(rate), rate);
    EXPECT_EQ(product.getSampleRateIndex(), index) << rate;
  }
}

TEST_F(ProductTest, TheEngineNamesItself) {
  LXAPIProduct& product = make({.key1 = L"A", .key2 = L"B"});
  wcscpy(recording().ttsInfo.name, L"Alex");
  wcscpy(recording().ttsInfo.version, L"1.2");
  wcscpy(recording().ttsInfo.text1, L"maker");
  wcscpy(recording().ttsInfo.text2, L"licence");
  recording().takeCalls();
  EXPECT_EQ(product.getDisplayName(), L"Alex (v.1.2)");
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_GetEngine(\"A\", \"B\")", "LXAPI_GetTTSInfo(101, info)"));
  EXPECT_EQ(product.getEngineInfo1(), L"maker");
  EXPECT_EQ(product.getEngineInfo2(), L"licence");
  recording().answer("LXAPI_GetTTSInfo", -2);
  EXPECT_EQ(product.getDisplayName(), L"Unknown");
  EXPECT_EQ(product.getEngineInfo1(), L"");
}

TEST_F(ProductTest, TextsThatTheEngineDoesNotEndEndWhereTheyMust) {
  LXTTSINFO& info = recording().ttsInfo;
  std::memset(static_cast<void*>(&info), 'x', sizeof info);
  LXAPIProduct& product = make({.key1 = L"A", .key2 = L"B"});
  EXPECT_EQ(product.getDisplayName().GetLength(), 127 + 4 + 31 + 1);
  EXPECT_EQ(product.getEngineInfo2().GetLength(), 127);
  EXPECT_EQ(product.getUserDictEditorPath().Find(L'\\'), 259);
}

/// As long as it lives, blocks of a megabyte or more cannot be had.
class WithoutMemory {
 public:
  WithoutMemory() {
    while (void* const block = VirtualAlloc(nullptr, kLeast, MEM_RESERVE, PAGE_NOACCESS))
      blocks_.push_back(block);
  }
  WithoutMemory(const WithoutMemory&) = delete;
  WithoutMemory& operator=(const WithoutMemory&) = delete;
  ~WithoutMemory() {
    for (void* const block : blocks_) VirtualFree(block, 0, MEM_RELEASE);
  }

 private:
  static constexpr SIZE_T kLeast = 1 << 20;
  std::vector<void*> blocks_;
};

TEST_F(ProductTest, NoExceptionLeavesItsOperations) {
  LXAPIProduct& product = make({.key1 = L"A"});
  CStringW long8 = std::wstring(8 << 20, L'x').c_str();
  {
    const WithoutMemory now;
    EXPECT_TRUE(product.setInfoText3(std::move(long8)).IsEmpty());
    EXPECT_TRUE(product.getInfoText3().IsEmpty());
  }
  EXPECT_EQ(product.getInfoText3().GetLength(), 8 << 20);
  product.setInfoText5(product.getInfoText3());
  {
    const WithoutMemory now;
    EXPECT_TRUE(product.getKeyLabel().IsEmpty());
  }
  recording().outOfMemoryIn = "LXAPI_GetTTSInfo";
  for (const CStringW& text : {product.getDisplayName(), product.getEngineInfo1(), product.getEngineInfo2()})
    EXPECT_TRUE(text.IsEmpty());
  recording().outOfMemoryIn = "LXAPI_GetEngineInfoFieldEx2(2)";
  make({.key1 = L"B"});
  EXPECT_EQ(ITextToSpeech::getLXAPIProductList()->GetCount(), 1) << "what there was memory for";
}

/// With a documents folder of its own, which is not there at first.
class UserFolders : public ProductTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(profile_.filename(), L"speech-tests") << "run me with USER=speech-tests, as ctest does";
    std::filesystem::remove_all(profile_);
    ProductTest::SetUp();
  }
  void TearDown() override {
    ProductTest::TearDown();
    std::filesystem::remove_all(profile_);
  }

  static std::filesystem::path namedDocumentsFolder() {
    wchar_t path[MAX_PATH] = L"";
    SHGetFolderPathW(nullptr, CSIDL_PERSONAL | CSIDL_FLAG_DONT_VERIFY, nullptr, SHGFP_TYPE_CURRENT, path);
    return path;
  }

  const std::filesystem::path documents_ = namedDocumentsFolder();
  const std::filesystem::path profile_ = documents_.parent_path();
};

TEST_F(UserFolders, AreAskedForAndMadeAtEachBuildingOfTheList) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(make({.key1 = L"A"}).getUserDictPath3().IsEmpty()) << "there is no documents folder";
    std::filesystem::create_directories(documents_);
    EXPECT_FALSE(make({.key1 = L"A"}).getUserDictPath3().IsEmpty());
    EXPECT_TRUE(std::filesystem::is_directory(documents_ / L"Narravo\\log"));
    EXPECT_TRUE(std::filesystem::is_directory(documents_ / L"Narravo\\UserDict"));
    std::filesystem::remove_all(documents_);
  }
}

TEST_F(UserFolders, DictionaryPathsFollowTypeAndLanguage) {
  std::filesystem::create_directories(documents_);
  wcscpy(recording().ttsInfo.folder, L"C:\\engine");
  const std::wstring user = documents_ / L"Narravo\\UserDict";
  LXAPIProduct& other = make({.key1 = L"A", .language = L"en-US", .type = L"espeak"});
  EXPECT_EQ(other.getUserDictEditorPath(), L"C:\\engine\\bin\\UserDicENUS.exe");
  EXPECT_EQ(other.getUserDictPath2(), (user + L"\\userdict_ENUS.lex").c_str());
  EXPECT_EQ(other.getUserDictPath3(), (user + L"\\userdict_ENUS.csv").c_str());
  LXAPIProduct& nv = make({.key1 = L"B", .language = L"..\\ko", .type = L"NV"});
  EXPECT_EQ(nv.getUserDictEditorPath(), L"C:\\engine\\UserDicNV.exe");
  EXPECT_EQ(nv.getUserDictPath2(), L"C:\\engine\\data-common\\userdict\\userdict_KO.csv");
  EXPECT_EQ(nv.getUserDictPath3(), (user + L"\\userdict_KO.csv").c_str());
}

}  // namespace
}  // namespace speech::test
