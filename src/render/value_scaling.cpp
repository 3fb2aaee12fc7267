// Value scaling on decimal digit texts.
#include "render/value_scaling.h"

#include <cmath>
#include <limits>
#include <span>

#include "platform/failure.h"
#include "platform/number_text.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modQuillonWeb";
constexpr std::string_view kMissingMark = "-1";  // the marker of a missing figure

// The value rounded to a whole number, as digits with a leading minus; a text that is no
// number stands as it is.
std::string DigitText(const std::string& value) {
  return DigitPattern(value, "0");
}

// How many leading digits of a text of `length` digits are kept, and what they count.
struct Scale {
  std::size_t length;
  std::size_t kept;
  std::string_view unit;  // of ConvHCBytes
  double factor;          // by which RoundUpYaxisMax multiplies the kept digits
};

constexpr Scale kScales[] = {
    {4, 1, " G", 1e3},  {5, 2, " G", 1e3},  {6, 3, " G", 1e3},  {7, 4, " G", 1e3},
    {8, 2, " T", 1e6},  {9, 3, " T", 1e6},  {10, 4, " T", 1e6}, {11, 2, " P", 1e9},
    {12, 3, " P", 1e9}, {13, 4, " P", 1e9},
};
constexpr std::size_t kLongestScaled = 13;
constexpr std::size_t kPetaDigits = 9;  // digits below a peta, cut off beyond the table

Scale ScaleOf(std::size_t length) {
  if (length > kLongestScaled) return {length, length - kPetaDigits, " P", 1e9};
  return kScales[length - kScales[0].length];
}

// The leading digits of a digit text of four or more. The deciding digit is the third
// from the end, wherever the kept ones stop: only for five to seven digits this is a true
// rounding, and it has to stay so. Beyond the table nothing is rounded.
double KeptNumber(const std::string& digits, const Scale& scale) {
  if (!IsNumeric(digits)) throw ConversionFailure("not a number: \"" + digits + "\"");
  const double kept = LeadingNumber(digits.substr(0, scale.kept));
  const char deciding = digits[digits.size() - 3];
  return digits.size() <= kLongestScaled && deciding >= '5' ? kept + 1 : kept;
}

// What a digit text of at most three characters shows when it is zero or below.
std::string SmallOrMissing(const std::string& digits, std::string_view missing) {
  return digits == kMissingMark ? std::string(missing) : "0";
}

std::string VolumeText(const std::string& digits, bool longForm) {
  if (digits.size() > 4 || (digits.size() == 4 && !longForm)) {
    const Scale scale = ScaleOf(digits.size());
    return DigitPattern(KeptNumber(digits, scale), "### ###") + std::string(scale.unit);
  }
  if (digits.size() == 4 && !IsNumeric(digits)) {
    throw ConversionFailure("not a number: \"" + digits + "\"");
  }
  if (digits.size() < 4 && LeadingNumber(digits) <= 0) return SmallOrMissing(digits, "-");
  return DigitPattern(digits, "### ###") + " M";
}

std::string RoundedAxisTop(const std::string& digits) {
  if (digits.size() > 3) {
    const Scale scale = ScaleOf(digits.size());
    return DigitPattern(KeptNumber(digits, scale) * scale.factor, "0");
  }
  return LeadingNumber(digits) > 0 ? digits : SmallOrMissing(digits, kMissingMark);
}

// Steps of RoundToValue by the length of the digit text, from one digit on.
constexpr double kCeilings[] = {2,      5,         50,         100,        1'000,
                                10'000, 1'000'000, 10'000'000, 10'000'000, 1'000'000'000};

// Number of leading digits that an axis label keeps, by the length of the digit text.
struct LabelRow {
  std::size_t length;
  std::size_t kept;
  std::string_view unit;
};

constexpr LabelRow kVolumeLabels[] = {{4, 1, " G"},  {5, 2, " G"},  {6, 3, " G"},
                                      {7, 1, " T"},  {8, 2, " T"},  {9, 3, " T"},
                                      {10, 1, " P"}, {11, 2, " P"}, {12, 3, " P"}};
constexpr LabelRow kLongestVolumeLabel = {13, 4, " P"};  // and everything longer

constexpr LabelRow kPacketLabels[] = {{4, 1, " K"}, {5, 2, " K"}, {6, 3, " K"}, {7, 1, " M"},
                                      {8, 2, " M"}, {9, 3, " M"}, {10, 1, " G"}};

const LabelRow* FindLabel(std::span<const LabelRow> rows, std::size_t length) {
  for (const LabelRow& row : rows) {
    if (row.length == length) return &row;
  }
  return nullptr;
}

// The leading digits by "### ##0" and the unit; the other digits are dropped.
std::string Label(const std::string& digits, const LabelRow& row) {
  return Trimmed(DigitPattern(digits.substr(0, row.kept), "### ##0") + std::string(row.unit));
}

// Half of a number: in its plain form, or by the pattern where that is longer than
// three characters.
std::string HalfText(double number) {
  constexpr std::size_t kLongestPlain = 3;
  const double half = number / 2;
  const std::string plain = NumberText(half);
  return plain.size() <= kLongestPlain ? plain : Trimmed(DigitPattern(half, "### ##0"));
}

// The label of the half of an axis, in the unit of its label.
std::string HalfLabel(const std::string& label, std::string_view unitLetters) {
  for (const char letter : unitLetters) {
    const std::size_t unit = label.find(letter);
    if (unit == std::string::npos) continue;
    return HalfText(LeadingNumber(label.substr(0, unit))) + " " + label.substr(unit);
  }
  return HalfText(LeadingNumber(label));
}

}  // namespace

void ConvHCBytes(const Diagnostics& diagnostics, std::string& value, bool longForm) {
  ErrorExit(diagnostics, kModule, "ConvHCBytes",
            [&] { value = Trimmed(VolumeText(DigitText(value), longForm)); });
}

void RoundUpYaxisMax(const Diagnostics& diagnostics, std::string& value) {
  ErrorExit(diagnostics, kModule, "RoundUpYaxisMax",
            [&] { value = Trimmed(RoundedAxisTop(DigitText(value))); });
}

double RoundToValue(const Diagnostics& diagnostics, const std::string& value, double& ceiling,
                    bool roundUp) {
  double result = 0;
  ErrorExit(diagnostics, kModule, "RoundToValue", [&] {
    const auto number = ParseNumber(value);
    if (!number) return;
    const std::size_t length = DigitText(value).size();
    if (length <= std::size(kCeilings)) ceiling = kCeilings[length - 1];
    const double quotient = *number / ceiling + (roundUp ? 0.5 : -0.5);
    const double whole = std::trunc(quotient);
    if (whole < std::numeric_limits<std::int32_t>::min() ||
        whole > std::numeric_limits<std::int32_t>::max()) {
      throw OverflowFailure("axis top out of range: " + value);
    }
    result = (whole + RoundHalfEven(quotient - whole)) * ceiling;
  });
  return result;
}

void FormatYaxisVol(const Diagnostics& diagnostics, std::string& max, std::string& half) {
  ErrorExit(diagnostics, kModule, "FormatYaxisVol", [&] {
    const std::string digits = DigitText(max);
    if (digits.size() < kVolumeLabels[0].length) {
      max = Trimmed(DigitPattern(digits, "### ##0") + " M");
    } else {
      const LabelRow* row = FindLabel(kVolumeLabels, digits.size());
      max = Label(digits, row != nullptr ? *row : kLongestVolumeLabel);
    }
    half = HalfLabel(max, "MGTP");
  });
}

void FormatYaxisPkts(const Diagnostics& diagnostics, std::string& max, std::string& half) {
  ErrorExit(diagnostics, kModule, "FormatYaxisPkts", [&] {
    if (max.size() < kPacketLabels[0].length) {
      max = Trimmed(DigitPattern(max, "### ##0"));
    } else if (const LabelRow* row = FindLabel(kPacketLabels, max.size())) {
      max = Label(max, *row);
    }
    half = HalfLabel(max, "KMG");
  });
}

}  // namespace quillon
