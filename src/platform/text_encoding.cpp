// Charset conversion on iconv.
#include "platform/text_encoding.h"

#include <iconv.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace quillon {
namespace {

constexpr char kEscape = '\x1B';  // shifts some charsets

// In UTF-8, a byte behind the first one of its character.
bool ContinuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

bool IsUtf8(const std::string& charSet) {
  return strcasecmp(charSet.c_str(), "UTF-8") == 0;
}

// An open conversion that closes itself.
class Conversion {
 public:
  Conversion(const char* to, const char* from) : descriptor_(iconv_open(to, from)) {}
  ~Conversion() {
    if (known()) iconv_close(descriptor_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  // iconv tells an unknown charset by the pointer -1.
  bool known() const {
    return descriptor_ != reinterpret_cast<iconv_t>(-1);  // NOLINT(performance-no-int-to-ptr)
  }

  // Converts all of `input`; what cannot be converted becomes "?".
  std::string Run(std::string_view input, bool inputIsUtf8) {
    std::string output;
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);  // from the first shift state
    std::string source(input);
    char* next = source.data();
    std::size_t left = source.size();
    while (left > 0) {
      Step(&next, &left, output);
      if (left == 0) break;
      char question[] = "?";
      char* questionNext = question;
      std::size_t questionLeft = 1;
      Step(&questionNext, &questionLeft, output);
      SkipCharacter(next, left, inputIsUtf8);
    }
    Step(nullptr, nullptr, output);  // ends a shift state, as ISO-2022-JP has them
    return output;
  }

 private:
  void Step(char** next, std::size_t* left, std::string& output) {
    std::array<char, 512> buffer;
    bool full = true;
    while (full) {
      char* out = buffer.data();
      std::size_t room = buffer.size();
      const std::size_t result = iconv(descriptor_, next, left, &out, &room);
      full = result == static_cast<std::size_t>(-1) && errno == E2BIG;
      output.append(buffer.data(), buffer.size() - room);
    }
  }

  static void SkipCharacter(char*& next, std::size_t& left, bool utf8) {
    do {
      ++next;
      --left;
    } while (utf8 && left > 0 && ContinuesCharacter(*next));
  }

  iconv_t descriptor_;
};

// Bytes that belong to no character count as one each, so that nothing passes the count.
std::string FirstOfUtf8(std::string_view text, std::size_t count) {
  constexpr int kLongestCharacter = 4;
  std::size_t end = 0;
  for (; count > 0 && end < text.size(); --count) {
    int length = 0;
    do {
      ++end;
      ++length;
    } while (length < kLongestCharacter && end < text.size() && ContinuesCharacter(text[end]));
  }
  return std::string(text.substr(0, end));
}

bool IsPlainAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x80 && character != kEscape;
  });
}

bool NeedsNoConversion(std::string_view text, const std::string& charSet) {
  return charSet.empty() || IsUtf8(charSet) || IsPlainAscii(text);
}

}  // namespace

std::string PageText(std::string_view utf8, const std::string& charSet) {
  if (NeedsNoConversion(utf8, charSet)) return std::string(utf8);
  Conversion conversion(charSet.c_str(), "UTF-8");
  return conversion.known() ? conversion.Run(utf8, true) : std::string(utf8);
}

std::string DatabaseText(std::string_view bytes, const std::string& charSet) {
  if (NeedsNoConversion(bytes, charSet)) return std::string(bytes);
  Conversion conversion("UTF-8", charSet.c_str());
  return conversion.known() ? conversion.Run(bytes, false) : std::string(bytes);
}

bool IsKnownCharset(const std::string& charSet) {
  return !charSet.empty() && Conversion(charSet.c_str(), "UTF-8").known();
}

std::string FirstCharacters(std::string_view text, std::size_t count, const std::string& charSet) {
  if (charSet.empty() || IsUtf8(charSet)) return FirstOfUtf8(text, count);
  if (text.find(kEscape) == std::string_view::npos) return std::string(text.substr(0, count));
  return PageText(FirstOfUtf8(DatabaseText(text, charSet), count), charSet);
}

struct LoadedCharset::Conversions {
  explicit Conversions(const std::string& charSet)
      : toPages(charSet.c_str(), "UTF-8"), toDatabase("UTF-8", charSet.c_str()) {}

  Conversion toPages;
  Conversion toDatabase;
};

LoadedCharset::LoadedCharset(const std::string& charSet)
    : conversions_(std::make_unique<Conversions>(charSet)) {}

LoadedCharset::~LoadedCharset() = default;

}  // namespace quillon
