// The CSV parser and the dictionary loader, on any bytes.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "lxapi/bundled/csv_parser.h"
#include "lxapi/bundled/dictionary.h"
#include "lxapi/bundled/segmenter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  lxapi::CsvParser parser(text);
  std::vector<std::string> fields;
  for (auto status = parser.next(fields); status != lxapi::CsvParser::Status::End;
       status = parser.next(fields)) {
    if (status != lxapi::CsvParser::Status::Record) continue;
    // What was read is what a record made of it says again.
    const std::string record = lxapi::makeCsvRecord(fields);
    lxapi::CsvParser second(record);
    std::vector<std::string> again;
    if (second.next(again) != lxapi::CsvParser::Status::Record || again != fields) std::abort();
  }
  lxapi::checkRecord(text);
  for (const auto kind : {lxapi::DictionaryKind::Text, lxapi::DictionaryKind::Phonemes}) {
    const lxapi::DictionaryResult result = lxapi::parseDictionary(text, kind);
    if ((result.error == LX_OK) != (result.substitutions != nullptr)) std::abort();
    if (!result.substitutions) continue;
    lxapi::Segmenter segmenter(std::string(text), (size & 1) != 0, {result.substitutions});
    while (segmenter.next()) {
    }
  }
  return 0;
}
