#include <speech/product.h>

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <memory>

#include "tests/support/recording_engine.h"
#include "win32/paths.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class ProductTest : public ::testing::Test {
 protected:
  void SetUp() override { recording().reset(); }

  LXAPIProduct& make(const InstalledEngine& engine) {
    recording().install(engine);
    list_ = std::make_unique<LXAPIProductList>();
    list_->build();
    return *list_->GetTail();
  }

  std::unique_ptr<LXAPIProductList> list_;
};

/// The calls of a product's construction that ask its engine for bounds and defaults.
std::vector<std::string> questions(std::uint32_t engine) {
  std::vector<std::string> calls;
  for (const int number : {16, 14, 15, 13, 11, 12, 19, 17, 18, 22, 20, 21, 26, 24, 25}) {
    calls.push_back("LXAPI_CallEngineInternal(" + std::to_string(engine) +
                    ", \"LX_GetTTSInfo\", result, 0, 0, 1, " + std::to_string(number) + ")");
  }
  return calls;
}

std::vector<std::string> joined(std::initializer_list<std::vector<std::string>> parts) {
  std::vector<std::string> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST_F(ProductTest, TheListFollowsTheEngineLibrarysOrderAndEndsIt) {
  LXAPIProductList().build();
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Init()", "LXAPI_GetFirstInstalledEngine()", "LXAPI_Exit()"));
  recording().install({.key1 = L"alex", .key2 = L"m", .sampleRateHz = 16000, .type = L"espeak"});
  recording().install({.key1 = L"bea", .key2 = L"f", .sampleRateHz = 8000, .type = L"skyvo"});
  {
    LXAPIProductList list;
    list.build();
    EXPECT_EQ(list.GetHead()->getEngineKey1(), L"Alex");
    EXPECT_EQ(list.GetTail()->getEngineKey1(), L"Bea");
  }
  EXPECT_THAT(
      recording().takeCalls(),
      ElementsAreArray(joined({
          {"LXAPI_Init()", "LXAPI_GetFirstInstalledEngine()", "LXAPI_GetEngineInfoFieldEx2(1)"},
          {"LXAPI_CreateHandle()", "LXAPI_SetOutputAudio(1, {1, 16, 16000, -1})", "LXAPI_SetAttr(1, 4, 0)",
           "LXAPI_SetAttr(1, 6, 0)", "LXAPI_GetEngine(\"Alex\", \"M\")", "LXAPI_GetEngine(\"Alex\", \"M\")"},
          questions(101),
          {"LXAPI_GetTTSInfo(101, info)", "LXAPI_GetNextInstalledEngine(1)",
           "LXAPI_GetEngineInfoFieldEx2(2)"},
          {"LXAPI_CreateHandle()", "LXAPI_SetOutputAudio(2, {1, 16, 8000, -1})", "LXAPI_SetAttr(2, 4, 0)",
           "LXAPI_SetAttr(2, 6, 0)", "LXAPI_GetEngine(\"Bea\", \"F\")", "LXAPI_GetTTSInfo(102, info)"},
          {"LXAPI_GetNextInstalledEngine(2)", "LXAPI_Exit()"},
      })));
}

TEST_F(ProductTest, AnEngineOfTypeNvIsLoadedWhileItIsAsked) {
  make({.key1 = L"A", .key2 = L"B", .type = L"nv"});
  EXPECT_THAT(
      recording().takeCalls(),
      ElementsAreArray(joined({
          {"LXAPI_Init()", "LXAPI_GetFirstInstalledEngine()", "LXAPI_GetEngineInfoFieldEx2(1)",
           "LXAPI_CreateHandle()", "LXAPI_SetOutputAudio(1, {1, 16, 22050, -1})", "LXAPI_SetAttr(1, 4, 0)",
           "LXAPI_SetAttr(1, 6, 0)", "LXAPI_GetEngine(\"A\", \"B\")", "LXAPI_SetEngineHandle(1, 101)",
           "LXAPI_LoadEngine(101)", "LXAPI_GetEngine(\"A\", \"B\")"},
          questions(101),
          {"LXAPI_UnloadEngine(101)", "LXAPI_GetTTSInfo(101, info)", "LXAPI_GetNextInstalledEngine(1)"},
      })));
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
    list_.reset();
  }
}

TEST_F(ProductTest, BoundsAndDefaultsAreTheEnginesAnswers) {
  for (const int number : {11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 24, 25, 26}) {
    recording().answerInternal("LX_GetTTSInfo(" + std::to_string(number) + ")", number * 10);
  }
  recording().answerInternal("LX_GetTTSInfo(16)", -1);  // speed's minimum
  recording().answerInternal("LX_GetTTSInfo(18)", -6);  // volume's default
  recording().answerInternal("LX_GetTTSInfo(20)", 0);   // pause's maximum
  TextToSpeech_Options& options = *make({.key1 = L"A", .key2 = L"B"}).getOptions();

  const auto range = [&](void (TextToSpeech_Options::*get)(int&, int&)) {
    int minimum = 0, maximum = 0;
    (options.*get)(minimum, maximum);
    return std::pair(minimum, maximum);
  };
  EXPECT_EQ(range(&TextToSpeech_Options::getSpeedRange), std::pair(100, 140));
  EXPECT_EQ(range(&TextToSpeech_Options::getPitchRange), std::pair(130, 110));
  EXPECT_EQ(range(&TextToSpeech_Options::getVolumeRange), std::pair(190, 170));
  EXPECT_EQ(range(&TextToSpeech_Options::getPauseRange), std::pair(220, 0));
  EXPECT_EQ(range(&TextToSpeech_Options::getCommaPauseRange), std::pair(260, 240));
  EXPECT_EQ(options.getSpeed(), 150);
  EXPECT_EQ(options.getPitch(), 120);
  EXPECT_EQ(options.getVolume(), 100);
  EXPECT_EQ(options.getPause(), 210);
  EXPECT_EQ(options.getCommaPause(), 250);
  EXPECT_EQ(options.getDefCommaPause(), 250);
}

TEST_F(ProductTest, ACloudVoiceIsNotAskedForItsBounds) {
  TextToSpeech_Options& options = *make({.key1 = L"A", .key2 = L"B", .type = L"SkyVo"}).getOptions();
  int minimum = -1, maximum = -1;
  options.getPauseRange(minimum, maximum);
  EXPECT_EQ(std::pair(minimum, maximum), std::pair(0, 5000));
  EXPECT_THAT((std::vector{options.getSpeed(), options.getVolume(), options.getPitch(), options.getPause(),
                           options.getCommaPause()}),
              ::testing::Each(100));
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

TEST_F(ProductTest, DictionaryPathsFollowTypeAndLanguage) {
  wcscpy(recording().ttsInfo.folder, L"C:\\engine");
  const std::wstring user = documentsFolder().value() + L"\\Narravo\\UserDict";
  LXAPIProduct& other = make({.key1 = L"A", .language = L"en-US", .type = L"espeak"});
  EXPECT_EQ(other.getUserDictEditorPath(), L"C:\\engine\\bin\\UserDicENUS.exe");
  EXPECT_EQ(other.getUserDictPath2(), (user + L"\\userdict_ENUS.lex").c_str());
  EXPECT_EQ(other.getUserDictPath3(), (user + L"\\userdict_ENUS.csv").c_str());
  LXAPIProduct& nv = make({.key1 = L"B", .language = L"..\\ko", .type = L"NV"});
  EXPECT_EQ(nv.getUserDictEditorPath(), L"C:\\engine\\UserDicNV.exe");
  EXPECT_EQ(nv.getUserDictPath2(), L"C:\\engine\\data-common\\userdict\\userdict_KO.csv");
  EXPECT_EQ(nv.getUserDictPath3(), (user + L"\\userdict_KO.csv").c_str());
  EXPECT_TRUE(std::filesystem::is_directory(user));
  EXPECT_TRUE(std::filesystem::is_directory(documentsFolder().value() + L"\\Narravo\\log"));
}

}  // namespace
}  // namespace speech::test
