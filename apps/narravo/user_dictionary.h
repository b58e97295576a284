#pragma once

// User dictionaries as the engine judges them.

#include <string>
#include <vector>

#include <speech/text_to_speech.h>

namespace narravo {

struct BadEntry {
  long line;           ///< Where the entry begins, from 1.
  std::string reason;  ///< UTF-8, without a full stop.
};

struct DictionaryReport {
  std::size_t goodEntries = 0;
  std::vector<BadEntry> badEntries;
};

/// Asks the engine about every entry of a CSV word list. Throws HostError when the file cannot be read or is
/// not text.
DictionaryReport checkUserDictionary(ITextToSpeech& engine, const std::string& name);

/// Loads a CSV word list into the engine. Throws HostError, and loads nothing, when an entry of it is bad.
void loadUserDictionary(ITextToSpeech& engine, const std::string& name);

}  // namespace narravo
