#include "lxapi/bundled/engines_ini.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace speech::lxapi {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST(EnginesIni, ReadsEverySettingInAnyOrderAndCase) {
  const EnginesIni ini = parseEnginesIni(
      "\xEF\xBB\xBF; comment\r\n# another\r\n\r\n"
      "  [Fran\xC3\xA7ois]  \r\n RATE = 768000\r\nType=skyvo\r\nlanguage = fr_fr\r\ngender=M\r\nvariety = "
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
  EXPECT_EQ(engine.sampleRateHz, 768000);
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
  const std::string good = "language=en\ntype=x\n";
  for (const std::string& malformed :
       {std::string("[Bad]\nlanguage=en\n"), std::string("[Bad]\ntype=x\n"), "[Bad]\n" + good + "rate=fast\n",
        "[Bad]\n" + good + "rate=-8000\n", "[Bad]\n" + good + "rate=99999999999\n",
        "[Bad]\n" + good + "rate=768001\n", "[Bad]\n" + good + "gender=female\n",
        "[Bad]\n" + good + "nonsense\n", std::string("[Bad]\nlanguage=en\ntype=\xFF\n"), "[Bad\n" + good,
        "[]\n" + good}) {
    const EnginesIni ini = parseEnginesIni("[First]\n" + good + malformed + "[Last]\n" + good);
    EXPECT_THAT(ini.engines, SizeIs(2)) << malformed;
    EXPECT_THAT(ini.complaints, SizeIs(1)) << malformed;
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
}  // namespace speech::lxapi
