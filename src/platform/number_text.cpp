// Numbers as texts and back on {fmt} and <charconv>, which know no locale.
#include "platform/number_text.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/failure.h"
#include "platform/text_lines.h"

namespace quillon {
namespace {

constexpr double kPlainLimit = 1e15;  // below it no exponent is written

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

// A fixed-point text without the zeros behind its last digit.
std::string WithoutTrailingZeros(std::string text) {
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

// Reads a text whose whole length is a number.
double ReadNumber(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::result_out_of_range) {
    throw OverflowFailure("number out of range: " + std::string(text));
  }
  return number;
}

// `number` with `digits` significant digits, without an exponent where it is below
// the limit.
std::string ShortestText(double number, int digits) {
  if (number == 0) return "0";
  const std::string rounded = fmt::format("{:.{}e}", number, digits - 1);
  const double value = ReadNumber(rounded);
  if (!std::isfinite(value) || std::abs(value) >= kPlainLimit) {
    return fmt::format("{:.{}G}", number, digits);
  }
  const int exponent = std::stoi(rounded.substr(rounded.find('e') + 1));
  const int decimals = std::max(0, digits - 1 - exponent);
  return WithoutTrailingZeros(fmt::format("{:.{}f}", value, decimals));
}

// Length of the number at the beginning: sign, digits with one point, exponent.
std::size_t NumberLength(std::string_view text) {
  std::size_t end = 0;
  if (end < text.size() && (text[end] == '-' || text[end] == '+')) ++end;
  std::size_t digits = 0;
  bool point = false;
  for (; end < text.size(); ++end) {
    if (IsDigit(text[end])) {
      ++digits;
    } else if (text[end] == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  if (digits == 0) return 0;
  if (end >= text.size() || (text[end] != 'e' && text[end] != 'E')) return end;
  std::size_t exponent = end + 1;
  if (exponent < text.size() && (text[exponent] == '-' || text[exponent] == '+')) ++exponent;
  const std::size_t exponentDigits = exponent;
  while (exponent < text.size() && IsDigit(text[exponent])) ++exponent;
  return exponent > exponentDigits ? exponent : end;
}

// Fills the digits of a whole number into the part of a pattern before its point, from
// the right to the left.
std::string FillWholePart(std::string_view pattern, std::string digits, bool negative) {
  std::string reversed;
  const std::size_t first = pattern.find_first_of("#0");
  bool signWritten = !negative;
  for (std::size_t i = pattern.size(); i > 0; --i) {
    const char placeholder = pattern[i - 1];
    const bool isPlace = placeholder == '#' || placeholder == '0';
    if (isPlace && !digits.empty()) {
      reversed += digits.back();
      digits.pop_back();
    } else if (placeholder == '0') {
      reversed += '0';
    } else if (!isPlace) {
      if (digits.empty() && !signWritten) {
        reversed += '-';
        signWritten = true;
      }
      reversed += placeholder;
    }
    if (i - 1 == first) {  // digits beyond the pattern stand in front of its first place
      reversed.append(digits.rbegin(), digits.rend());
      digits.clear();
    }
  }
  if (!signWritten) reversed += '-';
  return {reversed.rbegin(), reversed.rend()};
}

[[noreturn]] void FailRange(double number) {
  throw OverflowFailure("number out of range: " + NumberText(number));
}

// Nearest whole number of that type, ties to even.
template <typename Whole>
Whole ToWhole(double number) {
  const double rounded = RoundHalfEven(number);
  if (!(rounded >= std::numeric_limits<Whole>::min() &&
        rounded <= std::numeric_limits<Whole>::max())) {
    FailRange(number);
  }
  return static_cast<Whole>(rounded);
}

}  // namespace

std::string NumberText(double number) {
  return ShortestText(number, 15);
}

std::string SingleText(float number) {
  return ShortestText(static_cast<double>(number), 7);
}

std::optional<double> ParseNumber(std::string_view text) {
  const std::string_view trimmed = TrimmedView(text);
  if (trimmed.empty() || NumberLength(trimmed) != trimmed.size()) return std::nullopt;
  return ReadNumber(trimmed);
}

bool IsNumeric(std::string_view text) {
  const std::string_view trimmed = TrimmedView(text);
  return !trimmed.empty() && NumberLength(trimmed) == trimmed.size();
}

double LeadingNumber(std::string_view text) {
  std::string withoutBlanks;
  for (const char character : text) {
    if (character != ' ') withoutBlanks += character;
  }
  const std::size_t length = NumberLength(withoutBlanks);
  return length == 0 ? 0 : ReadNumber(std::string_view(withoutBlanks).substr(0, length));
}

std::int32_t NumberToLong(double number) {
  return ToWhole<std::int32_t>(number);
}

std::int16_t NumberToInteger16(double number) {
  return ToWhole<std::int16_t>(number);
}

float NumberToSingle(double number) {
  if (!(std::abs(number) <= static_cast<double>(std::numeric_limits<float>::max()))) {
    FailRange(number);
  }
  return static_cast<float>(number);
}

std::int32_t TextToLong(std::string_view text) {
  const std::optional<double> number = ParseNumber(text);
  if (!number) throw ConversionFailure("not a number: \"" + std::string(text) + "\"");
  return NumberToLong(*number);
}

double RoundHalfEven(double number) {
  return std::nearbyint(number);
}

std::string DigitPattern(double number, std::string_view pattern) {
  const std::size_t point = pattern.find('.');
  const std::string_view wholePattern = pattern.substr(0, point);
  const int decimals =
      point == std::string_view::npos ? 0 : static_cast<int>(pattern.size() - point - 1);
  const double scale = std::pow(10.0, decimals);
  const double rounded = std::round(std::abs(number) * scale) / scale;
  std::string text = fmt::format("{:.{}f}", rounded, decimals);
  std::string fraction;
  if (decimals > 0) {
    fraction = text.substr(text.find('.'));
    text.erase(text.find('.'));
  }
  if (text == "0") text.clear();  // a "#" prints nothing for it, a "0" its zero
  return FillWholePart(wholePattern, text, number < 0 && rounded != 0) + fraction;
}

std::string DigitPattern(std::string_view text, std::string_view pattern) {
  const std::optional<double> number = ParseNumber(text);
  return number ? DigitPattern(*number, pattern) : std::string(text);
}

std::string Trimmed(std::string_view text) {
  return std::string(TrimmedView(text));
}

}  // namespace quillon
