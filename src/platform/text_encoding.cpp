// Charset conversion on iconv.
#include "platform/text_encoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <utility>

namespace quillon {
namespace {

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
    } while (utf8 && left > 0 && (static_cast<unsigned char>(*next) & 0xC0) == 0x80);
  }

  iconv_t descriptor_;
};

// Conversions stay open once they are used: the C library loads a file for each opening.
// A charset that is unknown stays so.
Conversion& OpenConversion(const std::string& to, const std::string& from) {
  static std::map<std::pair<std::string, std::string>, Conversion> conversions;
  return conversions.try_emplace({to, from}, to.c_str(), from.c_str()).first->second;
}

bool IsPlainAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x80 && byte != 0x1B;  // the escape shifts some charsets
  });
}

bool NeedsNoConversion(std::string_view text, const std::string& charSet) {
  return charSet.empty() || charSet == "UTF-8" || IsPlainAscii(text);
}

}  // namespace

std::string PageText(std::string_view utf8, const std::string& charSet) {
  if (NeedsNoConversion(utf8, charSet)) return std::string(utf8);
  Conversion& conversion = OpenConversion(charSet, "UTF-8");
  return conversion.known() ? conversion.Run(utf8, true) : std::string(utf8);
}

std::string DatabaseText(std::string_view bytes, const std::string& charSet) {
  if (NeedsNoConversion(bytes, charSet)) return std::string(bytes);
  Conversion& conversion = OpenConversion("UTF-8", charSet);
  return conversion.known() ? conversion.Run(bytes, false) : std::string(bytes);
}

void LoadCharset(const std::string& charSet) {
  constexpr std::string_view kLetter = "\xC3\xA4";  // any one beyond ASCII
  DatabaseText(PageText(kLetter, charSet), charSet);
}

}  // namespace quillon
