// Reading the site's files, with their copies in the debug folder.
#include "web/static_resources.h"

#include "platform/files.h"
#include "service/error_exit.h"
#include "web/language_file.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modQuillonWeb";

// The bytes of a file below AppPath into `text`; nothing where there is no such file.
void ReadIfThere(const Settings& settings, std::string_view backslashPath, std::string& text) {
  const std::string path = PathBelow(settings, backslashPath);
  if (PathExists(path)) text = ReadFileBytes(path);
}

// With DebugMode on, what was read, in a file of the debug folder that is made anew.
void WriteDebugCopy(const Settings& settings, std::string_view backslashPath,
                    std::string_view text) {
  if (!settings.DebugMode) return;
  ReplaceFile(PathBelow(settings, backslashPath), text, OldFile::kGoes);
}

std::string ListOfWords(const LangWords& words) {
  std::string list;
  for (int number = 1; number <= words.LangWord.kSize; ++number) {
    const std::string& word = words.LangWord[number];
    if (word.empty() || word == LangWords::kMissing) continue;
    list.append(std::to_string(number)).append("\t").append(word).append(kLineEnd);
  }
  return list;
}

}  // namespace

void ReadLangWord(const Diagnostics& diagnostics, LangWords& words) {
  ErrorExit(diagnostics, kModule, "ReadLangWord", [&] {
    words.LangWord.Fill(LangWords::kMissing);
    std::string text;
    ReadIfThere(diagnostics.settings, "\\WebReports\\Language.ini", text);
    ParseLanguageFile(text, words);
    WriteDebugCopy(diagnostics.settings, "\\Debug\\Language.ini", ListOfWords(words));
  });
}

void ReadHelpText(const Diagnostics& diagnostics, LangWords& words) {
  ErrorExit(diagnostics, kModule, "ReadHelpText", [&] {
    ReadIfThere(diagnostics.settings, "\\WebReports\\HelpText.txt", words.HelpText);
    WriteDebugCopy(diagnostics.settings, "\\Debug\\HelpText.txt", words.HelpText);
  });
}

void ReadFavIcon(const Diagnostics& diagnostics, std::string& favIconData) {
  ErrorExit(diagnostics, "modHtml", "ReadFavIcon",
            [&] { ReadIfThere(diagnostics.settings, "\\WebReports\\Favicon.ico", favIconData); });
}

void ReadCssText(const Diagnostics& diagnostics, std::string& text) {
  ErrorExit(diagnostics, kModule, "ReadCssText", [&] {
    ReadIfThere(diagnostics.settings, "\\WebReports\\qws.css", text);
    WriteDebugCopy(diagnostics.settings, "\\Debug\\qws.css", text);
  });
}

}  // namespace quillon
