// Records of CSV as RFC 4180 has them, with LF at their end.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

// In quotes where the text holds what else would end the field or the record.
inline void AppendCsvField(std::string& text, const std::string& field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) {
    text += field;
    return;
  }
  text += '"';
  for (const char character : field) {
    if (character == '"') text += '"';
    text += character;
  }
  text += '"';
}

inline void AppendCsvRecord(std::string& text, const std::vector<std::string>& fields) {
  std::string_view separator;
  for (const std::string& field : fields) {
    text += separator;
    AppendCsvField(text, field);
    separator = ",";
  }
  text += '\n';
}

}  // namespace quillon
