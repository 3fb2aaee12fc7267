// Numbers as texts and back, free of any locale: the shortest form, digit patterns,
// and what counts as a number.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillon {

// Shortest decimal form: an integer without a point, a real with at most 15 digits, a
// point as separator, no grouping and no exponent below 1e15.
std::string NumberText(double number);
// The same with at most 7 digits.
std::string SingleText(float number);

// The number that the whole text reads as, outer blanks aside: a sign, digits with one
// point, an exponent. Nothing for any other text, "" and "1,000" among them.
std::optional<double> ParseNumber(std::string_view text);
bool IsNumeric(std::string_view text);

// The number at the beginning of a text, blanks ignored: "12 G" is 12, "1 234 P" is
// 1234, no number is 0.
double LeadingNumber(std::string_view text);

// A whole text as a 32-bit integer, ties to even. ConversionFailure where it is no
// number, OverflowFailure beyond the range.
std::int32_t TextToLong(std::string_view text);
// A number as a 32-bit integer, ties to even. OverflowFailure beyond the range.
std::int32_t NumberToLong(double number);
// The same of 16 bits.
std::int16_t NumberToInteger16(double number);
// A number as a 32-bit float. OverflowFailure beyond the range.
float NumberToSingle(double number);

// Nearest whole number, ties to even: the rounding of all report figures.
double RoundHalfEven(double number);

// The number by a digit pattern of "#", "0", blanks and one point: "### ##0" groups by
// three with a blank, "#" leaves out what is not there, "0" prints it. Halves round away
// from zero, digits beyond the pattern stand in front, the minus stands directly before
// the digits. Not trimmed: the blanks of groups that are not there remain.
std::string DigitPattern(double number, std::string_view pattern);
// A text by a digit pattern: its number where it is numeric, else the text as it is.
std::string DigitPattern(std::string_view text, std::string_view pattern);

// Without the blanks at both ends; other white space stays.
std::string Trimmed(std::string_view text);

}  // namespace quillon
