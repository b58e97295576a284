#include "service/voices.h"

#include <gtest/gtest.h>

#include <utility>

namespace speech::service {
namespace {

const char kListing[] =
    "voice\tGerman\tgmw/de\t5 de\n"
    "voice\tCherokee \tiro/chr\t5 chr-US-Qaaa-x-west\n"
    "voice\tEnglish (Caribbean)\tgmw/en-029\t5 en-029\t10 en\n"
    "voice\tEnglish (America)\tgmw/en-US\t2 en-us\t3 en\n"
    "voice\tNorwegian Bokm\u00E5l\tgmq/nb\t5 nb\t5 no\n"
    "voice\tSpanish (Latin America)\troa/es-419\t5 es-419\t5 es-mx\tx es\n"
    "variety\tf2\n"
    "variety\tMr serious\n"
    "something\telse\n"
    "voice\tcut\n";

TEST(VoiceList, FindsVoicesByName) {
  const VoiceList catalogue = VoiceList::fromListing(kListing);
  for (const auto& [name, engine] : {
           std::pair{"English (America)", "gmw/en-US"},  // the name
           {"english (aMERICA)", "gmw/en-US"},           // letter case aside
           {"gmw/en-us", "gmw/en-US"},                   // the identifier
           {"En-us", "gmw/en-US"},                       // its file
           {"es-MX", "roa/es-419"},                      // a language tag
           {"en", "gmw/en-US"},                          // the best of several
           {"English (America)+f2", "gmw/en-US+f2"},     // a variety
           {"English (America)+F2", "gmw/en-US+f2"},
           {"English+(America)", "gmw/en-US"},  // plus signs for spaces
           {"English+(America)+f2", "gmw/en-US+f2"},
           {"en-us+Mr serious", "gmw/en-US+Mr serious"},
           {"Cherokee", "iro/chr"},              // listed with a space behind it
           {"Norwegian Bokm\u00E5l", "gmq/nb"},  // UTF-8
           {"Norwegian Bokm\xE5l", "gmq/nb"},    // the client's code page
           {"", ""},
           {"+f2", ""},
           {"English", ""},
           {"cut", ""},
           {"en-us+f99", ""},
           {"+", ""},
           {"../../etc/passwd", ""},
           {"es", ""},
       }) {
    const auto voice = catalogue.byName(name);
    EXPECT_EQ(voice ? voice->engine : "", engine) << name;
  }
  EXPECT_EQ(catalogue.byName("EN-US+F2")->label, "English (America)+f2");
  EXPECT_TRUE(VoiceList::fromListing("").voices().empty());
  EXPECT_FALSE(VoiceList::fromListing("").byName("de"));
}

TEST(VoiceList, ALanguageFallsBackOnItsBroaderForm) {
  const VoiceList catalogue = VoiceList::fromListing(kListing);
  EXPECT_EQ(catalogue.byLanguage("de-AT")->engine, "gmw/de");
  EXPECT_EQ(catalogue.byLanguage("en-US")->engine, "gmw/en-US");
  EXPECT_EQ(catalogue.byLanguage("en-NZ-x-kiwi")->engine, "gmw/en-US");
  EXPECT_FALSE(catalogue.byLanguage("-YY"));
  EXPECT_FALSE(catalogue.byLanguage("-"));
  EXPECT_FALSE(catalogue.byLanguage(""));
}

}  // namespace
}  // namespace speech::service
