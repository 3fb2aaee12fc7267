// The requests of a load, as a file lists them, and the dice that choose among them. What they mean
// is the matter of who wrote the file.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace quillon {

enum class Expected {
  kSame,     // the bytes of the first answer to this request
  kPage,     // any answer
  kNothing,  // none
};

struct ListedRequest {
  double weight = 0;
  std::string kind;  // under which it is counted
  Expected expected = Expected::kPage;
  std::string freshFile;  // is removed before the request, so that the page is built anew; or empty
  std::string text;
};

// A line a request, its fields behind tabs: weight, kind, "same", "page" or "nothing", path of the
// fresh file or "-", and the bytes in hexadecimal digits. Throws where a line is not of that form.
std::vector<ListedRequest> ReadRequests(const std::string& path);

class Mixture {
 public:
  Mixture(const std::vector<ListedRequest>& requests, std::uint64_t seed);

  // Position of the next request.
  std::size_t Next() { return chance_(dice_); }

 private:
  std::mt19937_64 dice_;
  std::discrete_distribution<std::size_t> chance_;
};

// Has its page built anew, where that is wanted.
void MakeReady(const ListedRequest& request);

}  // namespace quillon
