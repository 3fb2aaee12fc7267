// The rules of Language.ini: which lines count, which word they set, what stops the
// reading.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/house.h"
#include "web/static_resources.h"

namespace quillon {
namespace {

class LanguageWords : public testing::Test {
 protected:
  // Reads a file of these bytes. The words that are set: "3=text;7=other".
  std::string WordsOf(const std::string& file) {
    house.installation.Write("WebReports/Language.ini", file);
    return Read();
  }

  std::string Read() {
    ReadLangWord(house.diagnostics, house.words);
    std::string set;
    for (int number = 1; number <= 100; ++number) {
      const std::string& word = house.words.LangWord[number];
      if (word == "n/a") continue;
      set += (set.empty() ? "" : ";") + std::to_string(number) + "=" + word;
    }
    return set;
  }

  std::string DebugCopy() const {
    return house.installation.Exists("Debug/Language.ini")
               ? house.installation.Read("Debug/Language.ini")
               : "no file";
  }

  // There is one event more than at the last call: a failure of the reading.
  void ExpectOneMoreFailure() {
    const std::vector<std::string> events = house.Events();
    ASSERT_EQ(events.size(), ++failures_);
    EXPECT_EQ(events.back().find("1\tmodQuillonWeb_ReadLangWord\t"), 0u) << events.back();
  }

  House house;

 private:
  std::size_t failures_ = 0;
};

std::string X(std::size_t count) {
  return std::string(count, 'x');
}

TEST_F(LanguageWords, LinesOfNumberLabelAndTextSetTheirWord) {
  const struct {
    const char* rule;
    std::string file;
    const char* words;
  } kCases[] = {
      {"three columns", "3\tlabel\ttext\n", "3=text"},
      {"last number", "100\tlabel\ttext\n", "100=text"},
      {"first number", "1\tlabel\ttext\n", "1=text"},
      {"no line end at the end", "3\tlabel\ttext", "3=text"},
      {"later line wins", "3\tl\told\n4\tl\tother\n3\tl\tnew\n", "3=new;4=other"},
      {"any order", "9\tl\tnine\n2\tl\ttwo\n", "2=two;9=nine"},
      {"label is not read", "3\t99\ttext\n", "3=text"},
      {"empty label is a run of tabs", "3\t\ttext\n", ""},
      {"blanks around the text", "3\tlabel\t   some text  \n", "3=some text"},
      {"empty text", "3\tlabel\t\n", "3="},
      {"blank text", "3\tlabel\t   \n", "3="},
      {"fourth column", "3\tlabel\ttext\tmore\n", "3=text\tmore"},
      {"fourth column behind tabs", "3\tlabel\ttext\t\t\tmore\n", "3=text\tmore"},
      {"tab at the end", "3\tlabel\ttext\t\n", "3=text\t"},
      {"tab and blank at the end", "3\tlabel\ttext\t  \n", "3=text\t"},
      {"bytes as they are", "3\tl\t\xE4\xF6\xFC\xDF \xFF\xC3\xA4\n",
       "3=\xE4\xF6\xFC\xDF \xFF\xC3\xA4"},
      {"signs as they are", "3\tl\t<b>\"&amp;'=;--\n", "3=<b>\"&amp;'=;--"},
      {"text that is no number", "3\tl\t101\n", "3=101"},
  };
  for (const auto& row : kCases) EXPECT_EQ(WordsOf(row.file), row.words) << row.rule;
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(LanguageWords, OtherLinesAreSkipped) {
  for (const std::string line : {"",
                                 " ",
                                 "no tab",
                                 "3",
                                 "3\t",
                                 "3\tone tab",
                                 "3 label text",
                                 "3\t\t\tone run",
                                 "\t\ttext",
                                 "\t3\tlabel\ttext",
                                 "ID\tlabel\ttext",
                                 "ID3\tlabel\ttext",
                                 "IDentity",
                                 "--\tlabel\ttext",
                                 "--3\tlabel\ttext",
                                 "-- 3\tlabel\ttext",
                                 "==\tlabel\ttext",
                                 "=====",
                                 "-----",
                                 "word\tlabel\ttext",
                                 "id\tlabel\ttext",
                                 ";3\tlabel\ttext",
                                 "[3]\tlabel\ttext",
                                 "3a\tlabel\ttext",
                                 "1,0\tlabel\ttext",
                                 "1 0\tlabel\ttext",
                                 "$3\tlabel\ttext",
                                 "&H3\tlabel\ttext",
                                 "3.1.2\tlabel\ttext",
                                 "\xEF\xBB\xBF"
                                 "3\tlabel\ttext"}) {
    EXPECT_EQ(WordsOf("1\tl\tone\n" + line + "\n2\tl\ttwo\n"), "1=one;2=two") << line;
  }
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(LanguageWords, ARunOfTabsIsOneTab) {
  for (std::size_t first = 1; first <= 13; ++first) {
    for (std::size_t second = 1; second <= 13; ++second) {
      const std::string line =
          "3" + std::string(first, '\t') + "label" + std::string(second, '\t') + "text\n";
      EXPECT_EQ(WordsOf(line), "3=text") << first << " and " << second << " tabs";
    }
  }
}

TEST_F(LanguageWords, TheFirstColumnIsAnyNumber) {
  const struct {
    const char* number;
    const char* words;
  } kCases[] = {{"7", "7=text"},      {" 7 ", "7=text"},  {"+7", "7=text"},  {"007", "7=text"},
                {"7.0", "7=text"},    {"1e1", "10=text"}, {"2.4", "2=text"}, {"2.5", "2=text"},
                {"2.6", "3=text"},    {"3.5", "4=text"},  {"0.6", "1=text"}, {"99.5", "100=text"},
                {"100.5", "100=text"}};
  for (const auto& row : kCases) {
    EXPECT_EQ(WordsOf(std::string(row.number) + "\tlabel\ttext\n"), row.words) << row.number;
  }
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(LanguageWords, ANumberOutside1To100StopsTheReading) {
  for (const std::string number : {"101", "0", "-1", "-3", "0.5", "0.4", "100.6", "32768", "-32769",
                                   "2147483648", "99999999999", "1e300"}) {
    EXPECT_EQ(WordsOf("1\tl\tone\n" + number + "\tl\tbad\n2\tl\ttwo\n"), "1=one") << number;
    ExpectOneMoreFailure();
  }
}

TEST_F(LanguageWords, ANumberOutsideInALineWithoutATextStopsNothing) {
  EXPECT_EQ(WordsOf("101\n0\tlabel\n101\tlabel\n2\tl\ttwo\n"), "2=two");
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(LanguageWords, ALongLineWithoutANumberOverwritesTheWordBefore) {
  const struct {
    const char* rule;
    std::string line;
    const char* word;
  } kCases[] = {
      {"tab at 501", X(500) + "\tover", "5=over"},
      {"tab at 500", X(499) + "\tover", "5=word"},
      {"tab far behind", X(900) + "\t over ", "5=over"},
      {"no tab", X(900), "5=word"},
      {"second tab at 501", "x\t" + X(498) + "\tover", "5=over"},
      {"second tab at 500", "x\t" + X(497) + "\tover", "5=word"},
      {"tabs at 500 and 501 are one", X(499) + "\t\tover", "5=word"},
      {"places are counted after the runs", "x\t\t\t\t\t\t" + X(498) + "\tover", "5=over"},
      {"a run does not add to them", "x\t\t\t\t\t\t" + X(497) + "\tover", "5=word"},
      {"only tabs behind 500 count", X(500) + "\tone\ttwo", "5=one\ttwo"},
      {"empty first column", "\t" + X(499) + "\tover", "5=over"},
      {"a heading stays a heading", "ID" + X(500) + "\tover", "5=word"},
      {"a rule stays a rule", "==" + X(500) + "\tover", "5=word"},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(WordsOf("5\tl\tword\n" + row.line + "\n"), row.word) << row.rule;
  }
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(LanguageWords, TheWordBeforeIsThatOfTheLastNumberRead) {
  EXPECT_EQ(WordsOf("5\tl\tfive\n6\tl\tsix\n" + X(500) + "\tover\n"), "5=five;6=over");
  EXPECT_EQ(WordsOf("5\tl\tfive\n6\tonly a label\n" + X(500) + "\tover\n"), "5=five;6=over");
  EXPECT_EQ(WordsOf("5\tl\tfive\nx\tl\tskipped\n" + X(500) + "\tover\n"), "5=over");
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(LanguageWords, ALongLineBeforeAnyNumberStopsTheReading) {
  EXPECT_EQ(WordsOf(X(500) + "\tover\n5\tl\tfive\n"), "");
  ExpectOneMoreFailure();
}

TEST_F(LanguageWords, ALongLineWithANumberIsOrdinary) {
  EXPECT_EQ(WordsOf("5\t" + X(600) + "\tword\n"), "5=word");
  EXPECT_EQ(WordsOf("5\tl\t" + X(600) + "\ttail\n"), "5=" + X(600) + "\ttail");
}

TEST_F(LanguageWords, CarriageReturnLineFeedAndBothEndALine) {
  EXPECT_EQ(WordsOf("1\tl\ta\r2\tl\tb\n3\tl\tc\r\n4\tl\td"), "1=a;2=b;3=c;4=d");
  EXPECT_EQ(WordsOf("\r\r\n\n1\tl\ta\n\r\r\n2\tl\tb\r"), "1=a;2=b");
  EXPECT_EQ(WordsOf("1\tl\r2\tl\tb\r"), "2=b");
}

TEST_F(LanguageWords, WithoutAFileAllWordsAreMissing) {
  house.words.LangWord.Fill("old");
  EXPECT_EQ(Read(), "");
  EXPECT_TRUE(house.Events().empty());
}

TEST_F(LanguageWords, AReadingForgetsTheWordsOfTheOneBefore) {
  WordsOf("1\tl\tone\n2\tl\ttwo\n");
  EXPECT_EQ(WordsOf("2\tl\tnew\n"), "2=new");
  EXPECT_EQ(WordsOf(""), "");
}

TEST_F(LanguageWords, DebugCopyListsTheWordsThatAreSet) {
  house.settings.DebugMode = true;
  WordsOf("10\tl\tten\tx\n2\tl\t two \n3\tl\t\n4\tl\tn/a\n100\tl\t\xE4\n");
  EXPECT_EQ(DebugCopy(), "2\ttwo\r\n10\tten\tx\r\n100\t\xE4\r\n");
  WordsOf("1\tl\tone\n");
  EXPECT_EQ(DebugCopy(), "1\tone\r\n");
}

TEST_F(LanguageWords, DebugCopyWithoutAFileHasNoLines) {
  house.settings.DebugMode = true;
  Read();
  EXPECT_EQ(DebugCopy(), "");
}

TEST_F(LanguageWords, ThereIsNoDebugCopyWithoutDebugModeOrAfterAFailure) {
  WordsOf("1\tl\tone\n");
  EXPECT_EQ(DebugCopy(), "no file");
  house.settings.DebugMode = true;
  WordsOf("1\tl\tone\n101\tl\tbad\n");
  EXPECT_EQ(DebugCopy(), "no file");
}

}  // namespace
}  // namespace quillon
