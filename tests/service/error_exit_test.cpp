// What an event tells of a failure.
#include "service/error_exit.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/house.h"

namespace quillon {
namespace {

TEST(ErrorExit, TellsWhetherTheBodyCameToItsEnd) {
  House house;
  EXPECT_TRUE(ErrorExit(house.diagnostics, "m", "p", [] {}));
  EXPECT_FALSE(ErrorExit(house.diagnostics, "m", "p", [] { throw Failure("broken"); }));
  EXPECT_EQ(house.Events(), std::vector<std::string>{"1\tm_p\tbroken"});
}

TEST(ErrorExit, DescriptionsOfDatabasesComeInTheCharsetOfThePages) {
  House house;
  EXPECT_EQ(FailureText(house.settings, DatabaseFailure("no such table: B\xC3\xBCro")),
            "no such table: B\xFCro");
  EXPECT_EQ(FailureText(house.settings, FieldFailure("holds B\xC3\xBCro")), "holds B\xFCro");
  // Names of files come out of requests and are bytes of the charset already.
  EXPECT_EQ(FailureText(house.settings, FileFailure("B\xFCro.htm")), "B\xFCro.htm");
}

TEST(ErrorExit, LongDescriptionIsCutAfterFiveHundredCharacters) {
  House house;
  const std::string whole(500, 'x');
  EXPECT_EQ(FailureText(house.settings, Failure(whole)), whole);
  EXPECT_EQ(FailureText(house.settings, Failure(whole + "yz")), whole + "...");
  house.settings.CharSet = "UTF-8";
  std::string umlauts;
  for (int count = 1; count <= 500; ++count) umlauts += "\xC3\xBC";
  EXPECT_EQ(FailureText(house.settings, DatabaseFailure(umlauts)), umlauts);
  EXPECT_EQ(FailureText(house.settings, DatabaseFailure(umlauts + "\xC3\xBC")), umlauts + "...");
}

}  // namespace
}  // namespace quillon
