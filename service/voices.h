#pragma once

// The voices that the synthesizer offers, and the rules by which a request's voice and language find one.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace speech::service {

struct VoiceLanguage {
  std::string tag;   // "en-us", lower case
  int priority = 0;  // smaller means that the voice suits this language better
};

struct Voice {
  std::string name;        // "English (America)"
  std::string identifier;  // "gmw/en-US": what the synthesizer loads
  std::vector<VoiceLanguage> languages;
};

struct Variety {
  std::string name;  // "f2": appended to a voice after a "+"
};

// A voice with its variety, ready for the synthesizer.
struct ChosenVoice {
  std::string label;   // "English (America)+f2": for people
  std::string engine;  // "gmw/en-US+f2": for the synthesizer
};

class VoiceList {
 public:
  // Reads the synthesizer's listing: one line each, fields separated by tabs, "voice", name, identifier and
  // then "priority tag" for each language; or "variety" and its name. Other lines are ignored.
  static VoiceList fromListing(std::string_view listing);

  // The voice of that name, identifier ("gmw/en-US" or "en-US") or language tag, letter case aside, with an
  // optional variety after a "+". The "+" may also stand for a space, as in a form: names hold spaces.
  std::optional<ChosenVoice> byName(std::string_view name) const;

  // The voice that suits a language best; "de-AT" falls back on "de".
  std::optional<ChosenVoice> byLanguage(std::string_view tag) const;

  const std::vector<Voice>& voices() const { return voices_; }
  const std::vector<Variety>& varieties() const { return varieties_; }

 private:
  const Voice* findVoice(std::string_view name) const;
  const Voice* bestForLanguage(std::string_view tag) const;
  const Variety* findVariety(std::string_view name) const;

  std::vector<Voice> voices_;
  std::vector<Variety> varieties_;
};

}  // namespace speech::service
