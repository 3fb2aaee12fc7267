// Lines of the socket file and their words.
#include "service/console_protocol.h"

#include <gtest/gtest.h>

namespace quillon::console {
namespace {

using Texts = std::vector<std::string>;

TEST(ConsoleProtocol, WordsStandInALineWithTabsBetweenThem) {
  EXPECT_EQ(Line({kStatus}), "status");
  EXPECT_EQ(Line({kSetRepDate, "2014-11-07"}), "set-rep-date\t2014-11-07");
  EXPECT_EQ(Line({kProgress, kPage, "12", "190"}), "progress\tpage\t12\t190");
  EXPECT_EQ(Line({kDone, ""}), "done\t");
  EXPECT_EQ(Line({kState, "address", ""}), "state\taddress\t");
}

TEST(ConsoleProtocol, TabOrLineEndInAWordIsABlank) {
  EXPECT_EQ(Line({"a\tb", "c\nd", "e\rf"}), "a b\tc d\te f");
  EXPECT_EQ(Line({"\t", "\n"}), " \t ");
}

TEST(ConsoleProtocol, OtherBytesStandAsTheyAre) {
  EXPECT_EQ(Line({"B\xC3\xBCro  \\t \"x\" "}), "B\xC3\xBCro  \\t \"x\" ");
}

TEST(ConsoleProtocol, LineIsReadAsTheWordsThatItWasMadeOf) {
  const Texts cases[] = {
      {"status"},
      {"done", ""},
      {"done", "ok 1234"},
      {"state", "address", ""},
      {"", "b"},
      {"a", "", "", "d"},
      {"event", "1", "modHtml_ReadCssText", "a  b "},
      {"B\xC3\xBCro"},
      {" leading", "\\n"},
  };
  for (const Texts& words : cases) {
    const std::string line = Line({words.begin(), words.end()});
    EXPECT_EQ(Words(line), words) << line;
  }
}

}  // namespace
}  // namespace quillon::console
