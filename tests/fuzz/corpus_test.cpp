// The inputs that the fuzzers have found worth keeping, once more: each of them reaches something
// that no other one does.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "targets.h"

namespace quillon::fuzz {
namespace {

namespace fs = std::filesystem;

class Corpus : public testing::TestWithParam<Target> {};

std::string BytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST_P(Corpus, NoInputThatWasKeptDoesHarm) {
  const auto [name, run] = GetParam();
  int count = 0;
  for (const auto& entry : fs::directory_iterator(fs::path(CORPUS_PATH) / name)) {
    EXPECT_NO_THROW(run(BytesOf(entry.path()))) << entry.path();
    ++count;
  }
  EXPECT_GT(count, 0) << "nothing was kept";
}

INSTANTIATE_TEST_SUITE_P(AllTargets, Corpus, testing::ValuesIn(kTargets),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace
}  // namespace quillon::fuzz
