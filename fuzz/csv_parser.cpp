// The CSV parser, the dictionary loader and the segmenter, on any bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "lxapi/bundled/csv_parser.h"
#include "lxapi/bundled/dictionary.h"
#include "lxapi/bundled/segmenter.h"

using namespace speech::lxapi;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CsvParser parser(text);
  std::vector<std::string> fields, again;
  for (auto status = parser.next(fields); status != CsvParser::Status::kEnd; status = parser.next(fields)) {
    if (status != CsvParser::Status::kRecord) continue;
    // A record made of the fields holds the same fields.
    const std::string record = makeCsvRecord(fields);
    if (CsvParser(record).next(again) != CsvParser::Status::kRecord || again != fields) std::abort();
  }
  checkRecord(text);
  for (const auto kind : {DictionaryKind::kText, DictionaryKind::kPhonemes}) {
    const DictionaryResult result = parseDictionary(text, kind);
    if ((result.error == LX_OK) != (result.dictionary != nullptr)) std::abort();
    if (!result.dictionary) continue;
    Segmenter segmenter(std::string(text), (size & 1) != 0, {result.dictionary});
    while (segmenter.next()) {
    }
  }
  return 0;
}
