// Raw statistics as short texts and round axis tops. Works on decimal digit strings:
// the length of a value's digit text chooses the unit, its leading digits are the
// result. The particular rounding is wanted: reports must show the same figures as ever.
// Every procedure reports its failure (module modQuillonWeb) and leaves its by-reference
// values as far as they had come.
#pragma once

#include <string>

#include "service/diagnostics.h"

namespace quillon {

// Replaces a volume in megabytes by its display text, "12 G". `longForm` keeps four
// digits in megabytes, "1 234 M", where the short form has "1 G". -1 marks a missing
// figure and shows as "-".
void ConvHCBytes(const Diagnostics& diagnostics, std::string& value, bool longForm);

// Replaces an axis top by its leading digits and zeros, without unit or grouping. The
// result can be lower than the value: 1300 gives 1000.
void RoundUpYaxisMax(const Diagnostics& diagnostics, std::string& value);

// The next multiple of a step at or above the value (below it where `roundUp` is
// false). The step goes by the length of the value's digit text and overwrites `ceiling`;
// from 11 digits on the caller's stays. 0 for a value that is no number and where the
// quotient passes 32 bits.
double RoundToValue(const Diagnostics& diagnostics, const std::string& value, double& ceiling,
                    bool roundUp);

// Replaces a volume axis top by its label and writes the label of its half: "13 G", "6.5 G".
void FormatYaxisVol(const Diagnostics& diagnostics, std::string& max, std::string& half);

// The same for packet counts: "3 K", "1.5 K"; no unit below 1000.
void FormatYaxisPkts(const Diagnostics& diagnostics, std::string& max, std::string& half);

}  // namespace quillon
