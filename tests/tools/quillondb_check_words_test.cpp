// quillondb check: the words of the site.
#include <set>

#include "platform/files.h"
#include "tools/quillondb_check_fixture.h"
#include "web/language_file.h"

namespace quillon {
namespace {

class QuillondbCheckWords : public CheckedInstallation {
 protected:
  const fs::path file_ = fs::path("WebReports") / "Language.ini";

  // The file without the lines of these numbers.
  void Remove(const std::set<std::string>& numbers) const {
    const std::string path = (home_ / file_).string();
    std::string kept;
    ReadLines(path, [&](std::string_view line) {
      if (numbers.contains(std::string(line.substr(0, line.find('\t'))))) return;
      kept.append(line).append("\r\n");
    });
    std::ofstream(path) << kept;
  }
};

TEST_F(QuillondbCheckWords, FindsWordsThatAreMissing) {
  Remove({"7", "88"});
  ExpectOnly(
      "WebReports/Language.ini: no text for 7, 88, so pages show \"n/a\" there; take the lines over"
      " from the file in /etc/quillon-web or share/WebReports");
}

TEST_F(QuillondbCheckWords, KnowsEachWordOfTheFileThatComesWithTheProgram) {
  LangWords words;
  ParseLanguageFile(Content(home_ / file_), words);
  std::string numbers;
  for (int number = 1; number <= words.LangWord.kSize; ++number) {
    if (words.LangWord[number] == LangWords::kMissing) continue;
    numbers += (numbers.empty() ? "" : ", ") + std::to_string(number);
  }
  std::ofstream(home_ / file_) << "";
  ExpectAmong("no text for " + numbers + ", so");
}

TEST_F(QuillondbCheckWords, FindsALineThatEndsTheReading) {
  std::ofstream(home_ / file_, std::ios::app) << "101\tx\tToo far\r\n";
  ExpectAmong("the words behind that line are not read, so correct its number (1 to 100)");
}

}  // namespace
}  // namespace quillon
