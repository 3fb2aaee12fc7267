// Composed mails, read as their receivers read them.
#include "mail/mail_message.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <regex>
#include <set>

#include "support/mail_reader.h"
#include "support/standard_error.h"

namespace quillon {
namespace {

using namespace std::string_literals;

const std::string kSignature = "Quillon Network Reporting\r\nhttps://quillon.example/";

MailMessage Ordinary() {
  MailMessage message;
  message.from = "reports@example.com";
  message.recipientName = "Operator";
  message.recipientAddress = "operator@example.org";
  message.subject = "Daily reports";
  message.priority = "3";
  message.charSet = "UTF-8";
  message.body = kSignature;
  return message;
}

MailMessage WithBody(const std::string& body) {
  MailMessage message = Ordinary();
  message.body = body;
  return message;
}

MailMessage WithAttachments(std::vector<MailAttachment> attachments) {
  MailMessage message = Ordinary();
  message.attachments = std::move(attachments);
  return message;
}

// What every server takes and every receiver reads: whole lines of a bearable length, of ASCII.
void ExpectFitForTheLine(const std::string& mail) {
  for (const std::string& line : LinesOf(mail)) {
    EXPECT_LE(line.size(), 998U) << line.substr(0, 100);
    EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](char byte) { return byte > 0; }))
        << testing::PrintToString(line);
  }
  EXPECT_EQ(mail.substr(mail.size() - 2), "\r\n");
}

MailPart Composed(const MailMessage& message) {
  const std::string mail = Compose(message);
  ExpectFitForTheLine(mail);
  return MailPart(mail);
}

// The text of a part without the line end that may stand at its end. Its line ends are whole ones.
std::string TextOf(const MailPart& part) {
  std::string text = part.Decoded();
  if (text.size() < 2 || text.compare(text.size() - 2, 2, "\r\n") != 0) text += "\r\n";
  LinesOf(text);
  return text.substr(0, text.size() - 2);
}

// A line that was folded may go on with another blank than the one that stood there.
std::string WithSingleBlanks(const std::string& text) {
  return std::regex_replace(text, std::regex("[ \t]+"), " ");
}

// Long encoded words, or words that tear a character apart, are not read by everybody.
void ExpectReadableWords(const std::string& field) {
  const std::vector<std::string> words = EncodedWords(field);
  EXPECT_FALSE(words.empty()) << field;
  for (const std::string& word : words) {
    EXPECT_LE(word.size(), 75U) << word;
    const std::string text = DecodedWords(word);
    const bool beginsInside = !text.empty() && (text[0] & 0xC0) == 0x80;
    EXPECT_FALSE(beginsInside) << word;
  }
}

std::vector<std::string> SortedFieldNames(const MailPart& mail) {
  std::vector<std::string> names = mail.fieldNames();
  std::sort(names.begin(), names.end());
  return names;
}

// ---- header

TEST(MailHeader, TellsWhoWritesToWhomAboutWhat) {
  const MailPart mail = Composed(Ordinary());
  EXPECT_EQ(AddressOf(mail.Field("From")), "reports@example.com");
  EXPECT_EQ(NameOf(mail.Field("From")), "");
  EXPECT_EQ(AddressOf(mail.Field("To")), "operator@example.org");
  EXPECT_EQ(NameOf(mail.Field("To")), "Operator");
  EXPECT_EQ(mail.Field("Subject"), "Daily reports");
  EXPECT_EQ(mail.Field("MIME-Version"), "1.0");
}

TEST(MailHeader, HoldsNoFieldTwice) {
  const std::vector<std::string> names = SortedFieldNames(Composed(Ordinary()));
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TEST(MailHeader, SenderMayHaveAName) {
  MailMessage message = Ordinary();
  message.from = "Quillon Reports <reports@example.com>";
  const MailPart mail = Composed(message);
  EXPECT_EQ(AddressOf(mail.Field("From")), "reports@example.com");
  EXPECT_EQ(NameOf(mail.Field("From")), "Quillon Reports");
}

TEST(MailHeader, ReceiverMayHaveNoName) {
  MailMessage message = Ordinary();
  message.recipientName = "";
  const MailPart mail = Composed(message);
  EXPECT_EQ(AddressOf(mail.Field("To")), "operator@example.org");
  EXPECT_EQ(NameOf(mail.Field("To")), "");
}

TEST(MailHeader, NamesKeepTheirPunctuation) {
  for (const std::string& name :
       {"Smith, John"s, "John \"Jack\" Smith"s, "Operator (night)"s, "back\\slash"s, "a;b:c"s,
        "Boss <boss@example.net>"s, "one@example.net"s, "Dr. No"s, "a, b@example.net"s}) {
    MailMessage message = Ordinary();
    message.recipientName = name;
    const std::string field = Composed(message).Field("To");
    EXPECT_EQ(NameOf(field), name);
    EXPECT_EQ(AddressOf(field), "operator@example.org");
  }
}

TEST(MailHeader, TextsBeyondAsciiAreEncodedWords) {
  MailMessage message = Ordinary();
  message.from = "B\u00FCro <reports@example.com>";
  message.recipientName = "M\u00FCller, \"Hans\" (\u65E5\u672C)";
  message.subject = "T\u00E4gliche Berichte f\u00FCr Gr\u00F6\u00DFe \u20AC";
  const MailPart mail = Composed(message);
  EXPECT_EQ(NameOf(mail.Field("From")), "B\u00FCro");
  EXPECT_EQ(AddressOf(mail.Field("From")), "reports@example.com");
  EXPECT_EQ(NameOf(mail.Field("To")), message.recipientName);
  EXPECT_EQ(AddressOf(mail.Field("To")), "operator@example.org");
  EXPECT_EQ(mail.FieldText("Subject"), message.subject);
  for (const std::string name : {"From", "To", "Subject"}) ExpectReadableWords(mail.Field(name));
}

TEST(MailHeader, CharSetOfTheBodyDoesNotReachTheHeader) {
  MailMessage message = Ordinary();
  message.charSet = "ISO-8859-1";
  message.subject = "\u65E5\u672C \u00FC";
  EXPECT_EQ(Composed(message).FieldText("Subject"), message.subject);
}

TEST(MailHeader, LongTextsAreFoldedAndStayWhole) {
  std::string ascii;
  std::string other;
  for (int i = 0; i < 300; ++i) {
    ascii += "word" + std::to_string(i) + (i == 299 ? "" : " ");
    other += "w\u00F6rt\u65E5" + std::to_string(i) + (i == 299 ? "" : " ");
  }
  for (const std::string& text : {ascii, other}) {
    MailMessage message = Ordinary();
    message.subject = text;
    message.recipientName = text;
    const MailPart mail = Composed(message);
    EXPECT_EQ(mail.FieldText("Subject"), text);
    EXPECT_EQ(WithSingleBlanks(NameOf(mail.Field("To"))), text);
  }
}

TEST(MailHeader, LongWordWithoutABlankDoesNotMakeALongLine) {
  MailMessage message = Ordinary();
  message.subject = std::string(3000, 'x');
  message.recipientName = std::string(3000, 'y');
  const MailPart mail = Composed(message);
  const std::string subject = mail.FieldText("Subject");
  EXPECT_EQ(std::count(subject.begin(), subject.end(), 'x'), 3000);
  EXPECT_EQ(AddressOf(mail.Field("To")), "operator@example.org");
}

TEST(MailHeader, ControlCharactersBecomeBlanks) {
  MailMessage message = Ordinary();
  message.subject = "a\tb\x01"s + "c\x7F" + "d\0e"s + "\u00FC\x1B" + "f";
  message.recipientName = "g\th\x02"s + "i\0j"s;
  const MailPart mail = Composed(message);
  EXPECT_EQ(mail.FieldText("Subject"), "a b c d e\u00FC f");
  EXPECT_EQ(NameOf(mail.Field("To")), "g h i j");
}

TEST(MailHeader, LineEndsInTextsAddNoField) {
  const std::vector<std::string> ordinary =
      SortedFieldNames(Composed(WithAttachments({{"a.htm", "x"}})));
  for (const std::string& lineEnd : {"\r\n"s, "\n"s, "\r"s, "\n\n"s, "\r\n\r\n"s}) {
    const std::string addition = lineEnd + "Bcc: other@example.net";
    MailMessage message = WithAttachments({{"a.htm", "x"}});
    message.subject += addition;
    message.recipientName += addition;
    message.from = "Name" + addition + " <reports@example.com>";
    message.recipientAddress += addition;
    MailPart mail("A: b\r\n\r\n");
    StandardErrorOf([&] {
      message.charSet += addition;
      message.priority += addition;
      mail = Composed(message);
    });
    EXPECT_EQ(SortedFieldNames(mail), ordinary) << testing::PrintToString(lineEnd);
    EXPECT_EQ(mail.Parts().size(), 2U);
    EXPECT_EQ(WithSingleBlanks(mail.FieldText("Subject")), "Daily reports Bcc: other@example.net");
  }
}

TEST(MailHeader, EachLineEndOfASubjectIsABlank) {
  MailMessage message = Ordinary();
  message.subject = "a\r\nb\nc";
  EXPECT_EQ(Composed(message).FieldText("Subject"), "a  b c");
}

TEST(MailHeader, PriorityIsToldInBothWays) {
  struct Case {
    std::string priority, number, importance;
  };
  for (const Case& one :
       {Case{"1", "1", "high"}, Case{"2", "2", "high"}, Case{"3", "3", "normal"},
        Case{"4", "4", "low"}, Case{"5", "5", "low"}, Case{"Highest", "1", "high"},
        Case{"LOW", "4", "low"}, Case{"", "3", "normal"}}) {
    MailMessage message = Ordinary();
    message.priority = one.priority;
    const MailPart mail = Composed(message);
    EXPECT_EQ(mail.Field("X-Priority"), one.number) << one.priority;
    EXPECT_EQ(mail.Field("Importance"), one.importance) << one.priority;
  }
}

TEST(MailHeader, DateIsThePresentTime) {
  using std::chrono::system_clock;  // std::time is some milliseconds late
  const std::time_t before = system_clock::to_time_t(system_clock::now());
  const std::string date = Composed(Ordinary()).Field("Date");
  const std::time_t after = system_clock::to_time_t(system_clock::now());
  EXPECT_TRUE(
      std::regex_match(date, std::regex("(Mon|Tue|Wed|Thu|Fri|Sat|Sun), \\d{1,2} "
                                        "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) \\d{4} "
                                        "\\d\\d:\\d\\d:\\d\\d [+-]\\d{4}")))
      << date;
  std::tm fields{};
  ASSERT_NE(strptime(date.c_str(), "%a, %d %b %Y %H:%M:%S %z", &fields), nullptr) << date;
  const long offset = fields.tm_gmtoff;
  const std::time_t told = timegm(&fields) - offset;
  EXPECT_GE(told, before);
  EXPECT_LE(told, after);
}

TEST(MailHeader, IdIsOfTheSendersDomain) {
  for (const std::string& from :
       {"reports@mail.example.com"s, "Reports at example.net <reports@mail.example.com>"s}) {
    MailMessage message = Ordinary();
    message.from = from;
    EXPECT_TRUE(std::regex_match(Composed(message).Field("Message-ID"),
                                 std::regex("<[^@<>\\s]+@mail\\.example\\.com>")));
  }
}

TEST(MailHeader, EachMailHasAnIdOfItsOwn) {
  std::set<std::string> ids;
  for (int i = 0; i < 50; ++i) ids.insert(Composed(Ordinary()).Field("Message-ID"));
  EXPECT_EQ(ids.size(), 50U);
}

// ---- body

TEST(MailBody, IsPlainTextByItself) {
  const MailPart mail = Composed(Ordinary());
  EXPECT_EQ(mail.Type(), "text/plain");
  EXPECT_EQ(InLowerCase(mail.Parameter("charset")), "utf-8");
  EXPECT_EQ(mail.Encoding(), "7bit");
  EXPECT_EQ(TextOf(mail), kSignature);
}

TEST(MailBody, StaysAsItIs) {
  for (const std::string& body :
       {""s, "a"s, "a\r\n\r\nb"s, "\r\na"s, ".\r\n..\r\n.a\r\n"s,
        "From here\r\n>From there\r\nFrom"s, "ends in blanks  \r\n \r\nand a tab\t"s,
        "=3D and =\r\n=20"s, "--\r\n--a--\r\n"s, "Subject: no\r\n\r\nheader"s,
        "Gr\u00F6\u00DFe \u20AC \u65E5\u672C \U0001F600"s}) {
    for (const std::int32_t encoding : {0, 1, 2}) {
      MailMessage message = WithBody(body);
      message.bodyEncoding = encoding;
      const std::string expected = body.size() >= 2 && body.substr(body.size() - 2) == "\r\n"
                                       ? body.substr(0, body.size() - 2)
                                       : body;
      EXPECT_EQ(TextOf(Composed(message)), expected) << encoding;
    }
  }
}

TEST(MailBody, EveryLineEndIsCrLf) {
  for (const std::int32_t encoding : {0, 1, 2}) {
    MailMessage message = WithBody("a\nb\r\nc\n\nd \u00FC");
    message.bodyEncoding = encoding;
    EXPECT_EQ(TextOf(Composed(message)), "a\r\nb\r\nc\r\n\r\nd \u00FC") << encoding;
  }
}

TEST(MailBody, AsNeededLeavesShortLinesOfAsciiAsTheyAre) {
  const MailPart mail = Composed(WithBody("a=b \r\n.c\r\n" + std::string(200, 'x')));
  EXPECT_EQ(mail.Encoding(), "7bit");
  EXPECT_EQ(TextOf(mail), "a=b \r\n.c\r\n" + std::string(200, 'x'));
}

TEST(MailBody, AsNeededQuotesTextBeyondAscii) {
  const MailPart mail = Composed(WithBody("Gr\u00F6\u00DFe"));
  EXPECT_EQ(mail.Encoding(), "quoted-printable");
  EXPECT_EQ(TextOf(mail), "Gr\u00F6\u00DFe");
}

// Mostly letters of another script, where base64 would be the shorter one.
TEST(MailBody, AsNeededQuotesEvenWhatIsLongerByIt) {
  std::string body;
  for (int i = 0; i < 200; ++i) body += "\u65E5\u672C";
  const MailPart mail = Composed(WithBody(body));
  EXPECT_EQ(mail.Encoding(), "quoted-printable");
  EXPECT_EQ(TextOf(mail), body);
}

// No line of a mail may hold it.
TEST(MailBody, AsNeededQuotesTheByteZero) {
  const MailPart mail = Composed(WithBody("a\0b"s));
  EXPECT_EQ(mail.Encoding(), "quoted-printable");
  EXPECT_EQ(TextOf(mail), "a\0b"s);
}

TEST(MailBody, AsNeededQuotesLongLines) {
  for (const std::size_t length : {999, 1000, 5000}) {
    const std::string body = "short\r\n" + std::string(length, 'x');
    const MailPart mail = Composed(WithBody(body));
    EXPECT_EQ(mail.Encoding(), "quoted-printable") << length;
    EXPECT_EQ(TextOf(mail), body);
  }
}

TEST(MailBody, CodeChoosesTheEncoding) {
  const std::string body = "plain\r\n" + std::string(300, 'x') + "\r\n" + kSignature;
  for (const auto& [code, encoding] : {std::pair{1, "quoted-printable"}, std::pair{2, "base64"}}) {
    MailMessage message = WithBody(body);
    message.bodyEncoding = code;
    const MailPart mail = Composed(message);
    EXPECT_EQ(mail.Encoding(), encoding);
    EXPECT_EQ(TextOf(mail), body);
    for (const std::string& line : LinesOf(mail.encoded())) EXPECT_LE(line.size(), 76U);
  }
}

TEST(MailBody, IsInItsCharSet) {
  struct Case {
    std::string charSet, text, bytes;
  };
  for (const Case& one :
       {Case{"ISO-8859-1", "Gr\u00F6\u00DFe", "Gr\xF6\xDF"s + "e"},
        Case{"iso-8859-1", "Gr\u00F6\u00DFe", "Gr\xF6\xDF"s + "e"},
        Case{"ISO-8859-2", "\u017Elu\u0165", "\xBElu\xBB"},
        Case{"windows-1252", "5 \u20AC", "5 \x80"},
        Case{"windows-1251", "\u0434\u0430", "\xE4\xE0"}, Case{"Shift_JIS", "\u65E5", "\x93\xFA"},
        Case{"ISO-2022-JP", "\u65E5", "\x1B$BF|\x1B(B"}, Case{"GB2312", "\u65E5", "\xC8\xD5"},
        Case{"UTF-8", "\u65E5 \u20AC", "\xE6\x97\xA5 \xE2\x82\xAC"}}) {
    for (const std::int32_t encoding : {0, 1, 2}) {
      MailMessage message = WithBody(one.text);
      message.charSet = one.charSet;
      message.bodyEncoding = encoding;
      MailPart mail("A: b\r\n\r\n");
      EXPECT_EQ(StandardErrorOf([&] { mail = Composed(message); }), "") << one.charSet;
      EXPECT_EQ(InLowerCase(mail.Parameter("charset")), InLowerCase(one.charSet));
      EXPECT_EQ(TextOf(mail), one.bytes) << one.charSet << " " << encoding;
    }
  }
}

TEST(MailBody, CharacterThatTheCharSetLacksBecomesAQuestionMark) {
  MailMessage message = WithBody("5 \u20AC, \u65E5, \u00FC");
  message.charSet = "ISO-8859-1";
  EXPECT_EQ(TextOf(Composed(message)), "5 ?, ?, \xFC");
}

TEST(MailBody, UnknownCharSetIsUtf8AndTold) {
  for (const std::string& charSet :
       {"klingon"s, "ISO-8859-1//TRANSLIT"s, "UTF-8 "s + "x", "ISO-8859-1\r\nX-More: 1"s, "\""s,
        "ISO-8859-1; x=y"s, "UTF@8"s, "UTF[8]"s, "UTF{8}"s, "UTF~8"s}) {
    MailMessage message = WithBody("Gr\u00F6\u00DFe");
    message.charSet = charSet;
    MailPart mail("A: b\r\n\r\n");
    const std::string told = StandardErrorOf([&] { mail = Composed(message); });
    EXPECT_TRUE(IsOneLine(told)) << charSet << " gave " << testing::PrintToString(told);
    EXPECT_EQ(InLowerCase(mail.Parameter("charset")), "utf-8") << charSet;
    EXPECT_EQ(TextOf(mail), "Gr\u00F6\u00DFe") << charSet;
    EXPECT_FALSE(mail.HasField("X-More"));
  }
}

// Nobody reads a mail in them: the lines of its body have no ends there.
TEST(MailBody, CharSetWithoutAsciiIsUtf8AndTold) {
  for (const std::string charSet : {"UTF-16", "UTF-16LE", "UTF-32", "IBM037"}) {
    MailMessage message = WithBody("Gr\u00F6\u00DFe");
    message.charSet = charSet;
    MailPart mail("A: b\r\n\r\n");
    const std::string told = StandardErrorOf([&] { mail = Composed(message); });
    EXPECT_TRUE(IsOneLine(told)) << charSet << " gave " << testing::PrintToString(told);
    EXPECT_EQ(TextOf(mail), "Gr\u00F6\u00DFe") << charSet;
  }
}

TEST(MailBody, WithoutCharSetIsUtf8WithoutAWord) {
  MailMessage message = WithBody("Gr\u00F6\u00DFe");
  message.charSet = "";
  MailPart mail("A: b\r\n\r\n");
  EXPECT_EQ(StandardErrorOf([&] { mail = Composed(message); }), "");
  EXPECT_EQ(InLowerCase(mail.Parameter("charset")), "utf-8");
  EXPECT_EQ(TextOf(mail), "Gr\u00F6\u00DFe");
}

TEST(MailBody, CodeThatMeansNothingFallsBackAndIsTold) {
  for (std::int32_t MailMessage::*code :
       {&MailMessage::encoding, &MailMessage::bodyEncoding, &MailMessage::bodyFormat}) {
    MailMessage message = WithAttachments({{"a.htm", "x"}});
    message.*code = 77;
    MailPart mail("A: b\r\n\r\n");
    const std::string told = StandardErrorOf([&] { mail = Composed(message); });
    EXPECT_TRUE(IsOneLine(told)) << testing::PrintToString(told);
    ASSERT_EQ(mail.Parts().size(), 2U);
    EXPECT_EQ(mail.Parts()[0].Type(), "text/plain");
    EXPECT_EQ(mail.Parts()[0].Encoding(), "7bit");
    EXPECT_EQ(mail.Parts()[1].Encoding(), "base64");
  }
}

// ---- the body as HTML too

class MailHtml : public testing::Test {
 protected:
  static MailMessage Both(const std::string& body) {
    MailMessage message = WithBody(body);
    message.bodyFormat = 1;
    return message;
  }

  static std::string HtmlOf(const MailMessage& message) {
    const std::vector<MailPart> leaves = Composed(message).Leaves();
    if (leaves.size() < 2) throw std::runtime_error("no HTML");
    return TextOf(leaves[1]);
  }

  static std::size_t Count(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos;
         at = text.find(piece, at + 1)) {
      ++count;
    }
    return count;
  }

  // Where its links lead to, as they stand there.
  static std::vector<std::string> LinksOf(const std::string& html) {
    static const std::regex kLink(R"re(<a href=("[^"<>]*"|'[^'<>]*')>([^<>]*)</a>)re");
    std::vector<std::string> links;
    for (std::sregex_iterator link(html.begin(), html.end(), kLink), end; link != end; ++link) {
      const std::string target = (*link)[1].str().substr(1, (*link)[1].length() - 2);
      EXPECT_EQ((*link)[2], target);
      links.push_back(target);
    }
    EXPECT_EQ(links.size(), Count(html, "<a")) << html;
    return links;
  }
};

TEST_F(MailHtml, StandsBehindThePlainTextAsAnAlternative) {
  const MailPart mail = Composed(Both(kSignature));
  EXPECT_EQ(mail.Type(), "multipart/alternative");
  const std::vector<MailPart> parts = mail.Parts();
  ASSERT_EQ(parts.size(), 2U);
  EXPECT_EQ(parts[0].Type(), "text/plain");
  EXPECT_EQ(TextOf(parts[0]), kSignature);
  EXPECT_EQ(parts[1].Type(), "text/html");
  EXPECT_NE(TextOf(parts[1]).find("Quillon Network Reporting"), std::string::npos);
}

TEST_F(MailHtml, IsInTheCharSetAndTheEncodingOfTheBody) {
  MailMessage message = Both("Gr\u00F6\u00DFe");
  message.charSet = "ISO-8859-1";
  message.bodyEncoding = 2;
  for (const MailPart& part : Composed(message).Parts()) {
    EXPECT_EQ(InLowerCase(part.Parameter("charset")), "iso-8859-1");
    EXPECT_EQ(part.Encoding(), "base64");
    EXPECT_NE(TextOf(part).find("Gr\xF6\xDF"s + "e"), std::string::npos);
  }
}

TEST_F(MailHtml, EscapesTheText) {
  const std::string html = HtmlOf(Both("<b>A & B</b> &amp; <script>"));
  EXPECT_NE(html.find("&lt;b&gt;A &amp; B&lt;/b&gt; &amp;amp; &lt;script&gt;"), std::string::npos)
      << html;
  EXPECT_EQ(Count(html, "<b>") + Count(html, "<script>"), 0U);
}

TEST_F(MailHtml, LineEndsAreBreaks) {
  const std::string html = HtmlOf(Both("one\r\ntwo\nthree\r\n\r\nfour"));
  EXPECT_EQ(Count(html, "<br>"), 4U) << html;
  const std::string joined = std::regex_replace(html, std::regex("[\r\n]"), "");
  EXPECT_NE(joined.find("one<br>two<br>three<br><br>four"), std::string::npos) << html;
}

TEST_F(MailHtml, AddressesAreLinks) {
  const std::string html =
      HtmlOf(Both("http://10.0.0.1:8080/switch-access-port-summary.htm\r\n"
                  "http://10.0.0.1:8080/hist45-1-2.htm\r\n\r\n" +
                  kSignature));
  EXPECT_EQ(LinksOf(html), (std::vector<std::string>{
                               "http://10.0.0.1:8080/switch-access-port-summary.htm",
                               "http://10.0.0.1:8080/hist45-1-2.htm", "https://quillon.example/"}));
}

TEST_F(MailHtml, LinksAreEscapedToo) {
  EXPECT_EQ(LinksOf(HtmlOf(Both("http://a.example/?b=1&c=2"))),
            std::vector<std::string>{"http://a.example/?b=1&amp;c=2"});
}

TEST_F(MailHtml, NothingBreaksOutOfALink) {
  for (const std::string& address :
       {"http://a.example/\"onclick=\"x"s, "http://a.example/'onclick='x"s,
        "http://a.example/<script>"s, "http://a.example/>x"s}) {
    const std::string html = HtmlOf(Both(address));
    LinksOf(html);
    EXPECT_EQ(Count(html, "<script"), 0U) << html;
  }
}

TEST_F(MailHtml, OtherAddressesAreText) {
  const std::string html = HtmlOf(Both("javascript:alert(1) ftp://a.example/ file:///etc"));
  EXPECT_EQ(LinksOf(html), std::vector<std::string>{});
  EXPECT_NE(html.find("javascript:alert(1) ftp://a.example/ file:///etc"), std::string::npos);
}

TEST_F(MailHtml, AttachmentsStandBehindBoth) {
  MailMessage message = Both(kSignature);
  message.attachments = {{"a.htm", "page"}};
  const MailPart mail = Composed(message);
  EXPECT_EQ(mail.Type(), "multipart/mixed");
  const std::vector<MailPart> parts = mail.Parts();
  ASSERT_EQ(parts.size(), 2U);
  EXPECT_EQ(parts[0].Type(), "multipart/alternative");
  EXPECT_EQ(parts[0].Parts().size(), 2U);
  EXPECT_EQ(parts[1].Decoded(), "page");
}

// ---- attachments

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

TEST(MailAttachments, StandBehindTheBodyInTheirOrder) {
  const MailPart mail = Composed(WithAttachments({{"b.htm", "1"}, {"a.htm", "2"}, {"q.css", "3"}}));
  EXPECT_EQ(mail.Type(), "multipart/mixed");
  const std::vector<MailPart> parts = mail.Parts();
  ASSERT_EQ(parts.size(), 4U);
  EXPECT_EQ(parts[0].Type(), "text/plain");
  EXPECT_EQ(TextOf(parts[0]), kSignature);
  EXPECT_EQ(parts[1].Parameter("filename", "Content-Disposition"), "b.htm");
  EXPECT_EQ(parts[2].Parameter("filename", "Content-Disposition"), "a.htm");
  EXPECT_EQ(parts[3].Parameter("filename", "Content-Disposition"), "q.css");
}

TEST(MailAttachments, AreFilesToSaveInBase64) {
  const std::vector<MailPart> parts =
      Composed(WithAttachments({{"a.htm", std::string(1000, 'x')}, {"b", "y"}})).Parts();
  ASSERT_EQ(parts.size(), 3U);
  for (std::size_t i : {1, 2}) {
    EXPECT_EQ(parts[i].Disposition(), "attachment");
    EXPECT_EQ(parts[i].Encoding(), "base64");
    for (const std::string& line : LinesOf(parts[i].encoded() + "\r\n")) {
      EXPECT_LE(line.size(), 76U);
    }
  }
}

TEST(MailAttachments, EndingOfTheNameTellsTheType) {
  struct Case {
    std::string name, type;
  };
  for (const Case& one :
       {Case{"a.htm", "text/html"}, Case{"a.html", "text/html"}, Case{"qws.css", "text/css"},
        Case{"a.b.htm", "text/html"}, Case{"a.txt", "application/octet-stream"},
        Case{"a", "application/octet-stream"}, Case{"htm", "application/octet-stream"},
        Case{"ahtml", "application/octet-stream"}, Case{"a.htm.gz", "application/octet-stream"},
        Case{"a.htmx", "application/octet-stream"}, Case{"a.", "application/octet-stream"}}) {
    const std::vector<MailPart> parts = Composed(WithAttachments({{one.name, "x"}})).Parts();
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[1].Type(), one.type) << one.name;
    EXPECT_EQ(parts[1].Parameter("filename", "Content-Disposition"), one.name);
  }
}

TEST(MailAttachments, NamesMayHoldBlanksAndPunctuation) {
  for (const std::string& name :
       {"my report.htm"s, "a;b.htm"s, "a=b.htm"s, "a,b.htm"s, "(a).htm"s, "a\"b.htm"s}) {
    const std::vector<MailPart> parts = Composed(WithAttachments({{name, "x"}})).Parts();
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[1].Parameter("filename", "Content-Disposition"), name);
  }
}

TEST(MailAttachments, LineEndsInANameAddNoField) {
  for (const std::string& lineEnd : {"\r\n"s, "\n"s, "\r"s}) {
    const MailPart mail =
        Composed(WithAttachments({{"a" + lineEnd + "Bcc: other@example.net.htm", "x"}}));
    EXPECT_FALSE(mail.HasField("Bcc"));
    EXPECT_FALSE(mail.Parts().at(1).HasField("Bcc"));
    EXPECT_EQ(mail.Parts().at(1).Decoded(), "x");
  }
}

TEST(MailAttachments, ArriveByteForByte) {
  std::string large;
  for (int i = 0; i < 2000; ++i) large += AllBytes() + std::to_string(i) + "\r\n.\r\n";
  for (const std::string& bytes :
       {""s, "a"s, "ab"s, "abc"s, "\r\n"s, "\n"s, "a\rb\nc\n\r"s, "\0"s, "no line end"s, ".\r\n"s,
        std::string(56, 'x'), std::string(57, 'x'), std::string(58, 'x'), AllBytes(), large}) {
    for (const std::string name : {"a.htm", "a.css", "a.bin"}) {
      const std::vector<MailPart> parts = Composed(WithAttachments({{name, bytes}})).Parts();
      ASSERT_EQ(parts.size(), 2U);
      EXPECT_TRUE(parts[1].Decoded() == bytes) << name << ", " << bytes.size() << " bytes";
    }
  }
}

TEST(MailAttachments, MayBeMany) {
  std::vector<MailAttachment> attachments;
  for (int i = 0; i < 30; ++i) {
    attachments.push_back({"page" + std::to_string(i) + ".htm", std::to_string(i)});
  }
  const std::vector<MailPart> parts = Composed(WithAttachments(attachments)).Parts();
  ASSERT_EQ(parts.size(), 31U);
  for (std::size_t i = 0; i < 30; ++i) EXPECT_EQ(parts[i + 1].Decoded(), attachments[i].bytes);
}

// ---- addresses

TEST(BareAddress, IsWhatStandsAloneOrBetweenTheBrackets) {
  EXPECT_EQ(BareAddress("a@b"), "a@b");
  EXPECT_EQ(BareAddress("<a@b>"), "a@b");
  EXPECT_EQ(BareAddress("Name <a@b>"), "a@b");
  EXPECT_EQ(BareAddress("Two Names <first.last+tag@mail.example.com>"),
            "first.last+tag@mail.example.com");
  EXPECT_EQ(BareAddress("\"Name, First\" <a@b>"), "a@b");
  EXPECT_EQ(BareAddress("M\u00FCller <a@b>"), "a@b");
  EXPECT_EQ(BareAddress("o'neil_x-1@example.org"), "o'neil_x-1@example.org");
}

TEST(BareAddress, IsEmptyWhereTheTextIsNoAddress) {
  for (const std::string& text :
       {""s, " "s, "a"s, "@"s, "@b"s, "a@"s, "<>"s, "Name"s, "Name <>"s, "Name <a>"s, "Name <@b>"s,
        "Name <a@>"s, "<a@b"s, "a@b>"s, "Name a@b"s, "a b@c"s, "a@b c"s, "Name <a b@c>"s}) {
    EXPECT_EQ(BareAddress(text), "") << testing::PrintToString(text);
  }
}

TEST(BareAddress, IsEmptyWhereThereAreTwo) {
  for (const std::string& text : {"a@b, c@d"s, "a@b,c@d"s, "a@b;c@d"s, "a@b; c@d"s, "<a@b> <c@d>"s,
                                  "<a@b>, <c@d>"s, "A <a@b>, B <c@d>"s, "a@b <c@d>, e@f"s}) {
    EXPECT_EQ(BareAddress(text), "") << text;
  }
}

// It stands in a command of its own line.
TEST(BareAddress, HoldsNothingThatEndsACommand) {
  for (const std::string& text :
       {"a@b\r\nRCPT TO:<c@d>"s, "a@b\r\n"s, "a@b\n"s, "a\r@b"s, "a@b\0c"s, "a@b\0"s, "<a@b\r\nx>"s,
        "<a@b>\r\n"s, "a@b>x"s, "a<@b"s, "a\t@b"s, "a@b\x7F"s}) {
    const std::string address = BareAddress(text);
    EXPECT_TRUE(address.empty() || address == "a@b") << testing::PrintToString(text);
  }
  EXPECT_EQ(BareAddress("a@b\r\nRCPT TO:<c@d>"), "");
  EXPECT_EQ(BareAddress("<a@b\r\nx>"), "");
}

}  // namespace
}  // namespace quillon
