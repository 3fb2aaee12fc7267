// One client of a site, whose texts go straight to the event that the listener would raise: what
// they set in motion has come to its end when Ask returns, and no time passes between them. The
// answers come over its socket.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/site.h"

namespace quillon::fuzz {

class AskingClient {
 public:
  explicit AskingClient(Site& site) : site_(site) {}

  // What is answered to the texts. A default page is asked for behind them: raises std::logic_error
  // where it is not answered right, or where anything in front of it is not a whole answer.
  std::string Ask(const std::vector<std::string_view>& texts);

 private:
  void ConnectAnew();
  void Tell(std::string_view text);
  std::string TakeAnswers();

  Site& site_;
  std::unique_ptr<RawClient> client_;
};

}  // namespace quillon::fuzz
