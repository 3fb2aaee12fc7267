// One connection for many selects.
#include "queries/reused_connection.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/failure.h"
#include "support/house.h"

namespace quillon {
namespace {

class ReusedConnectionTest : public testing::Test {
 protected:
  static std::string FirstField(Connection& connection) {
    return connection.Execute("SELECT LastReport FROM General_Info").Field("LastReport").AsText();
  }

  House house;
  ReusedConnection history{house.settings.ConnHistory};
};

TEST_F(ReusedConnectionTest, ConnectionThatWasKeptIsTheNextOne) {
  auto first = history.Take();
  const Connection* address = first.get();
  history.Keep(std::move(first));
  const auto second = history.Take();
  EXPECT_EQ(address, second.get());
  EXPECT_NE("", FirstField(*second));
}

TEST_F(ReusedConnectionTest, ConnectionThatWasNotGivenBackIsOpenedAnew) {
  const auto first = history.Take();
  const auto second = history.Take();
  EXPECT_NE(first.get(), second.get());
  EXPECT_EQ(FirstField(*first), FirstField(*second));
}

TEST_F(ReusedConnectionTest, MissingFileFailsAtEachTake) {
  house.installation.Remove("History.mdb");
  EXPECT_THROW(history.Take(), DatabaseFailure);
  EXPECT_THROW(history.Take(), DatabaseFailure);
}

}  // namespace
}  // namespace quillon
