// What is wrong with a file or table, as far as it is worth telling.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

// Lines fit for a terminal: "<subject>, <place>: <what>".
class Findings {
 public:
  static constexpr std::size_t kTold = 20;

  // What is judged: the name of a file, say.
  explicit Findings(std::string_view subject);

  void Add(std::string_view place, std::string_view what);

  bool empty() const { return lines_.empty(); }
  // True once there are more than are told: there is no use in looking on.
  bool isFull() const { return lines_.size() > kTold; }

  // ConversionFailure where there is anything: the headline, and a line for each of them.
  void Refuse(std::string_view headline) const;

 private:
  std::string subject_;
  std::vector<std::string> lines_;
};

}  // namespace quillon
