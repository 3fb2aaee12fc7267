// What a posted form says in its fields: where a value begins and ends, and what is made of it.
#include "web/form_fields.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace quillon {
namespace {

constexpr FieldPlace kPlaces[] = {FieldPlace::kInner, FieldPlace::kLast};
const std::string kKey = "DeviceName=";
const std::string kHead =
    "POST /search-device-port-name HTTP/1.1\r\n"
    "Host: test\r\n"
    "Content-Type: text/plain\r\n"
    "\r\n";

// The value of a field that another one follows: the same wherever it stands.
std::optional<std::string> Value(const std::string& value) {
  const std::string text = kHead + kKey + value + "\r\nPortName=*\r\n";
  const auto inner = FormField(text, kKey, FieldPlace::kInner);
  EXPECT_EQ(FormField(text, kKey, FieldPlace::kLast), inner) << value;
  return inner;
}

TEST(FormFields, TheValueEndsAtTheLineEnd) {
  const std::string text = kHead + "DeviceName=sw7\r\nPortName=Gi0/1\r\nmore";
  for (const FieldPlace place : kPlaces) {
    EXPECT_EQ(FormField(text, "DeviceName=", place), "sw7");
    EXPECT_EQ(FormField(text, "PortName=", place), "Gi0/1");
  }
}

TEST(FormFields, AFieldThatIsMissingIsNothing) {
  for (const std::string& text :
       std::vector<std::string>{"", "\r\n", kHead, kHead + "DeviceName", kHead + "DeviceName\r\n",
                                kHead + "DeviceName =a\r\n", kHead + "devicename=a\r\n",
                                kHead + "DEVICENAME=a\r\n", kHead + "Device\r\nName=a\r\n",
                                kHead + "DeviceName%3Da\r\n", kHead + "DeviceNam=a\r\n"}) {
    for (const FieldPlace place : kPlaces) {
      EXPECT_EQ(FormField(text, kKey, place), std::nullopt) << text;
    }
  }
}

TEST(FormFields, OnlyTheLastFieldMayLackItsLineEnd) {
  const struct {
    std::string behind;  // the key
    std::string value;
  } kCases[] = {{"sw7", "sw7"},
                {"", ""},
                {" ", ""},
                {"a\n", "a\n"},
                {"a\r", "a\r"},
                {"a\n\r", "a\n\r"},
                {"a\nPortName=b\n", "a\nPortName=b\n"}};
  for (const auto& row : kCases) {
    const std::string text = kHead + kKey + row.behind;
    EXPECT_EQ(FormField(text, kKey, FieldPlace::kInner), std::nullopt) << row.behind;
    EXPECT_EQ(FormField(text, kKey, FieldPlace::kLast), row.value) << row.behind;
  }
}

TEST(FormFields, ALineEndBeforeTheFieldIsNotItsOwn) {
  const std::string text = "\r\n\r\nPortName=a\r\nDeviceName=b";
  EXPECT_EQ(FormField(text, kKey, FieldPlace::kInner), std::nullopt);
  EXPECT_EQ(FormField(text, kKey, FieldPlace::kLast), "b");
}

TEST(FormFields, ALineFeedOrACarriageReturnAloneIsNoLineEnd) {
  EXPECT_EQ(Value("a\nb"), "a\nb");
  EXPECT_EQ(Value("a\rb"), "a\rb");
  EXPECT_EQ(Value("a\n\rb"), "a\n\rb");
  EXPECT_EQ(Value("a\r"), "a\r");  // followed by the line end
  EXPECT_EQ(Value("a\n"), "a\n");
}

TEST(FormFields, BlanksAtTheEndsGoAndNothingElse) {
  const struct {
    const char* value;
    const char* trimmed;
  } kCases[] = {{"", ""},           {" ", ""},          {"     ", ""},
                {" a", "a"},        {"a ", "a"},        {"   a b   ", "a b"},
                {"a  b", "a  b"},   {"\ta\t", "\ta\t"}, {" \ta\t ", "\ta\t"},
                {"\va\f", "\va\f"}, {" \n ", "\n"},     {"\xA0 a", "\xA0 a"}};
  for (const auto& row : kCases) EXPECT_EQ(Value(row.value), row.trimmed) << row.value;
}

TEST(FormFields, APlusIsABlankAndStaysAtTheEnds) {
  const struct {
    const char* value;
    const char* result;
  } kCases[] = {{"my+switch", "my switch"}, {"+", " "},         {"++", "  "},      {"+a+", " a "},
                {" + a + ", "  a  "},       {"a+b+c", "a b c"}, {"a + b", "a   b"}};
  for (const auto& row : kCases) EXPECT_EQ(Value(row.value), row.result) << row.value;
}

TEST(FormFields, NothingElseIsDecoded) {
  for (const std::string& value : std::vector<std::string>{
           "%2B%20%0D%0A", "a&PortName", "&amp;", "\\r\\n", "\"quoted\"", "O'Neil", "<b>", "a=b",
           "=", "*", "?", "[a-f]", "%", "_", "\xE4\xF6\xFC", "\xC3\xA4\xE2\x82\xAC", "\xFF\xFE",
           std::string("a\0b", 3), std::string(20000, 'x')}) {
    EXPECT_EQ(Value(value), value);
  }
}

TEST(FormFields, TheFirstOccurrenceOfTheKeyCountsAnywhereInTheText) {
  const struct {
    const char* text;
    const char* value;
  } kCases[] = {
      {"POST /x?DeviceName=url HTTP/1.1\r\n\r\nDeviceName=body\r\n", "url HTTP/1.1"},
      {"POST /x HTTP/1.1\r\nReferer: DeviceName=head\r\n\r\nDeviceName=body\r\n", "head"},
      {"POST /x HTTP/1.1\r\n\r\nPortName=DeviceName=inside\r\nDeviceName=own\r\n", "inside"},
      {"POST /x HTTP/1.1\r\n\r\nOldDeviceName=longer\r\nDeviceName=own\r\n", "longer"},
      {"DeviceName=first\r\nDeviceName=second\r\n", "first"},
      {"DeviceName=DeviceName=twice\r\n", "DeviceName=twice"},
      {"DeviceName=\r\nDeviceName=second\r\n", ""},
      {"before DeviceName= behind\r\n", "behind"}};
  for (const auto& row : kCases) {
    for (const FieldPlace place : kPlaces) {
      EXPECT_EQ(FormField(row.text, kKey, place), row.value) << row.text;
    }
  }
}

TEST(FormFields, TheFirstOccurrenceDecidesAlsoWhereItHasNoLineEnd) {
  EXPECT_EQ(FormField("DeviceName=a, DeviceName=b", kKey, FieldPlace::kInner), std::nullopt);
  EXPECT_EQ(FormField("DeviceName=a, DeviceName=b", kKey, FieldPlace::kLast), "a, DeviceName=b");
}

TEST(FormFields, FieldsAreFoundInAnyOrder) {
  const std::string text = kHead + "OrderBy=totalbytes-asc\r\nDiskName=C:\r\nDeviceName=Files\r\n";
  for (const FieldPlace place : kPlaces) {
    EXPECT_EQ(FormField(text, "DeviceName=", place), "Files");
    EXPECT_EQ(FormField(text, "DiskName=", place), "C:");
    EXPECT_EQ(FormField(text, "OrderBy=", place), "totalbytes-asc");
  }
}

}  // namespace
}  // namespace quillon
