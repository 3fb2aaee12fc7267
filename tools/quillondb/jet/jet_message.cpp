// Numbers as the machine holds them, texts behind their length, values behind their kind.
#include "quillondb/jet/jet_message.h"

#include <array>
#include <cstring>
#include <utility>

#include "quillondb/jet/reading_failure.h"

namespace quillon {
namespace {

template <typename Number>
void Put(std::string& bytes, Number number) {
  std::array<char, sizeof(Number)> image{};
  std::memcpy(image.data(), &number, sizeof number);
  bytes.append(image.data(), image.size());
}

void PutText(std::string& bytes, std::string_view text) {
  Put(bytes, std::uint64_t{text.size()});
  bytes += text;
}

class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : rest_(bytes) {}

  bool empty() const { return rest_.empty(); }

  template <typename Number>
  Number Take() {
    Number number{};
    const std::string_view image = Piece(sizeof number);
    std::memcpy(&number, image.data(), sizeof number);
    return number;
  }

  std::string TakeText() { return std::string(Piece(Take<std::uint64_t>())); }

 private:
  std::string_view Piece(std::uint64_t length) {
    if (length > rest_.size()) throw ReadingFailure("a message of the reader is cut off");
    const std::string_view piece = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return piece;
  }

  std::string_view rest_;
};

// What stands behind the kind of a value.
struct Putter {
  std::string& bytes;

  void operator()(JetNull) const {}
  void operator()(JetOpaque) const {}
  void operator()(JetDate date) const { Put(bytes, date.days); }
  void operator()(const std::string& text) const { PutText(bytes, text); }
  template <typename Number>
  void operator()(Number number) const {
    Put(bytes, number);
  }
};

// The values by their kind, which is the place of their type in JetValue.
JetValue TakeValue(Bytes& bytes) {
  switch (bytes.Take<std::uint8_t>()) {
    case 0:
      return JetNull{};
    case 1:
      return bytes.Take<std::uint8_t>() != 0;
    case 2:
      return bytes.Take<std::int64_t>();
    case 3:
      return bytes.Take<float>();
    case 4:
      return bytes.Take<double>();
    case 5:
      return JetDate{bytes.Take<double>()};
    case 6:
      return bytes.TakeText();
    case 7:
      return JetOpaque{};
    default:
      throw ReadingFailure("a message of the reader holds an unknown kind of value");
  }
}

}  // namespace

std::string TableMessage(const JetTable& table) {
  std::string bytes;
  PutText(bytes, table.name);
  Put(bytes, table.rows);
  for (const std::string& column : table.columns) PutText(bytes, column);
  return bytes;
}

std::string RowMessage(const JetRow& row) {
  std::string bytes;
  for (const JetValue& value : row) {
    Put(bytes, static_cast<std::uint8_t>(value.index()));
    std::visit(Putter{bytes}, value);
  }
  return bytes;
}

JetTable TableOfMessage(std::string_view message) {
  Bytes bytes(message);
  JetTable table;
  table.name = bytes.TakeText();
  table.rows = bytes.Take<std::int64_t>();
  while (!bytes.empty()) table.columns.push_back(bytes.TakeText());
  return table;
}

JetRow RowOfMessage(std::string_view message) {
  Bytes bytes(message);
  JetRow row;
  while (!bytes.empty()) row.push_back(TakeValue(bytes));
  return row;
}

}  // namespace quillon
