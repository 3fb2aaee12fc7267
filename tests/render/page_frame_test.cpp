// The frame around a report, compared whole with stored pieces of page. A word's text in
// them is its number: "Word34".
#include "render/page_frame.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/house.h"
#include "support/stored_text.h"

namespace quillon {
namespace {

class PageFrame : public testing::Test {
 protected:
  PageFrame() { house_.NumberWords("Word"); }

  std::string Begin(int middleCellWidth, std::string_view reportKey) {
    std::string page;
    TopHeader_Begin(house_.render, middleCellWidth, reportKey, page);
    return page;
  }

  std::string End() {
    std::string page;
    TopHeader_End(house_.render, page);
    return page;
  }

  // Head and top band of a report page on which the selector marks nothing.
  static std::string UnmarkedTop() {
    return StoredPiece("mail_head.html") + StoredPiece("top_band_begin.html");
  }

  House house_;
};

TEST_F(PageFrame, TopBandOfAnUnknownReportMarksNothing) {
  const std::string keys[] = {"",
                              "switch",
                              "Switch-Access-Port-Top10",
                              "switch-access-port-top10-inerrors.htm",
                              "switch-access-port-top10 ",
                              "hist45d-disk-mem-summary.htm",
                              "disk-windows-top10'>"};
  for (const std::string& key : keys) EXPECT_EQ(UnmarkedTop(), Begin(580, key)) << key;
}

TEST_F(PageFrame, TopBandMarksTheCurrentReport) {
  const struct {
    std::string key;
    std::string value;
  } rows[] = {
      {"none", "none"},
      {"switch-access-port-top10", "switch-access-port-top10-inerrors.htm"},
      {"switch-access-port-summary", "hist45d-switch-access-port-summary.htm"},
      {"switch-trunk-port-top10", "switch-trunk-port-top10-inerrors.htm"},
      {"switch-trunk-port-summary", "hist45d-switch-trunk-port-summary.htm"},
      {"search-device-port-name", "search-device-port-name"},
      {"search-device-port-alias", "search-device-port-alias"},
      {"disk-windows-top10", "disk-windows-top10-usedpercent-desc.htm"},
      {"disk-unix-top10", "disk-unix-top10-usedpercent-desc.htm"},
      {"disk-physical-top10", "disk-physical-top10-usedpercent-desc.htm"},
      {"disk-virtual-top10", "disk-virtual-top10-usedpercent-desc.htm"},
      {"disk-mem-summary", "hist45d-disk-mem-summary.htm"},
      {"search-device-disk", "search-device-disk"},
      {"search-mac-ip", "search-mac-ip"},
  };
  for (const auto& row : rows) {
    const std::string expected = Replaced(UnmarkedTop(), "<option value='" + row.value + "'>",
                                          "<option selected='selected' value='" + row.value + "'>");
    EXPECT_EQ(expected, Begin(580, row.key)) << row.key;
  }
}

TEST_F(PageFrame, TopBandTakesTheWidthOfItsMiddleCell) {
  for (const int width : {kReportPageWidth, kPortSearchWidth, kDiskSearchWidth, 0}) {
    const std::string cell = "<td width='" + std::to_string(width) + "px' style='vertical-align";
    const std::string expected =
        Replaced(UnmarkedTop(), "<td width='580px' style='vertical-align", cell);
    EXPECT_EQ(expected, Begin(width, "")) << width;
  }
  EXPECT_EQ(580, kReportPageWidth);
  EXPECT_EQ(270, kPortSearchWidth);
  EXPECT_EQ(250, kDiskSearchWidth);
}

TEST_F(PageFrame, WordsAndCharsetAreWrittenAsTheyAre) {
  for (const std::string text : {"", "n/a", "B\xFCro <b>&</b>", "it's \"it\"", "\r\n"}) {
    house_.words.LangWord[51] = text;
    house_.settings.CharSet = text;
    std::string expected = Replaced(UnmarkedTop(), "Word51", text);
    expected = Replaced(expected, "ISO-8859-1", text);
    EXPECT_EQ(expected, Begin(580, ""));
  }
}

TEST_F(PageFrame, GroupLabelsAreNoWordsOfTheLanguageFile) {
  house_.words = LangWords();
  const std::string page = Begin(580, "none");
  for (const std::string label : {"Switch", "Server", "User"}) {
    EXPECT_NE(std::string::npos, page.find("<optgroup label='" + label + "'>")) << label;
  }
  EXPECT_NE(std::string::npos, page.find("<option selected='selected' value='none'>n/a</option>"));
}

TEST_F(PageFrame, HelpPopupIsEmptyWithoutHelpText) {
  EXPECT_EQ(StoredPiece("top_band_end.html"), End());
}

TEST_F(PageFrame, HelpTextStandsInThePopupAsItIs) {
  const std::string start = "          <div class='div-table'>\r\n";
  for (const std::string text : {"one line", "<b>K\xFCrzel</b> & \"more\"\r\n", "a\nb\n", " "}) {
    house_.words.HelpText = text;
    EXPECT_EQ(Replaced(StoredPiece("top_band_end.html"), start, start + text), End());
  }
}

TEST_F(PageFrame, MailedPageHasTheHeadAlone) {
  std::string page;
  TopHeader_MailReport(house_.render, page);
  EXPECT_EQ(StoredPiece("mail_head.html"), page);
  house_.settings.CharSet = "UTF-8";
  page.clear();
  TopHeader_MailReport(house_.render, page);
  EXPECT_EQ(Replaced(StoredPiece("mail_head.html"), "ISO-8859-1", "UTF-8"), page);
}

TEST_F(PageFrame, FooterTellsTheOwnerAndTheVersion) {
  std::string page;
  Page_Footer(house_.render, page);
  EXPECT_EQ(StoredPiece("page_footer.html"), page);
}

TEST_F(PageFrame, PageEndsWithoutALineEnd) {
  std::string page;
  Page_End(house_.render, page);
  EXPECT_EQ("</body>\r\n</html>", page);
}

TEST_F(PageFrame, EveryPieceIsAppendedBehindWhatIsThere) {
  std::string page = "<!-- before -->";
  TopHeader_Begin(house_.render, 580, "", page);
  TopHeader_End(house_.render, page);
  TopHeader_MailReport(house_.render, page);
  Page_Footer(house_.render, page);
  Page_End(house_.render, page);
  EXPECT_EQ("<!-- before -->" + UnmarkedTop() + StoredPiece("top_band_end.html") +
                StoredPiece("mail_head.html") + StoredPiece("page_footer.html") +
                "</body>\r\n</html>",
            page);
  EXPECT_TRUE(house_.Events().empty());
}

}  // namespace
}  // namespace quillon
