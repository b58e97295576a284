#include "service/voices.h"

#include <gtest/gtest.h>

namespace speech::service {
namespace {

TEST(Voices, AreFoundByNameIdentifierOrLanguage) {
  const VoiceList voices = VoiceList::fromListing(
      "voice\tGerman\tgmw/de\t5 de\n"
      "voice\tCherokee \tiro/chr\t5 chr-US-Qaaa-x-west\n"
      "voice\tEnglish (Caribbean)\tgmw/en-029\t5 en-029\t10 en\n"
      "voice\tEnglish (America)\tgmw/en-US\t2 en-us\t3 en\n"
      "voice\tEnglish (Scotland)\tgmw/en-sct\t3 en\n"
      "voice\tNorwegian Bokm\u00E5l\tgmq/nb\t5 nb\t5 no\n"
      "voice\tSpanish (Latin America)\troa/es-419\t5 es-419\t5 es-mx\tx es\n"
      "variety\tf2\nvariety\tMr serious\nsomething\telse\nvoice\tcut\n");
  for (const auto& [name, engine] : {
           std::pair{"english (aMERICA)", "gmw/en-US"},
           {"gmw/en-us", "gmw/en-US"},                // the identifier
           {"En-us", "gmw/en-US"},                    // its file
           {"es-MX", "roa/es-419"},                   // a language tag
           {"en", "gmw/en-US"},                       // the first of the best
           {"English (America)+F2", "gmw/en-US+f2"},  // a variety
           {"English+(America)+f2", "gmw/en-US+f2"},  // plus signs for spaces
           {"en-us+Mr serious", "gmw/en-US+Mr serious"},
           {"Cherokee", "iro/chr"},              // listed with a space behind it
           {"Norwegian Bokm\u00E5l", "gmq/nb"},  // UTF-8
           {"Norwegian Bokm\xE5l", "gmq/nb"},    // the client's code page
           {"", ""},
           {"+f2", ""},
           {"English", ""},
           {"cut", ""},
           {"en-us+f99", ""},
           {"../../etc/passwd", ""},
           {"es", ""},
       }) {
    const auto voice = voices.byName(name);
    EXPECT_EQ(voice ? voice->engine : "", engine) << name;
  }
  EXPECT_EQ(voices.byName("EN-US+F2")->label, "English (America)+f2");
  for (const auto& [tag, engine] : {std::pair{"de-AT", "gmw/de"},
                                    {"en-US", "gmw/en-US"},
                                    {"en-NZ-x-kiwi", "gmw/en-US"},
                                    {"xx-YY", ""},
                                    {"-", ""},
                                    {"", ""}}) {
    const auto voice = voices.byLanguage(tag);
    EXPECT_EQ(voice ? voice->engine : "", engine) << tag;
  }
}

}  // namespace
}  // namespace speech::service
