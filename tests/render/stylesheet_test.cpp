// The stylesheet in each of its themes, byte for byte: a stored list of rules with the
// names of colours in braces, and a stored table of the colours.
#include "render/stylesheet.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/file_size_limit.h"
#include "support/house.h"
#include "support/stored_text.h"

namespace quillon {
namespace {

const std::vector<std::string> kThemes = {"Black", "Blue", "Gold", "Gray", "Kestrel"};
const std::vector<std::string> kNoThemes = {"black", "BLUE", "", " Blue", "Blue ", "Green"};

// The whole file in the colours of one column of the table; of none, for any other name.
std::string ExpectedFile(const std::string& theme) {
  std::istringstream table(StoredPiece("stylesheet_colours.txt"));
  std::string line;
  std::getline(table, line);  // the names of the themes
  std::string text = StoredPiece("stylesheet_rules.txt") + "\r\n";
  while (std::getline(table, line)) {
    std::istringstream fields(line);
    std::string name;
    fields >> name;
    std::string colour;
    for (const std::string& column : kThemes) {
      std::string value;
      fields >> value;
      if (column == theme) colour = value;
    }
    text = Replaced(text, "{" + name + "}", colour);
  }
  return text;
}

class Stylesheet : public testing::Test {
 protected:
  std::string Written() { return house_.installation.Read("WebReports/qws.css"); }

  void ExpectOneFailure() {
    const std::string start = "1\tmodHtml_CreateCss\t";
    const std::vector<std::string> events = house_.Events();
    ASSERT_EQ(1u, events.size());
    EXPECT_EQ(start, events[0].substr(0, start.size()));
  }

  House house_;
};

TEST_F(Stylesheet, IsWrittenInTheColoursOfItsTheme) {
  for (const std::string& theme : kThemes) {
    CreateCss(house_.diagnostics, theme);
    EXPECT_EQ(ExpectedFile(theme), Written()) << theme;
    EXPECT_EQ(ExpectedFile(theme), StylesheetText(FindTheme(theme))) << theme;
  }
  EXPECT_TRUE(house_.Events().empty());
}

TEST_F(Stylesheet, OfAnUnknownThemeHasEmptyColours) {
  for (const std::string& name : kNoThemes) {
    CreateCss(house_.diagnostics, name);
    EXPECT_EQ(ExpectedFile(""), Written()) << "'" << name << "'";
  }
  EXPECT_NE(std::string::npos, Written().find("\r\nbody {background-color:;margin:15px}\r\n"));
  EXPECT_TRUE(house_.Events().empty());
}

TEST_F(Stylesheet, Has63LinesAndEndsInTwoLineEnds) {
  for (const std::string name : {"Gold", "no theme"}) {
    CreateCss(house_.diagnostics, name);
    const std::vector<std::string> lines = SplitLines(Written());
    ASSERT_EQ(64u, lines.size()) << name;
    EXPECT_EQ("", lines[63]);
    EXPECT_EQ("table.footer {", lines[62].substr(0, 14));
    EXPECT_EQ("}\r\n\r\n", Written().substr(Written().size() - 5));
  }
}

TEST_F(Stylesheet, SecondWriteGivesTheSameFile) {
  CreateCss(house_.diagnostics, "Kestrel");
  const std::string first = Written();
  CreateCss(house_.diagnostics, "Kestrel");
  EXPECT_EQ(first, Written());
  EXPECT_EQ((std::vector<std::string>{"Cache", "Mail", "qws.css"}),
            house_.installation.List("WebReports"));
}

TEST_F(Stylesheet, ReplacesALongerFile) {
  house_.installation.Write("WebReports/qws.css", std::string(100'000, 'x'));
  CreateCss(house_.diagnostics, "Gray");
  EXPECT_EQ(ExpectedFile("Gray"), Written());
}

TEST_F(Stylesheet, OldFileStaysWhenTheNewOneCannotBeWritten) {
  CreateCss(house_.diagnostics, "Black");
  {
    const FileSizeLimit fullDisk(1000);
    CreateCss(house_.diagnostics, "Gold");
  }
  ExpectOneFailure();
  EXPECT_EQ(ExpectedFile("Black"), Written());
  EXPECT_EQ((std::vector<std::string>{"Cache", "Mail", "qws.css"}),
            house_.installation.List("WebReports"));
}

TEST_F(Stylesheet, FolderThatStandsInThePlaceOfTheFileIsReported) {
  std::filesystem::create_directory(house_.installation.path() + "/WebReports/qws.css");
  CreateCss(house_.diagnostics, "Blue");
  ExpectOneFailure();
  EXPECT_EQ((std::vector<std::string>{"Cache", "Mail", "qws.css"}),
            house_.installation.List("WebReports"));
}

TEST_F(Stylesheet, MissingFolderIsReported) {
  std::filesystem::remove_all(house_.installation.path() + "/WebReports");
  CreateCss(house_.diagnostics, "Blue");
  ExpectOneFailure();
  EXPECT_FALSE(house_.installation.Exists("WebReports"));
}

TEST(Themes, AreFoundByTheirExactName) {
  for (const std::string& name : kThemes) EXPECT_EQ(name, FindTheme(name).name);
  for (const std::string& name : kNoThemes) EXPECT_EQ("", FindTheme(name).BodyBg) << name;
  EXPECT_EQ("Blue", kDefaultTheme);
}

}  // namespace
}  // namespace quillon
