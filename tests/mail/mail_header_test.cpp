// Texts of the header: plain ones, and encoded words.
#include "mail/mail_header.h"

#include <gtest/gtest.h>

#include <sstream>

#include "mail/mail_message.h"
#include "support/mail_reader.h"

namespace quillon {
namespace {

using namespace std::string_literals;

std::string Repeated(const std::string& text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i) repeated += text;
  return repeated;
}

// Each word is short enough, reads by itself, and all of them together give the text.
void ExpectWords(const std::string& text) {
  const std::string header = HeaderText(text);
  EXPECT_EQ(DecodedWords(header), text);
  std::istringstream words(header);
  for (std::string word; words >> word;) {
    EXPECT_LE(word.size(), 75U) << word;
    EXPECT_EQ(word.find("=?UTF-8?B?"), 0U) << word;
    const std::string alone = DecodedWords(word);
    EXPECT_NE(text.find(alone), std::string::npos) << word;
  }
}

TEST(HeaderText, PlainTextStaysAsItIs) {
  for (const std::string& text : {""s, "a"s, "Daily reports, \"all\" of them (7)"s,
                                  std::string(300, 'x'), " a  b "s, "= ? ="s}) {
    EXPECT_EQ(HeaderText(text), text);
  }
}

TEST(HeaderText, OtherTextIsInWordsThatAreShortEnough) {
  for (const std::string& text :
       {"\u00FC"s, "T\u00E4gliche Berichte"s, Repeated("\u65E5\u672C\u8A9E", 40),
        Repeated("\U0001F600", 60), Repeated("\u00E4", 100), Repeated("a\u0301", 70),
        Repeated("Gr\u00F6\u00DFe ", 30) + "x", std::string(200, 'x') + "\u00FC"}) {
    ExpectWords(text);
  }
}

// Or a reader would take it for one.
TEST(HeaderText, WhatLooksLikeAWordIsEncoded) {
  ExpectWords("=?utf-8?q?x?=");
}

TEST(HeaderText, BytesThatAreNoUtf8AreReplaced) {
  EXPECT_EQ(DecodedWords(HeaderText("a\xFF"s + "b\xC3")),
            "a\uFFFD"
            "b\uFFFD");
}

TEST(HeaderText, LinesOfAComposedHeaderAreShort) {
  MailMessage message;
  message.from = "\u65E5\u672C <reports@example.com>";
  message.recipientName = Repeated("\u65E5\u672C\u8A9E", 20);
  message.recipientAddress = "operator@example.org";
  message.subject = Repeated("\u30CD\u30C3\u30C8", 20);
  const std::string mail = Compose(message);
  for (const std::string& line : LinesOf(mail.substr(0, mail.find("\r\n\r\n") + 2))) {
    EXPECT_LE(line.size(), 76U) << line;
  }
  const MailPart read(mail);
  EXPECT_EQ(read.FieldText("Subject"), message.subject);
  EXPECT_EQ(NameOf(read.Field("To")), message.recipientName);
  EXPECT_EQ(NameOf(read.Field("From")), "\u65E5\u672C");
}

}  // namespace
}  // namespace quillon
