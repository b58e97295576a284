#pragma once

// Reads comma-separated values (RFC 4180): fields in quotes may hold commas, line ends and doubled quotes;
// records end with LF or CRLF; a byte order mark is ignored.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace speech::lxapi {

class CsvParser {
 public:
  enum class Status {
    kRecord,     ///< `fields` holds the next record, else it is empty. An empty line is one empty field.
    kEnd,        ///< There are no more records.
    kOpenQuote,  ///< A quote is never closed; nothing can be read after it.
    /// Something other than a comma follows a closing quote; the next call goes on with the next line.
    kStrayQuote,
  };

  /// @param text  must outlive the parser
  explicit CsvParser(std::string_view text);

  Status next(std::vector<std::string>& fields);

  /// The line on which the last record began, from 1.
  size_t line() const { return recordLine_; }

 private:
  Status quotedField(std::string& field);
  bool atLineEnd() const;
  void skipLineEnd();

  std::string_view text_;
  size_t position_ = 0;
  size_t line_ = 1;
  size_t recordLine_ = 0;
};

/// A record with its line end, its fields in quotes where they need them.
std::string makeCsvRecord(const std::vector<std::string>& fields);

}  // namespace speech::lxapi
