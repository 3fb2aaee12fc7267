// quillondb check: files and folders beside the databases, and what lies in their place.
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

class QuillondbCheckFiles : public CheckedInstallation {
 protected:
  // What would wait for ever where it is opened to be read.
  void PutPipe(const std::string& file) const {
    fs::remove_all(home_ / file);
    ASSERT_EQ(mkfifo((home_ / file).c_str(), 0600), 0) << file;
  }

  std::string Path(const std::string& file) const { return (home_ / file).string(); }

  static std::string Me() {
    const passwd* entry = getpwuid(geteuid());
    return entry == nullptr ? std::to_string(geteuid()) : entry->pw_name;
  }
};

TEST_F(QuillondbCheckFiles, SaysWhatTheSiteLacksWithoutEachWebFile) {
  const std::string copy = "; copy it from /etc/quillon-web or share/WebReports";
  const std::pair<std::string, std::string> kLosses[] = {
      {"WebReports/Language.ini", "every word of the pages shows as \"n/a\"" + copy},
      {"WebReports/HelpText.txt", "the help is empty" + copy},
      {"WebReports/Favicon.ico", "browsers show no icon" + copy},
      {"WebReports/qws.css", "pages have no colours; run 'quillonctl -C " + home_.string() +
                                 " apply-changes Blue', or with another theme"}};
  for (const auto& [file, loss] : kLosses) {
    fs::rename(home_ / file, root_ / "kept");
    ExpectOnly(file + ": the file is missing, so " + loss);
    fs::rename(root_ / "kept", home_ / file);
  }
}

TEST_F(QuillondbCheckFiles, FindsMissingFolders) {
  for (const char* folder : {"WebReports/Mail", "WebReports/Cache", "Debug"}) {
    fs::remove(home_ / folder);
    ExpectOnly(fmt::format("{}: the folder is missing; run 'install -d -o {} {}'", folder, Me(),
                           Path(folder)));
    fs::create_directory(home_ / folder);
  }
}

TEST_F(QuillondbCheckFiles, NamesAPathWithBlanksAsAShellTakesIt) {
  const fs::path home = root_ / "my $home";
  fs::rename(home_, home);
  fs::remove(home / "Debug");
  const Findings findings = Check(home);
  ASSERT_FALSE(findings.empty());
  EXPECT_TRUE(findings[0].ends_with(" \"" + (root_ / "my \\$home/Debug").string() + "\"'"))
      << findings[0];
}

TEST_F(QuillondbCheckFiles, FindsWhatLiesInThePlaceOfAFolder) {
  fs::remove(home_ / "WebReports/Cache");
  std::ofstream(home_ / "WebReports/Cache") << "no folder";
  ExpectOnly(
      fmt::format("WebReports/Cache: the folder is missing; move away what lies there, and"
                  " run 'install -d -o {} {}'",
                  Me(), Path("WebReports/Cache")));
}

TEST_F(QuillondbCheckFiles, WaitsForNoPipeInThePlaceOfAFile) {
  PutPipe("WebReports/Language.ini");
  ExpectOnly(
      "WebReports/Language.ini: the file is missing, so every word of the pages shows as \"n/a\";"
      " move away what lies there, and copy it from /etc/quillon-web or share/WebReports");
}

TEST_F(QuillondbCheckFiles, FindsAnEventFileThatIsNone) {
  PutPipe("Debug/AppEventWeb.txt");
  ExpectOnly(
      "Debug/AppEventWeb.txt: no file, so no event is written down; move away what lies there");
}

TEST_F(QuillondbCheckFiles, FindsAnOldEventFileInTheWay) {
  std::ofstream(home_ / "Debug/AppEventWeb.bak") << "an event";
  ExpectOnly(
      "Debug/AppEventWeb.bak: in the way, so old events are not deleted any more; take out what"
      " you need of them, and delete it");
}

TEST_F(QuillondbCheckFiles, FindsWhatLiesInThePlaceOfTheSocket) {
  std::ofstream(home_ / "quillonweb.socket") << "no socket";
  ExpectOnly(
      "quillonweb.socket: no socket, so quillonctl does not reach the service; delete what lies"
      " there, and restart the service");
}

TEST_F(QuillondbCheckFiles, FindsAMorvaneIniThatIsNoFile) {
  PutPipe("Morvane.ini");
  ExpectAmong(Path("Morvane.ini") + " is no file; the service ends at once without it");
}

}  // namespace
}  // namespace quillon
