// A list that repeats with a number behind the words.
#include "quillondb/demo/aliases.h"

#include <array>

namespace quillon {
namespace {

// Letters beyond ASCII and beyond the character set of the pages, an apostrophe, an ampersand:
// all that a search or a page can stumble over.
constexpr std::array<const char*, 30> kAliases = {"Büro Empfang",
                                                  "",
                                                  "Conference room",
                                                  "Küche",
                                                  "Printer 2nd floor",
                                                  "",
                                                  "Kamera Hof",
                                                  "Москва",
                                                  "Reading room",
                                                  "",
                                                  "Sala de reuniões",
                                                  "",
                                                  "WLAN Foyer",
                                                  "Director's office",
                                                  "",
                                                  "Warehouse scanner",
                                                  "R&D lab",
                                                  "",
                                                  "Łódź depot",
                                                  "Kassa 3",
                                                  "",
                                                  "Café Entrée",
                                                  "Telefon Pforte",
                                                  "",
                                                  "Smørrebrød bar",
                                                  "Time clock",
                                                  "",
                                                  "Öffnungszeiten-Anzeige",
                                                  "Test bench",
                                                  ""};

}  // namespace

std::string AccessAlias(int ordinal) {
  const auto count = static_cast<int>(kAliases.size());
  const std::string words = kAliases[static_cast<std::size_t>(ordinal % count)];
  const int round = ordinal / count;
  return words.empty() || round == 0 ? words : words + " " + std::to_string(round + 1);
}

}  // namespace quillon
