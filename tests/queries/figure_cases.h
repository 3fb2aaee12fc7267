// Stored figures of ports and what a chart makes of them, whether of one port or of their sums.
#pragma once

#include <string>
#include <vector>

namespace quillon {

// A stored figure as SQL literal, and the text that it gives.
struct FigureText {
  std::string stored;
  std::string text;
};

// A stored figure that is the only one of its panel, its bar, and the labels of the axis.
struct FigureAxis {
  std::string stored;
  std::string bar;
  std::string max;
  std::string half;
};

// These cases and further ones.
inline std::vector<FigureText> Joined(std::vector<FigureText> cases,
                                      const std::vector<FigureText>& further) {
  cases.insert(cases.end(), further.begin(), further.end());
  return cases;
}

// Volumes of ports, which have their mean rate above ten megabytes.
inline const std::vector<FigureText> kVolumeTexts = {
    {"-1", "-"},
    {"-2", "0"},
    {"0", "0"},
    {"0.4", "0"},
    {"1", "1 M"},
    {"9.5", "10 M"},
    {"10", "10 M"},
    {"10.0001", "10 M  (1 W44)"},
    {"10.4", "10 M  (1 W44)"},
    {"10.5", "11 M  (1 W44)"},
    {"11", "11 M  (1 W44)"},
    {"27", "27 M  (2 W44)"},     // 2.5 to the even 2
    {"999", "999 M  (92 W44)"},  // 92.5 to the even 92
    {"1234", "1 234 M  (114 W44)"},
    {"1500", "1 500 M  (139 W44)"},
    {"10799", "11 G  (1 000 W44)"},
    {"10800", "11 G  (1 000 W44)"},
    {"10800.5", "11 G  (1 W41)"},
    {"10801", "11 G  (1 W41)"},
    {"16200", "16 G  (2 W41)"},  // 1.5 to the even 2
    {"27000", "27 G  (2 W41)"},  // 2.5 to the even 2
    {"37800", "38 G  (4 W41)"},  // 3.5 to the even 4
    {"1234567", "1 235 G  (114 W41)"},
    {"9999500", "10 000 G  (926 W41)"},
    {"12344678", "13 T  (1 143 W41)"},
    {"12345678", "13 T  (1 143 W41)"},
    {"108000000", "108 T  (10 000 W41)"},
    {"108000000.5", "108 T  (10 W45)"},
    {"108000001", "108 T  (10 W45)"},
    {"113400000", "113 T  (10 W45)"},  // 10.5 to the even 10
    {"124200000", "124 T  (12 W45)"},  // 11.5 to the even 12
    {"1234567890", "1 235 T  (114 W45)"},
    {"9999999999", "10 000 T  (926 W45)"},
};

// Broadcasts and multicasts a minute, which have a rate per second above 60. Rates of seven digits
// are not here: charts of one port and of sums print them with other groups.
inline const std::vector<FigureText> kPacketTexts = {
    {"-2", "-2 W39"},
    {"-1234", "-1 234 W39"},
    {"0", "0 W39"},
    {"1", "1 W39"},
    {"2.5", "3 W39"},  // a digit pattern rounds halves away from zero
    {"59", "59 W39"},
    {"59.9", "60 W39"},
    {"60", "60 W39"},
    {"60.4", "60 W39<br>(1 W40)"},
    {"61", "61 W39<br>(1 W40)"},
    {"90", "90 W39<br>(2 W40)"},    // 1.5 to the even 2
    {"150", "150 W39<br>(2 W40)"},  // 2.5 to the even 2
    {"1234567", "1 234 567 W39<br>(20 576 W40)"},
    {"59999940", "59 999 940 W39<br>(999 999 W40)"},
};

// Errors of a day, which have a rate per minute above 1440. More than 86400 are not here: sums have
// a rate per second then.
inline const std::vector<FigureText> kErrorTexts = {
    {"-1", "-1 W38"},
    {"-2.5", "-3 W38"},
    {"-5", "-5 W38"},
    {"0", "0 W38"},
    {"1", "1 W38"},
    {"1439", "1 439 W38"},
    {"1439.5", "1 440 W38"},
    {"1440", "1 440 W38"},
    {"1440.4", "1 440 W38<br>(1 W39)"},
    {"1440.5", "1 441 W38<br>(1 W39)"},
    {"1441", "1 441 W38<br>(1 W39)"},
    {"2160", "2 160 W38<br>(2 W39)"},  // 1.5 to the even 2
    {"3600", "3 600 W38<br>(2 W39)"},  // 2.5 to the even 2
    {"86399", "86 399 W38<br>(60 W39)"},
    {"86400", "86 400 W38<br>(60 W39)"},
};

// The axis of volumes of ports, rounded and labelled in its unit.
inline const std::vector<FigureAxis> kVolumeAxes = {
    {"0", "1", "2 M", "1 M"},
    {"1", "50", "2 M", "1 M"},
    {"2", "100", "2 M", "1 M"},
    {"3", "75", "4 M", "2 M"},
    {"7", "88", "8 M", "4 M"},  // 87.5 to the even 88
    {"9", "90", "10 M", "5 M"},
    {"12", "80", "15 M", "7.5 M"},
    {"22", "88", "25 M", "13 M"},
    {"25", "100", "25 M", "13 M"},  // 12.5 is too long
    {"99", "99", "100 M", "50 M"},
    {"123", "82", "150 M", "75 M"},
    {"234", "94", "250 M", "125 M"},
    {"249", "100", "250 M", "125 M"},
    {"999", "100", "1 G", "0.5 G"},
    {"1234", "123", "1 G", "0.5 G"},  // 1300, of which one digit is kept
    {"1450", "72", "2 G", "1 G"},     // 1500, raised to 2000
    {"1700", "85", "2 G", "1 G"},
    {"12345", "95", "13 G", "6.5 G"},
    {"123456", "95", "130 G", "65 G"},
    {"1234567", "62", "2 T", "1 T"},
    {"12345678", "62", "20 T", "10 T"},
    {"123456789", "95", "130 T", "65 T"},
    {"1234567890", "62", "2 P", "1 P"},
    {"9999999999", "100", "10 P", "5 P"},
};

// The axis of their other figures.
inline const std::vector<FigureAxis> kCountAxes = {
    {"0", "1", "2", "1"},
    {"1", "50", "2", "1"},
    {"2", "100", "2", "1"},
    {"3", "75", "4", "2"},
    {"5", "83", "6", "3"},
    {"9", "90", "10", "5"},
    {"12", "80", "15", "7.5"},
    {"22", "88", "25", "13"},
    {"73", "97", "75", "38"},  // 37.5 is too long
    {"123", "82", "150", "75"},
    {"234", "94", "250", "125"},
    {"999", "100", "1 K", "0.5 K"},
    {"1234", "123", "1 K", "0.5 K"},
    {"2500", "83", "3 K", "1.5 K"},
    {"12345", "95", "13 K", "6.5 K"},
    {"25000", "100", "25 K", "13 K"},
    {"123456", "95", "130 K", "65 K"},
    {"1234567", "62", "2 M", "1 M"},
    {"12345678", "62", "20 M", "10 M"},
    {"123456789", "95", "130 M", "65 M"},
    {"1234567890", "62", "2 G", "1 G"},
    {"9999999999", "100", "10000000000", "5000000 000"},  // 11 digits have no unit
};

}  // namespace quillon
