// Positions in requests.
#include "web/text_search.h"

#include <gtest/gtest.h>

#include "platform/failure.h"

namespace quillon {
namespace {

TEST(Position, CountsFromOneAndIsZeroWhereTheTextIsNot) {
  EXPECT_EQ(Position("GET /a-b-c", "GET"), 1);
  EXPECT_EQ(Position("GET /a-b-c", "-"), 7);
  EXPECT_EQ(Position("GET /a-b-c", "get"), 0);
  EXPECT_EQ(Position("", "GET"), 0);
}

TEST(Position, LooksFromItsStartOn) {
  EXPECT_EQ(Position("a-b-c", "-", 2), 2);
  EXPECT_EQ(Position("a-b-c", "-", 3), 4);
  EXPECT_EQ(Position("a-b-c", "-", 5), 0);
  EXPECT_EQ(Position("a-b-c", "-", 6), 0);
  EXPECT_EQ(Position("a-b-c", "-", 100), 0);
}

TEST(Holds, IsTrueWhereverTheTextIs) {
  EXPECT_TRUE(Holds("GET /login.cgi HTTP", "login.cgi"));
  EXPECT_FALSE(Holds("GET /Login.cgi HTTP", "login.cgi"));
}

TEST(Middle, IsAsMuchOfTheTextAsThereIs) {
  struct Case {
    long position;
    long length;
    std::string_view text;
  };
  const Case cases[] = {{1, 3, "abc"}, {2, 3, "bcd"}, {4, 9, "de"}, {5, 1, "e"},
                        {6, 1, ""},    {99, 9, ""},   {1, 0, ""},   {1, 99, "abcde"}};
  for (const Case& row : cases) {
    EXPECT_EQ(Middle("abcde", row.position, row.length), row.text)
        << row.position << " " << row.length;
  }
}

TEST(Middle, FailsBeforeTheTextAndForALengthThatIsNone) {
  EXPECT_THROW(Middle("abcde", 0, 1), TextFailure);
  EXPECT_THROW(Middle("abcde", -5, 1), TextFailure);
  EXPECT_THROW(Middle("abcde", 1, -1), TextFailure);
  EXPECT_THROW(Middle("abcde", 99, -1), TextFailure);
}

}  // namespace
}  // namespace quillon
