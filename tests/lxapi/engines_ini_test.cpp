#include "lxapi/bundled/engines_ini.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lxapi {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST(EnginesIni, ReadsEverySettingInAnyOrderAndCase) {
  const EnginesIni ini = parseEnginesIni(
      "\xEF\xBB\xBF; comment\r\n# another\r\n\r\n"
      "  [Fran\xC3\xA7ois]  \r\n RATE = 48000\r\nType=skyvo\r\nlanguage = fr_fr\r\ngender=M\r\nvariety = "
      "Cloud\r\n"
      "text3=three\r\ntext4 = four = 4\r\ntext5=\r\ntext7=seven");
  ASSERT_THAT(ini.complaints, IsEmpty());
  ASSERT_THAT(ini.engines, SizeIs(1));
  const InstalledEngine& engine = ini.engines.front();
  EXPECT_EQ(engine.key1, L"Fran\u00E7ois");
  EXPECT_EQ(engine.key2, L"Cloud");
  EXPECT_EQ(engine.language, L"fr-FR");
  EXPECT_EQ(engine.engineType, L"skyvo");
  EXPECT_EQ(engine.gender, L"M");
  EXPECT_EQ(engine.sampleRateHz, 48000);
  EXPECT_EQ(engine.text3, L"three");
  EXPECT_EQ(engine.text4, L"four = 4");
  EXPECT_EQ(engine.text5, L"");
  EXPECT_EQ(engine.text7, L"seven");
  EXPECT_TRUE(engine.synthesizerVoice.empty());
}

TEST(EnginesIni, MissingOptionalSettingsHaveDefaults) {
  const EnginesIni ini = parseEnginesIni("[A]\nlanguage=en\ntype=x\n");
  ASSERT_THAT(ini.engines, SizeIs(1));
  EXPECT_EQ(ini.engines[0].key2, L"Standard");
  EXPECT_EQ(ini.engines[0].sampleRateHz, 22050);
  EXPECT_EQ(ini.engines[0].gender, L"");
}

TEST(EnginesIni, AMalformedEngineIsLeftOutAndTheOthersStay) {
  for (const char* const malformed :
       {"[Bad]\nlanguage=en\n", "[Bad]\ntype=x\n", "[Bad]\nlanguage=en\ntype=x\nrate=fast\n",
        "[Bad]\nlanguage=en\ntype=x\nrate=-8000\n", "[Bad]\nlanguage=en\ntype=x\nrate=99999999999\n",
        "[Bad]\nlanguage=en\ntype=x\ngender=female\n", "[Bad]\nlanguage=en\ntype=x\nnonsense\n",
        "[Bad]\nlanguage=en\ntype=\xFF\n", "[Bad\nlanguage=en\ntype=x\n", "[]\nlanguage=en\ntype=x\n",
        "language=en\ntype=x\n"}) {
    const EnginesIni ini = parseEnginesIni("[First]\nlanguage=en\ntype=x\n" + std::string(malformed) +
                                           "[Last]\nlanguage=en\ntype=x\n");
    // A setting in front of any section would belong to the section before it here.
    const bool loose = std::string_view(malformed).starts_with("language");
    EXPECT_THAT(ini.engines, SizeIs(2)) << malformed;
    EXPECT_THAT(ini.complaints, SizeIs(loose ? 0 : 1)) << malformed;
  }
}

TEST(EnginesIni, ComplaintsNameTheLine) {
  const EnginesIni ini = parseEnginesIni("x=y\n\n[A]\nlanguage=en\ntype=t\nnovelty=1\n[B]\nrate=0\n");
  ASSERT_THAT(ini.complaints, SizeIs(3));
  EXPECT_THAT(ini.complaints[0], HasSubstr("line 1:"));
  EXPECT_THAT(ini.complaints[1], HasSubstr("line 6:"));
  EXPECT_THAT(ini.complaints[2], HasSubstr("line 8:"));
  EXPECT_THAT(ini.engines, SizeIs(1)) << "an unknown setting harms nothing";
}

TEST(EnginesIni, FilesOfAnotherKindAreNoEnginesAndFewComplaints) {
  std::string binary(500'000, '\0');
  for (size_t index = 0; index < binary.size(); ++index) binary[index] = static_cast<char>(index * 7 % 251);
  const EnginesIni ini = parseEnginesIni(binary);
  EXPECT_THAT(ini.engines, IsEmpty());
  EXPECT_LE(ini.complaints.size(), 100U);
}

}  // namespace
}  // namespace lxapi
