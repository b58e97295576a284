#include "lxapi/bundled/csv_parser.h"

#include <algorithm>

namespace speech::lxapi {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

CsvParser::CsvParser(std::string_view text) : text_(text) {
  if (text_.starts_with(kByteOrderMark)) text_.remove_prefix(kByteOrderMark.size());
}

CsvParser::Status CsvParser::next(std::vector<std::string>& fields) {
  recordLine_ = line_;
  if (position_ >= text_.size()) {
    fields.clear();
    return Status::kEnd;
  }
  // The strings of the record before serve again: a large file would otherwise spend its time on memory.
  size_t count = 0;
  for (;;) {
    if (count == fields.size()) fields.emplace_back();
    std::string& field = fields[count++];
    field.clear();
    if (position_ < text_.size() && text_[position_] == '"') {
      if (const Status status = quotedField(field); status != Status::kRecord) {
        fields.clear();
        return status;
      }
    } else {
      const size_t end = std::min(text_.find_first_of(",\n", position_), text_.size());
      field.assign(text_.substr(position_, end - position_));
      position_ = end;
      // The carriage return belongs to the line's end.
      const bool lineEnds = position_ >= text_.size() || text_[position_] == '\n';
      if (lineEnds && field.ends_with('\r')) field.pop_back();
    }
    if (atLineEnd()) break;
    ++position_;  // the comma
  }
  fields.resize(count);
  skipLineEnd();
  return Status::kRecord;
}

CsvParser::Status CsvParser::quotedField(std::string& field) {
  ++position_;
  for (;;) {
    const size_t quote = text_.find('"', position_);
    const std::string_view part = text_.substr(position_, std::min(quote, text_.size()) - position_);
    line_ += static_cast<size_t>(std::count(part.begin(), part.end(), '\n'));
    if (quote == std::string_view::npos) {
      position_ = text_.size();
      return Status::kOpenQuote;
    }
    field += part;
    position_ = quote + 1;
    if (position_ >= text_.size() || text_[position_] != '"') break;
    field += '"';
    ++position_;
  }
  if (atLineEnd() || text_[position_] == ',') return Status::kRecord;
  position_ = std::min(text_.find('\n', position_), text_.size());
  skipLineEnd();
  return Status::kStrayQuote;
}

bool CsvParser::atLineEnd() const {
  const std::string_view rest = text_.substr(position_);
  return rest.empty() || rest.front() == '\n' || rest == "\r" || rest.starts_with("\r\n");
}

void CsvParser::skipLineEnd() {
  if (position_ < text_.size() && text_[position_] == '\r') ++position_;
  if (position_ < text_.size() && text_[position_] == '\n') {
    ++position_;
    ++line_;
  }
}

std::string makeCsvRecord(const std::vector<std::string>& fields) {
  std::string record;
  for (const std::string& field : fields) {
    if (!record.empty() || &field != &fields.front()) record += ',';
    if (field.find_first_of(",\"\r\n") == std::string::npos && !field.starts_with(kByteOrderMark)) {
      record += field;
      continue;
    }
    record += '"';
    for (const char letter : field) {
      if (letter == '"') record += '"';
      record += letter;
    }
    record += '"';
  }
  return record + "\r\n";
}

}  // namespace speech::lxapi
