#pragma once

// Where a product's user dictionaries and their editor lie.
//
// An engine's own files lie in its folder F, the user's in D = "\Narravo\UserDict" under the documents
// folder. P, the per-engine part of their names, is the letters and digits of the language code in capitals
// ("en-US" gives "ENUS"): a dictionary serves every voice of its language.
//
//   engine type      editor                 path 2                                       path 3
//   nv (any case)    F\UserDicNV.exe        F\data-common\userdict\userdict_P.csv        D\userdict_P.csv
//   any other        F\bin\UserDicP.exe     D\userdict_P.lex                             D\userdict_P.csv
//
// An engine of type nv reads word lists only and shares one between all users; the others read lexicons too.
// A path whose folder is unknown is empty.

#include <speech/product.h>

namespace speech {

struct ProductPaths {
  CStringW editor;
  CStringW dictionary2;
  CStringW dictionary3;
};

/// @param engineFolder  the engine's installation folder without a trailing backslash, or empty
ProductPaths productPaths(const CStringW& engineFolder, const CStringW& engineType,
                          const CStringW& languageCode);

/// Creates "\Narravo" and its "\log" under the documents folder; existing folders and failures are ignored.
void createUserFolders();

}  // namespace speech
