// What is fuzzed: procedures that take any bytes. A fuzzer calls each of them on and on, and the
// unit tests call them with the inputs that have been kept. A finding is a crash, a leak, a hang,
// or a std::logic_error that comes out.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillon::fuzz {

// Some texts of a browser, at a site with statistics: all that one request sets in motion.
void FuzzRequests(std::string_view bytes);

// The words of the site.
void FuzzLanguageIni(std::string_view bytes);

// Where the traps go.
void FuzzMorvaneIni(std::string_view bytes);

// A pattern and a text.
void FuzzWildcards(std::string_view bytes);

// What a client of the socket file sends, and the requests in it.
void FuzzConsole(std::string_view bytes);

struct Target {
  std::string_view name;  // of its source, its dictionary, and the folder of its inputs
  void (*run)(std::string_view bytes);
};

inline constexpr std::array<Target, 5> kTargets = {{
    {"requests", FuzzRequests},
    {"language_ini", FuzzLanguageIni},
    {"morvane_ini", FuzzMorvaneIni},
    {"wildcards", FuzzWildcards},
    {"console", FuzzConsole},
}};

// What holds for every input.
inline void Require(bool holds, const std::string& what) {
  if (!holds) throw std::logic_error(what);
}

}  // namespace quillon::fuzz
