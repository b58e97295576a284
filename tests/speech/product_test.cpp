#include <speech/text_to_speech.h>

#include <gmock/gmock.h>

#include <shlobj.h>

#include <cstring>
#include <cwchar>
#include <filesystem>
#include <type_traits>

#include "tests/speech/shown_options.h"
#include "tests/support/recording_engine.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsSupersetOf;

static_assert(!std::is_constructible_v<LXAPIProductList> && !std::is_destructible_v<LXAPIProductList>,
              "a list of the host's own would start and end the engine library under the module's");

class ProductTest : public ::testing::Test {
 protected:
  ProductTest() { recording().reset(); }
  ~ProductTest() override { ITextToSpeech::releaseInstance(); }

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

TEST_F(ProductTest, OnlyAnEngineOfTypeNvIsLoadedWhileItIsAsked) {
  const std::string kQuestion = "LXAPI_CallEngineInternal(101, \"LX_GetTTSInfo\", result, 0, 0, 1, ";
  const std::string questions = "16) 14) 15) 13) 11) 12) 19) 17) 18) 22) 20) 21) 26) 24) 25) ";
  for (const auto& [type, failing, expected] :
       {std::tuple(L"nv", "nothing", "bind load " + questions + "unload "),
        std::tuple(L"nv", "LXAPI_SetEngineHandle", "bind " + questions),
        std::tuple(L"nv", "LXAPI_LoadEngine", "bind load " + questions),
        std::tuple(L"NV", "nothing", questions)}) {
    recording().reset();
    recording().answer(failing, -1);
    make({.key1 = L"A", .key2 = L"B", .type = type});
    std::string made;
    for (const std::string& call : recording().takeCalls()) {
      if (call == "LXAPI_SetEngineHandle(1, 101)") made += "bind ";
      if (call == "LXAPI_LoadEngine(101)") made += "load ";
      if (call.starts_with(kQuestion)) made += call.substr(kQuestion.size()) + ' ';
      if (call == "LXAPI_UnloadEngine(101)") made += "unload ";
    }
    EXPECT_EQ(made, expected) << failing;
  }
}

TEST_F(ProductTest, BoundsAndDefaultsAreTheEnginesAnswersAndNumbersOfOurOwnForACloudVoice) {
  for (int number = 11; number <= 26; ++number)
    recording().answerInternal("LX_GetTTSInfo(" + std::to_string(number) + ")", number * 10);
  recording().answerInternal("LX_GetTTSInfo(16)", -1);  // speed's minimum
  recording().answerInternal("LX_GetTTSInfo(18)", -6);  // volume's default
  recording().answerInternal("LX_GetTTSInfo(20)", 0);   // pause's maximum
  EXPECT_EQ(shown(*make({.key1 = L"A", .key2 = L"B"}).getOptions()),
            "150 150 100 140 150; 100 100 190 170 100; 120 120 130 110 120; 210 210 220 0 210; "
            "250 250 260 240 250; 1 0 changed");
  EXPECT_EQ(shown(*make({.key1 = L"A", .key2 = L"B", .type = L"SkyVo"}).getOptions()),
            "100 100 0 5000 100; 100 100 0 5000 100; 100 100 0 5000 100; 100 100 0 5000 100; "
            "100 100 0 5000 100; 1 0 changed");
}

TEST_F(ProductTest, WhatTheEngineLibrarySaysReachesItsOwnField) {
  LXAPIProduct& product = make(
      {L"\u00e9lan", L"", 3, L"three", L"four", L"five", L"f", L"seven", 11025, -9, L"fr-FR", L"espeak"});
  CStringW texts;
  for (const CStringW& text :
       {product.getEngineKey1(), product.getEngineKey2(), product.getInfoText3(), product.getInfoText4(),
        product.getInfoText5(), product.getGenderCode(), product.getInfoText7(), product.getLanguageCode(),
        product.getEngineType(), product.getSampleRateText(), product.getInfoNumber9Text(),
        product.getKeyLabel()})
    texts += text + L"|";
  EXPECT_EQ(texts, L"\u00c9lan||three|four|five|f|seven|fr-FR|espeak|11025|-9|\u00c9lan-, five|");
  EXPECT_EQ(product.getSampleRateHz(), 11025);
  EXPECT_EQ(product.getInfoNumber9(), -9);
  EXPECT_EQ(product.getSynthHandle(), 1u);
  EXPECT_EQ(product.getEngineRef(), 101u);
  EXPECT_THAT(recording().takeCalls(), ::testing::Contains("LXAPI_GetEngine(\"\xc9lan\", \"\")"));
}

TEST_F(ProductTest, GenderAndRateAreReadLeniently) {
  LXAPIProduct& product = make({.key1 = L"A"});
  CStringW read;
  for (const wchar_t* const code : {L"F", L"f", L"M", L"m", L"x", L""}) {
    EXPECT_EQ(product.setGenderCode(code), code);
    read += product.getGenderText() + L" ";
  }
  EXPECT_EQ(read, L"FEMALE FEMALE MALE MALE UNKNOWN UNKNOWN ");
  std::vector<int> indices;
  for (const int rate : {8000, 16000, 22050, 44100, 48000, 11025, 0}) {
    EXPECT_EQ(product.setSampleRateHz(rate), rate);
    indices.push_back(product.getSampleRateIndex());
  }
  EXPECT_THAT(indices, ElementsAre(0, 1, 2, 3, 4, 2, 2));
}

TEST_F(ProductTest, TheEngineNamesItselfAndTextsThatItDoesNotEndAreEnded) {
  LXAPIProduct& product = make({.key1 = L"A", .key2 = L"B"});
  LXTTSINFO& info = recording().ttsInfo;
  wcscpy(info.name, L"Alex");
  wcscpy(info.version, L"1.2");
  wcscpy(info.text1, L"maker");
  wcscpy(info.text2, L"licence");
  EXPECT_EQ(product.getDisplayName(), L"Alex (v.1.2)");
  EXPECT_EQ(product.getEngineInfo1(), L"maker");
  EXPECT_EQ(product.getEngineInfo2(), L"licence");
  recording().answer("LXAPI_GetTTSInfo", -2);
  EXPECT_EQ(product.getDisplayName(), L"Unknown");
  EXPECT_EQ(product.getEngineInfo1(), L"");
  recording().answer("LXAPI_GetTTSInfo", 0);
  std::memset(static_cast<void*>(&info), 'x', sizeof info);
  EXPECT_EQ(product.getDisplayName().GetLength(), 127 + 4 + 31 + 1);
  EXPECT_EQ(product.getEngineInfo2().GetLength(), 127);
  EXPECT_EQ(make({.key1 = L"A", .key2 = L"B"}).getUserDictEditorPath().Find(L'\\'), 259);
}

/// Runs `operation` while blocks of a megabyte or more cannot be had.
template <class Operation>
void withoutMemory(Operation operation) {
  std::vector<void*> taken;
  while (void* const block = VirtualAlloc(nullptr, 1 << 20, MEM_RESERVE, PAGE_NOACCESS))
    taken.push_back(block);
  operation();
  for (void* const block : taken) VirtualFree(block, 0, MEM_RELEASE);
}

TEST_F(ProductTest, NoExceptionLeavesItsOperations) {
  LXAPIProduct& product = make({.key1 = L"A"});
  CStringW text = std::wstring(8 << 20, L'x').c_str();
  product.setInfoText5(text);
  withoutMemory([&] {
    EXPECT_TRUE(product.setInfoText3(std::move(text)).IsEmpty());
    EXPECT_TRUE(product.getInfoText3().IsEmpty());
    EXPECT_TRUE(product.getKeyLabel().IsEmpty());
  });
  EXPECT_EQ(product.getInfoText3().GetLength(), 8 << 20) << "stored, not copied";
  recording().outOfMemoryIn = "LXAPI_GetTTSInfo";
  for (const CStringW& own : {product.getDisplayName(), product.getEngineInfo1(), product.getEngineInfo2()})
    EXPECT_TRUE(own.IsEmpty());
  recording().outOfMemoryIn = "LXAPI_GetEngineInfoFieldEx2(2)";
  make({.key1 = L"B"});
  EXPECT_EQ(ITextToSpeech::getLXAPIProductList()->GetCount(), 1) << "what there was memory for";
}

TEST_F(ProductTest, UserFoldersAreAskedForAndMadeAtEachBuildingOfTheList) {
  wchar_t path[MAX_PATH] = L"";
  SHGetFolderPathW(nullptr, CSIDL_PERSONAL | CSIDL_FLAG_DONT_VERIFY, nullptr, SHGFP_TYPE_CURRENT, path);
  const std::filesystem::path documents = path, profile = documents.parent_path();
  ASSERT_EQ(profile.filename(), L"speech-tests") << "run me with USER=speech-tests, as ctest does";
  std::filesystem::remove_all(profile);
  const std::wstring own = std::wstring(path) + L"\\Narravo\\UserDict\\userdict_";
  wcscpy(recording().ttsInfo.folder, L"C:\\engine");
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(make({.key1 = L"A"}).getUserDictPath3().IsEmpty()) << "there is no documents folder";
    std::filesystem::create_directories(documents);
    LXAPIProduct& other = make({.key1 = L"A", .language = L"en-US", .type = L"espeak"});
    EXPECT_TRUE(std::filesystem::is_directory(documents / L"Narravo\\log"));
    EXPECT_TRUE(std::filesystem::is_directory(documents / L"Narravo\\UserDict"));
    EXPECT_EQ(other.getUserDictEditorPath(), L"C:\\engine\\bin\\UserDicENUS.exe");
    EXPECT_EQ(other.getUserDictPath2(), (own + L"ENUS.lex").c_str());
    EXPECT_EQ(other.getUserDictPath3(), (own + L"ENUS.csv").c_str());
    LXAPIProduct& nv = make({.key1 = L"B", .language = L"..\\ko", .type = L"NV"});
    EXPECT_EQ(nv.getUserDictEditorPath(), L"C:\\engine\\UserDicNV.exe");
    EXPECT_EQ(nv.getUserDictPath2(), L"C:\\engine\\data-common\\userdict\\userdict_KO.csv");
    EXPECT_EQ(nv.getUserDictPath3(), (own + L"KO.csv").c_str());
    std::filesystem::remove_all(profile);
  }
}

}  // namespace
}  // namespace speech::test
