// RFC 5322, 2045 to 2047 and 2183, as far as a composed mail has use for them.
#include "support/mail_reader.h"

#include <algorithm>
#include <cctype>
#include <regex>
#include <stdexcept>

namespace quillon {
namespace {

[[noreturn]] void Fail(const std::string& what, const std::string& text) {
  throw std::runtime_error(what + ": " + text.substr(0, 300));
}

std::string Trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

// The text of a quoted string, which begins at the position; moves the position behind it.
std::string TakeQuoted(const std::string& text, std::size_t& position) {
  std::string content;
  for (++position; position < text.size() && text[position] != '"'; ++position) {
    if (text[position] == '\\' && position + 1 < text.size()) ++position;
    content += text[position];
  }
  if (position >= text.size()) Fail("open quotes", text);
  ++position;
  return content;
}

const std::regex& EncodedWord() {
  static const std::regex kWord(R"(=\?([^?\s]+)\?([bBqQ])\?([^?\s]*)\?=)");
  return kWord;
}

std::string DecodedQ(const std::string& text) {
  return DecodedQuotedPrintable(std::regex_replace(text, std::regex("_"), "=20"));
}

}  // namespace

MailPart::MailPart(const std::string& text) {
  const std::size_t end = text.find("\r\n\r\n");
  if (end == std::string::npos) Fail("no end of the header", text);
  body_ = text.substr(end + 4);
  for (const std::string& line : LinesOf(text.substr(0, end + 2))) {
    if (line.empty()) Fail("empty line", text);
    if (line[0] == ' ' || line[0] == '\t') {
      if (fields_.empty()) Fail("continues nothing", line);
      fields_.back().second += line;
      continue;
    }
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos || colon == 0) Fail("no field", line);
    fields_.emplace_back(line.substr(0, colon), line.substr(colon + 1));
  }
  for (auto& field : fields_) field.second = Trimmed(field.second);
}

std::vector<std::string> MailPart::fieldNames() const {
  std::vector<std::string> names;
  for (const auto& field : fields_) names.push_back(InLowerCase(field.first));
  return names;
}

bool MailPart::HasField(const std::string& name) const {
  const std::vector<std::string> names = fieldNames();
  return std::count(names.begin(), names.end(), InLowerCase(name)) != 0;
}

std::string MailPart::Field(const std::string& name) const {
  const std::string* value = nullptr;
  for (const auto& field : fields_) {
    if (InLowerCase(field.first) != InLowerCase(name)) continue;
    if (value != nullptr) Fail("field stands twice", name);
    value = &field.second;
  }
  if (value == nullptr) Fail("no such field", name);
  return *value;
}

std::string MailPart::FieldText(const std::string& name) const {
  return DecodedWords(Field(name));
}

std::string MailPart::Type() const {
  const std::string field = Field("Content-Type");
  return InLowerCase(Trimmed(field.substr(0, field.find(';'))));
}

std::string MailPart::Disposition() const {
  const std::string field = Field("Content-Disposition");
  return InLowerCase(Trimmed(field.substr(0, field.find(';'))));
}

std::string MailPart::Encoding() const {
  if (!HasField("Content-Transfer-Encoding")) return "7bit";
  return InLowerCase(Field("Content-Transfer-Encoding"));
}

std::string MailPart::Parameter(const std::string& name, const std::string& field) const {
  const std::string text = Field(field);
  std::size_t position = text.find(';');
  while (position < text.size()) {
    const std::size_t equals = text.find('=', ++position);
    if (equals == std::string::npos) Fail("no parameter", text);
    const std::string found = InLowerCase(Trimmed(text.substr(position, equals - position)));
    position = equals + 1;
    std::string value;
    if (position < text.size() && text[position] == '"') {
      value = TakeQuoted(text, position);
      position = text.find(';', position);
    } else {
      const std::size_t end = text.find(';', position);
      value = Trimmed(text.substr(position, end - position));
      position = end;
    }
    if (found == InLowerCase(name)) return value;
  }
  return "";
}

std::string MailPart::Decoded() const {
  const std::string encoding = Encoding();
  if (encoding == "base64") return DecodedBase64(body_);
  if (encoding == "quoted-printable") return DecodedQuotedPrintable(body_);
  if (encoding != "7bit") Fail("unexpected encoding", encoding);
  return body_;
}

std::vector<MailPart> MailPart::Parts() const {
  const std::string boundary = Parameter("boundary");
  if (boundary.empty()) Fail("no boundary", Field("Content-Type"));
  const std::string text = "\r\n" + body_;
  const std::string delimiter = "\r\n--" + boundary;
  std::vector<MailPart> parts;
  std::size_t position = text.find(delimiter);
  while (position != std::string::npos) {
    position += delimiter.size();
    if (text.compare(position, 2, "--") == 0) return parts;
    if (text.compare(position, 2, "\r\n") != 0) Fail("bad delimiter", text.substr(position));
    position += 2;
    const std::size_t end = text.find(delimiter, position);
    if (end == std::string::npos) break;
    std::string part = text.substr(position, end - position);
    // Where the body is empty, the line end of the delimiter may be the one that ends the header.
    if (part.find("\r\n\r\n") == std::string::npos) part += "\r\n\r\n";
    parts.emplace_back(part);
    position = end;
  }
  Fail("the parts do not end", text);
}

std::vector<MailPart> MailPart::Leaves() const {
  if (Type().compare(0, 10, "multipart/") != 0) return {*this};
  std::vector<MailPart> leaves;
  for (const MailPart& part : Parts()) {
    for (MailPart& leaf : part.Leaves()) leaves.push_back(std::move(leaf));
  }
  return leaves;
}

// A phrase: words that stand by themselves, in quotes or encoded.
std::string NameOf(const std::string& field) {
  const std::size_t open = field.rfind('<');
  if (open == std::string::npos) return "";
  const std::string phrase = Trimmed(field.substr(0, open));
  std::string name;
  std::string encoded;  // words that are not read yet, since those after them may belong to them
  for (std::size_t position = 0; position < phrase.size();) {
    if (phrase[position] == '"') {
      name += DecodedWords(encoded);
      encoded.clear();
      name += TakeQuoted(phrase, position);
      continue;
    }
    const std::size_t end = std::min(phrase.find('"', position), phrase.size());
    encoded += phrase.substr(position, end - position);
    position = end;
    if (std::regex_replace(encoded, EncodedWord(), "").find_first_of("()<>[]:;@\\,.") !=
        std::string::npos) {
      Fail("name without quotes", field);
    }
  }
  return name + DecodedWords(encoded);
}

std::string AddressOf(const std::string& field) {
  const std::size_t open = field.rfind('<');
  if (open == std::string::npos) return Trimmed(field);
  if (field.empty() || field.back() != '>') Fail("no address", field);
  return field.substr(open + 1, field.size() - open - 2);
}

std::vector<std::string> EncodedWords(const std::string& text) {
  std::vector<std::string> words;
  for (std::sregex_iterator word(text.begin(), text.end(), EncodedWord()), end; word != end;
       ++word) {
    words.push_back(word->str());
  }
  return words;
}

std::string DecodedWords(const std::string& text) {
  std::string decoded;
  std::size_t position = 0;
  for (std::sregex_iterator word(text.begin(), text.end(), EncodedWord()), end; word != end;
       ++word) {
    const std::string before =
        text.substr(position, static_cast<std::size_t>(word->position()) - position);
    // What stands between two words belongs to neither.
    if (position == 0 || !Trimmed(before).empty()) decoded += before;
    const std::string charSet = InLowerCase((*word)[1]);
    if (charSet != "utf-8" && charSet != "us-ascii") Fail("word in another charset", word->str());
    const std::string content = (*word)[3];
    decoded += InLowerCase((*word)[2]) == "b" ? DecodedBase64(content) : DecodedQ(content);
    position = static_cast<std::size_t>(word->position() + word->length());
  }
  return decoded + text.substr(position);
}

std::string DecodedBase64(const std::string& text) {
  const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned buffer = 0;
  std::size_t count = 0;
  std::size_t padding = 0;
  for (const char letter : text) {
    if (letter == '\r' || letter == '\n') continue;
    ++count;
    if (letter == '=') {
      ++padding;
      continue;
    }
    const std::size_t digit = digits.find(letter);
    if (digit == std::string::npos || padding != 0) Fail("no base64", text);
    buffer = (buffer << 6 | static_cast<unsigned>(digit)) & 0xFFFFFF;
    // The first digit of four completes no byte.
    if (count % 4 != 1) bytes += static_cast<char>(buffer >> (2 * ((4 - count % 4) % 4)) & 0xFF);
  }
  if (count % 4 != 0 || padding > 2) Fail("base64 of a wrong length", text);
  return bytes;
}

std::string DecodedQuotedPrintable(const std::string& text) {
  // Blanks at the end of a line may be lost on the way, so that they have to be encoded.
  if (std::regex_search(text, std::regex("[ \t](\r\n|$)"))) Fail("blank at a line's end", text);
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '=') {
      bytes += text[i];
      continue;
    }
    const std::string code = text.substr(i + 1, 2);
    if (code.size() != 2) Fail("quoted-printable ends in the middle", text);
    i += 2;
    if (code == "\r\n") continue;  // a line that goes on
    if (!std::isxdigit(static_cast<unsigned char>(code[0])) ||
        !std::isxdigit(static_cast<unsigned char>(code[1]))) {
      Fail("no quoted-printable", text.substr(i - 2));
    }
    bytes += static_cast<char>(std::stoi(code, nullptr, 16));
  }
  return bytes;
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t end = text.find_first_of("\r\n", position);
    if (end == std::string::npos) Fail("the last line does not end", text.substr(position));
    if (text.compare(end, 2, "\r\n") != 0) Fail("half a line end", text.substr(position));
    lines.push_back(text.substr(position, end - position));
    position = end + 2;
  }
  return lines;
}

std::string InLowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return text;
}

}  // namespace quillon
