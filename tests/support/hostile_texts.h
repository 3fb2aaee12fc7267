// Texts that no honest user types into a search form, and URLs that no page links to. Search texts
// go into selects and pages as they stand, so whoever sends them chooses what the engine is asked.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace quillon {

// `piece` so many times.
std::string Repeated(const std::string& piece, int count);

// Attempts in SQL to write, and to read or call what no report needs: each of them is refused.
std::vector<std::string> ForbiddenSql();

// These, and whatever else may stand in a select; none costs more than an ordinary search.
std::vector<std::string> HostileSql();

// Texts of odd bytes, sizes, patterns, paths and lines, which are not about SQL.
std::vector<std::string> OddTexts();

// Both.
std::vector<std::string> HostileTexts();

// Texts that keep the engine at work, each in a place of its own, told by the name. They need a
// table Many(n) with a thousand rows beside those of the reports.
struct BusyText {
  std::string name;
  std::string text;
};
// Without end in the steps of the engine, where it can be stopped.
std::vector<BusyText> TextsOfEndlessSteps();
// In single calls with large values, or in many of them with no step at which the engine looks up.
std::vector<BusyText> TextsOfLongCalls();
// Before the first step: while the select is taken apart and planned.
std::vector<BusyText> TextsOfLongPlanning();

// By few words, with values of 60 KB and more that stand in the text itself.
std::vector<BusyText> TextsOfFewWords();

// Texts that ask for memory without end, and those that are large themselves. None takes long.
std::vector<std::string> GreedyTexts();

// URLs of all routes with what does not belong there.
std::vector<std::string> HostileUrls();

// Behind "/DeviceId=".
std::vector<std::string> HostileDeviceIds();

// Texts by the rules of a small grammar, the same ones for a seed in each run.
class HostileGrammar {
 public:
  explicit HostileGrammar(unsigned seed) : random_(seed) {}

  // For a field of a form.
  std::string Text();
  // Behind the "/" of a URL.
  std::string Url();

 private:
  unsigned Below(unsigned count) { return static_cast<unsigned>(random_()) % count; }
  const char* Any(const std::vector<const char*>& choices);
  std::string Noise(unsigned size);
  std::string Condition(int depth);
  std::string Expression(int depth);
  std::string Select(int depth);
  std::string Sql();

  std::mt19937 random_;
};

}  // namespace quillon
