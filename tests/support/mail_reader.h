// Reads a composed mail as its receiver does: header, parts, and what their encodings hide. It is
// strict, and throws std::runtime_error on what a receiver would have to guess at.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quillon {

class MailPart {
 public:
  explicit MailPart(const std::string& text);

  // Names of the fields of the header, in lower case, in their order.
  std::vector<std::string> fieldNames() const;

  // The one field of that name, on one line; fails where there is none, or a second one.
  std::string Field(const std::string& name) const;
  // The same with its encoded words read, in UTF-8.
  std::string FieldText(const std::string& name) const;
  bool HasField(const std::string& name) const;

  // "text/plain", in lower case.
  std::string Type() const;
  // A parameter of Content-Type, or of another field; empty where there is none.
  std::string Parameter(const std::string& name, const std::string& field = "Content-Type") const;
  // "attachment" of "attachment; filename=a.htm".
  std::string Disposition() const;
  // In lower case; "7bit" where nothing is said.
  std::string Encoding() const;

  // What stands below the header, as it stands there.
  const std::string& encoded() const { return body_; }
  // The bytes that it means.
  std::string Decoded() const;

  // Of a multipart.
  std::vector<MailPart> Parts() const;
  // The parts that are no multiparts themselves, in their order.
  std::vector<MailPart> Leaves() const;

 private:
  std::vector<std::pair<std::string, std::string>> fields_;  // unfolded
  std::string body_;
};

// The name in front of "<address>", read from its quotes and encoded words; and that address.
std::string NameOf(const std::string& field);
std::string AddressOf(const std::string& field);

// The encoded words of the text, one for one.
std::vector<std::string> EncodedWords(const std::string& text);
// The text with its encoded words, which must be UTF-8 or its ASCII, read.
std::string DecodedWords(const std::string& text);

std::string DecodedBase64(const std::string& text);
std::string DecodedQuotedPrintable(const std::string& text);

// The lines of a text that ends each of them in CR LF; fails on a CR or LF alone.
std::vector<std::string> LinesOf(const std::string& text);

std::string InLowerCase(std::string text);

}  // namespace quillon
