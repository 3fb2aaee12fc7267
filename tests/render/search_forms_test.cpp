// The search forms, compared whole with stored pieces of page. In them a field's text names its
// field, "Device-text", and a word's text is its number, "Word17".
#include "render/search_forms.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/house.h"
#include "support/stored_text.h"

namespace quillon {
namespace {

// Texts that HTML or a charset might take for something else.
const std::string kAwkwardTexts[] = {
    "O'Neil's", "a\"b\"",       "<b>R&D</b>", "K\xFC\x63he \xC9\xFF", "*",
    "",         " both ends  ", "[a-f]?#%_",  "'/><script",           "\r\n",
    "a+b&amp;", "\\\\srv\\c$",  "&nbsp;",     "\xE2\x82\xAC\x80",     std::string(5000, 'x')};

// The keys in the order of the form.
constexpr std::string_view kOrderKeys[] = {"totalbytes-asc",  "totalbytes-desc",  "freebytes-asc",
                                           "freebytes-desc",  "usedbytes-asc",    "usedbytes-desc",
                                           "usedpercent-asc", "usedpercent-desc", "trend14d-asc",
                                           "trend14d-desc",   "trend30d-asc",     "trend30d-desc"};

class SearchForms : public testing::Test {
 protected:
  SearchForms() { house_.NumberWords("Word"); }
  void TearDown() override { EXPECT_TRUE(house_.Events().empty()); }

  std::string PortNameForm(std::string_view device = "Device-text",
                           std::string_view port = "Port-text") {
    std::string page;
    TopHeader_SearchDevicePortName(house_.render, device, port, page);
    return page;
  }

  std::string PortAliasForm(std::string_view device = "Device-text",
                            std::string_view port = "Port-text") {
    std::string page;
    TopHeader_SearchDevicePortAlias(house_.render, device, port, page);
    return page;
  }

  std::string MacIpForm(std::string_view address = "Address-text") {
    std::string page;
    TopHeader_SearchMacIp(house_.render, address, page);
    return page;
  }

  std::string DiskForm(std::string_view orderKey, std::string_view device = "Device-text",
                       std::string_view disk = "Disk-text") {
    std::string page;
    TopHeader_SearchDeviceStorage(house_.render, device, disk, orderKey, page);
    return page;
  }

  static std::string StoredAliasForm() {
    return Replaced(StoredPiece("search_form_port.html"), "action='search-device-port-name'",
                    "action='search-device-port-alias'");
  }

  static std::string StoredDiskForm(std::string_view marked) {
    const std::string option = "<option value='" + std::string(marked) + "'>";
    return Replaced(StoredPiece("search_form_disk.html"), option,
                    Replaced(option, "<option", "<option selected='selected'"));
  }

  House house_;
};

TEST_F(SearchForms, FormOfPortsByName) {
  EXPECT_EQ(StoredPiece("search_form_port.html"), PortNameForm());
}

TEST_F(SearchForms, FormOfPortsByAliasDiffersInItsActionAlone) {
  EXPECT_EQ(StoredAliasForm(), PortAliasForm());
}

TEST_F(SearchForms, FormOfAddresses) {
  EXPECT_EQ(StoredPiece("search_form_mac.html"), MacIpForm());
}

TEST_F(SearchForms, FormOfDisksMarksTheOrderOfItsKey) {
  for (const std::string_view key : kOrderKeys) {
    EXPECT_EQ(StoredDiskForm(key), DiskForm(key)) << key;
  }
}

TEST_F(SearchForms, UnknownOrderMarksNothing) {
  for (const std::string key :
       {"", "usedpercent", "-desc", "usedpercent-", "usedpercent-DESC", "UsedPercent-desc",
        " usedpercent-desc", "usedpercent-desc ", "usedpercent-desc'", "usedpercent-descending",
        "Used Percent - Desc", "totalbytes-asc-desc", "<b>\xFC\"'", "trend14d-asc\r\n"}) {
    EXPECT_EQ(StoredPiece("search_form_disk.html"), DiskForm(key)) << key;
  }
}

TEST_F(SearchForms, DiskFormOffersTheTwelveOrdersAndNoOther) {
  const std::string page = DiskForm("");
  std::size_t at = 0;
  for (const std::string_view key : kOrderKeys) {
    const std::string start = "<option value='";
    at = page.find(start, at);
    ASSERT_NE(std::string::npos, at) << key;
    at += start.size();
    EXPECT_EQ(key, page.substr(at, page.find('\'', at) - at));
  }
  EXPECT_EQ(std::string::npos, page.find("<option", at));
}

TEST_F(SearchForms, OrdersOfTheDiskFormStandInOneLine) {
  const std::string page = DiskForm("usedpercent-desc");
  const std::size_t start = PlaceOf(page, "        <tr>          <div>");
  const std::size_t end =
      PlaceOf(page, "          </select></div>        </tr>      </table></td>\r\n");
  ASSERT_LT(start, end);
  EXPECT_EQ(std::string::npos, page.substr(start, end - start).find_first_of("\r\n"));
}

TEST_F(SearchForms, LandingPagesHaveEmptyFields) {
  const std::string ports = Replaced(StoredPiece("search_form_port.html"), "Device-text", "");
  EXPECT_EQ(Replaced(ports, "value='Port-text'", "value=''"), PortNameForm("", ""));
  const std::string aliases = Replaced(StoredAliasForm(), "Device-text", "");
  EXPECT_EQ(Replaced(aliases, "value='Port-text'", "value=''"), PortAliasForm("", ""));
  EXPECT_EQ(Replaced(StoredPiece("search_form_mac.html"), "value='Address-text'", "value=''"),
            MacIpForm(""));
  const std::string disks = Replaced(StoredDiskForm("usedpercent-desc"), "Device-text", "");
  EXPECT_EQ(Replaced(disks, "value='Disk-text'", "value=''"), DiskForm("usedpercent-desc", "", ""));
}

TEST_F(SearchForms, SubmittedTextsStandInTheirFieldsAsTheyCame) {
  for (const std::string& text : kAwkwardTexts) {
    const std::string port = Replaced(StoredPiece("search_form_port.html"), "Device-text", text);
    EXPECT_EQ(Replaced(port, "Port-text", text + "/2"), PortNameForm(text, text + "/2"));
    const std::string alias = Replaced(StoredAliasForm(), "Device-text", text);
    EXPECT_EQ(Replaced(alias, "Port-text", text + "/2"), PortAliasForm(text, text + "/2"));
    EXPECT_EQ(Replaced(StoredPiece("search_form_mac.html"), "Address-text", text), MacIpForm(text));
    const std::string disk = Replaced(StoredDiskForm("freebytes-asc"), "Device-text", text);
    EXPECT_EQ(Replaced(disk, "Disk-text", text + "/2"),
              DiskForm("freebytes-asc", text, text + "/2"));
  }
}

TEST_F(SearchForms, SubmittedNulStandsInItsField) {
  using std::string_view_literals::operator""sv;
  const std::string_view text = "a\0b"sv;
  EXPECT_EQ(Replaced(StoredPiece("search_form_mac.html"), "Address-text", text), MacIpForm(text));
}

TEST_F(SearchForms, TextsThatLookLikeOptionsMarkNothing) {
  const std::string text = "value='usedbytes-asc'>";
  const std::string expected = Replaced(StoredPiece("search_form_disk.html"), "Device-text", text);
  EXPECT_EQ(expected, DiskForm("", text));
}

TEST_F(SearchForms, WordsStandAsTheyAreAndInNoOtherPlace) {
  const struct {
    int number;
    bool onPorts;
    bool onAddresses;
    bool onDisks;
  } rows[] = {{15, true, false, true},   {16, true, false, false},  {17, true, true, true},
              {33, false, true, false},  {68, false, false, true},  {81, false, false, true},
              {14, false, false, false}, {18, false, false, false}, {69, false, false, false}};
  const std::string text = "S\xF6k <b>&'\"";
  const auto changed = [&](const std::string& piece, const std::string& word, bool holds) {
    return holds ? Replaced(piece, word, text) : piece;
  };
  for (const auto& row : rows) {
    const std::string word = "Word" + std::to_string(row.number);
    SCOPED_TRACE(word);
    house_.words.LangWord[row.number] = text;
    EXPECT_EQ(changed(StoredPiece("search_form_port.html"), word, row.onPorts), PortNameForm());
    EXPECT_EQ(changed(StoredAliasForm(), word, row.onPorts), PortAliasForm());
    EXPECT_EQ(changed(StoredPiece("search_form_mac.html"), word, row.onAddresses), MacIpForm());
    EXPECT_EQ(changed(StoredPiece("search_form_disk.html"), word, row.onDisks), DiskForm(""));
    house_.words.LangWord[row.number] = word;
  }
}

TEST_F(SearchForms, OrdersAreNoWordsOfTheLanguageFile) {
  house_.words = LangWords();
  std::string expected = StoredDiskForm("trend30d-asc");
  for (const char* word : {"Word15", "Word68", "Word81", "Word17"}) {
    expected = Replaced(expected, word, "n/a");
  }
  EXPECT_EQ(expected, DiskForm("trend30d-asc"));
}

TEST_F(SearchForms, CharsetOfThePageChangesNothing) {
  house_.settings.CharSet = "UTF-8";
  const std::string text = "Z\xFCrich \xC3\xBC";
  EXPECT_EQ(Replaced(StoredPiece("search_form_mac.html"), "Address-text", text), MacIpForm(text));
}

TEST_F(SearchForms, FormsAreAppendedBehindWhatIsThere) {
  std::string page = "<!-- before -->";
  TopHeader_SearchDevicePortName(house_.render, "a", "b", page);
  TopHeader_SearchDevicePortAlias(house_.render, "c", "d", page);
  TopHeader_SearchMacIp(house_.render, "e", page);
  TopHeader_SearchDeviceStorage(house_.render, "f", "g", "usedbytes-desc", page);
  EXPECT_EQ("<!-- before -->" + PortNameForm("a", "b") + PortAliasForm("c", "d") + MacIpForm("e") +
                DiskForm("usedbytes-desc", "f", "g"),
            page);
}

}  // namespace
}  // namespace quillon
