#pragma once

// What a character is to a text that is spoken: part of a word, punctuation, a blank, or nothing to be passed
// on.

namespace speech::lxapi {

/// White space, line ends and the separators of Unicode.
bool isSpace(char32_t value);

/// Letters, digits, marks and ideographs: what a written word consists of. Anything outside ASCII that is
/// neither space nor known punctuation counts.
bool isWordCharacter(char32_t value);

/// Sentence-ending punctuation of the scripts in use, and the lighter kind that a comma stands for.
bool isSentenceEnd(char32_t value);
bool isClauseEnd(char32_t value);

/// Quotation marks and brackets that may follow a sentence's last punctuation.
bool isClosing(char32_t value);

/// Control characters, line ends and tabs among them.
bool isControl(char32_t value);

/// The character as the synthesizer may see it: it takes control characters and private ones as commands of
/// its own, so they become blanks.
char32_t harmless(char32_t value);

/// Lower case of Latin, Greek and Cyrillic letters; other characters as they are.
char32_t foldCase(char32_t value);

}  // namespace speech::lxapi
