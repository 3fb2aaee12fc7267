// The stored texts are files below data/.
#include "support/stored_text.h"

#include <stdexcept>

#include "platform/files.h"

namespace quillon {

std::string StoredPiece(const std::string& name) {
  return ReadFileBytes(TEST_DATA_PATH "/render/" + name);
}

std::string StoredRow(const std::string& piece, int number) {
  constexpr std::string_view kRowEnd = "  </tr>\r\n";
  const std::string rows = StoredPiece(piece);
  std::size_t start = 0;
  for (int i = 1; i < number; ++i) start = rows.find(kRowEnd, start) + kRowEnd.size();
  return rows.substr(start, rows.find(kRowEnd, start) + kRowEnd.size() - start);
}

std::string StoredPage(const std::string& name) {
  return ReadFileBytes(TEST_DATA_PATH "/pages/" + name);
}

std::size_t PlaceOf(const std::string& text, std::string_view piece) {
  const std::size_t place = text.find(piece);
  if (place == std::string::npos) throw std::runtime_error("not there: " + std::string(piece));
  return place;
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  std::size_t place = PlaceOf(text, from);
  for (; place != std::string::npos; place = text.find(from, place + to.size())) {
    text.replace(place, from.size(), to);
  }
  return text;
}

}  // namespace quillon
