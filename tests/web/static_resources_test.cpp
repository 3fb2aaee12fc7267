// Help text, icon and stylesheet: their bytes, their debug copies, their routes.
#include "web/static_resources.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes + "\r\n\x1A last";
}

// Takes all rights to a file away while it lives. Root reads regardless of rights, so
// it acts as nobody meanwhile.
class WithoutRights {
 public:
  WithoutRights(const Installation& installation, const std::string& name) {
    const fs::path root = installation.path();
    for (const char* folder : {"", "Debug", "WebReports"}) {
      fs::permissions(root / folder, fs::perms::all);
    }
    fs::permissions(root / name, fs::perms::none);
    if (wasRoot_) {
      EXPECT_EQ(seteuid(kNobody), 0);
    }
  }
  ~WithoutRights() {
    if (wasRoot_) {
      EXPECT_EQ(seteuid(0), 0);
    }
  }

 private:
  static constexpr uid_t kNobody = 65534;
  bool wasRoot_ = geteuid() == 0;
};

class StaticResources : public testing::Test {
 protected:
  void Write(const std::string& name, const std::string& bytes) const {
    site.installation.Write("WebReports/" + name, bytes);
  }
  std::string DebugCopy(const std::string& name) const {
    return site.installation.Exists("Debug/" + name) ? site.installation.Read("Debug/" + name)
                                                     : "no file";
  }
  void ReadHelp() { ReadHelpText(site.diagnostics, site.words); }
  void ReadIcon() { ReadFavIcon(site.diagnostics, site.favIconData); }
  std::string ReadCss(std::string text = "") const {
    ReadCssText(site.diagnostics, text);
    return text;
  }

  // There is one event, a failure of that procedure.
  void ExpectOneFailure(const std::string& moduleAndProcedure) const {
    const std::vector<std::string> events = site.Events();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].find("1\t" + moduleAndProcedure + "\t"), 0u) << events[0];
  }

  Site site;
};

TEST_F(StaticResources, HelpTextIsTheWholeFile) {
  for (const std::string& bytes : {AllBytes(), std::string("<b>help</b>"), std::string()}) {
    Write("HelpText.txt", bytes);
    ReadHelp();
    EXPECT_EQ(site.words.HelpText, bytes);
  }
  EXPECT_TRUE(site.Events().empty());
  EXPECT_EQ(DebugCopy("HelpText.txt"), "no file");
}

TEST_F(StaticResources, HelpTextWithoutAFileIsEmpty) {
  ReadHelp();
  EXPECT_EQ(site.words.HelpText, "");
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(StaticResources, DebugCopyOfTheHelpTextIsWrittenAlsoWhenItIsEmpty) {
  site.settings.DebugMode = true;
  ReadHelp();
  EXPECT_EQ(DebugCopy("HelpText.txt"), "");
  Write("HelpText.txt", AllBytes());
  ReadHelp();
  EXPECT_EQ(DebugCopy("HelpText.txt"), AllBytes());
  Write("HelpText.txt", "short");
  ReadHelp();
  EXPECT_EQ(DebugCopy("HelpText.txt"), "short");
}

TEST_F(StaticResources, IconIsSentByteForByte) {
  Write("Favicon.ico", AllBytes());
  ReadIcon();
  EXPECT_EQ(site.favIconData, AllBytes());
  EXPECT_EQ(site.Get("favicon.ico"), Response("image/x-icon", AllBytes()));
}

TEST_F(StaticResources, IconIsReadAtTheStartOnly) {
  Write("Favicon.ico", "first");
  ReadIcon();
  Write("Favicon.ico", "second");
  EXPECT_EQ(site.Get("favicon.ico"), Response("image/x-icon", "first"));
}

TEST_F(StaticResources, StylesheetIsReadAnewAtEachRequest) {
  for (const std::string& bytes : {AllBytes(), std::string("body {}"), std::string()}) {
    Write("qws.css", bytes);
    EXPECT_EQ(site.Get("qws.css"), Response("text/css", bytes));
  }
  EXPECT_EQ(DebugCopy("qws.css"), "no file");
}

TEST_F(StaticResources, DebugCopyOfTheStylesheetIsWrittenAtEachRequest) {
  site.settings.DebugMode = true;
  for (const std::string& bytes : {AllBytes(), std::string("body {}"), std::string()}) {
    Write("qws.css", bytes);
    site.Get("qws.css");
    EXPECT_EQ(DebugCopy("qws.css"), bytes);
  }
}

TEST_F(StaticResources, DebugCopyIsNotWrittenBeforeItsRequest) {
  site.settings.DebugMode = true;
  Write("qws.css", "body {}");
  site.Get("favicon.ico");
  site.Get("");
  EXPECT_EQ(DebugCopy("qws.css"), "no file");
}

TEST_F(StaticResources, MissingFilesAreAHeadWithLength0) {
  ReadIcon();
  EXPECT_EQ(site.Get("favicon.ico"), Response("image/x-icon", ""));
  EXPECT_EQ(site.Get("qws.css"), Response("text/css", ""));
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(StaticResources, DebugCopyOfAMissingStylesheetIsEmpty) {
  site.settings.DebugMode = true;
  Write("qws.css", "body {}");
  site.Get("qws.css");
  fs::remove(site.installation.path() + "/WebReports/qws.css");
  site.Get("qws.css");
  EXPECT_EQ(DebugCopy("qws.css"), "");
}

TEST_F(StaticResources, UnreadableHelpTextIsReportedAndStays) {
  Write("HelpText.txt", "new");
  site.words.HelpText = "before";
  {
    const WithoutRights locked(site.installation, "WebReports/HelpText.txt");
    ReadHelp();
  }
  EXPECT_EQ(site.words.HelpText, "before");
  ExpectOneFailure("modQuillonWeb_ReadHelpText");
}

TEST_F(StaticResources, UnreadableIconIsReportedAndStays) {
  Write("Favicon.ico", "new");
  site.favIconData = "before";
  {
    const WithoutRights locked(site.installation, "WebReports/Favicon.ico");
    ReadIcon();
  }
  EXPECT_EQ(site.favIconData, "before");
  ExpectOneFailure("modHtml_ReadFavIcon");
}

TEST_F(StaticResources, UnreadableStylesheetIsReportedAndStays) {
  Write("qws.css", "new");
  std::string text;
  {
    const WithoutRights locked(site.installation, "WebReports/qws.css");
    text = ReadCss("before");
  }
  EXPECT_EQ(text, "before");
  ExpectOneFailure("modQuillonWeb_ReadCssText");
}

TEST_F(StaticResources, UnreadableStylesheetIsAnsweredWithLength0) {
  Write("qws.css", "body {}");
  std::string answer;
  {
    const WithoutRights locked(site.installation, "WebReports/qws.css");
    answer = site.Get("qws.css");
  }
  EXPECT_EQ(answer, Response("text/css", ""));
  ExpectOneFailure("modQuillonWeb_ReadCssText");
}

}  // namespace
}  // namespace quillon
