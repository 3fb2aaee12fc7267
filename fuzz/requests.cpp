// The texts of one client, with a record separator between them. The first byte chooses settings
// that change what a request does. What a report left in the records of its connection stays for
// the next input, as it does in the service.
#include <array>

#include "asking_client.h"
#include "input.h"
#include "made_files.h"
#include "network_site.h"
#include "targets.h"

namespace quillon::fuzz {
namespace {

constexpr char kSeparator = '\x1E';
constexpr std::size_t kMostTexts = 2;  // a list and its chart, a search and another one
constexpr std::array<const char*, 4> kCharSets = {"ISO-8859-1", "UTF-8", "KOI8-R", "no charset"};

class FuzzedSite : private NetworkSite {
 public:
  void Run(Input input) {
    SetState(input.Byte());
    std::vector<std::string_view> texts;
    while (texts.size() < kMostTexts && !input.IsEmpty()) {
      texts.push_back(input.TakeUpTo(kSeparator));
    }
    client_.Ask(texts);
    made_.Remove();
  }

 private:
  void SetState(unsigned choice) {
    site.clock.Set("2024-05-02 12:00:00");  // failures wait, and would make it another day
    site.settings.DebugMode = (choice & 1) != 0;
    site.settings.CharSet = kCharSets[choice / 2 % kCharSets.size()];
  }

  AskingClient client_{site};
  MadeFiles made_{site.installation};
};

}  // namespace

void FuzzRequests(std::string_view bytes) {
  static FuzzedSite site;  // its databases take longer to make than thousands of inputs to run
  site.Run(Input(bytes));
}

}  // namespace quillon::fuzz
