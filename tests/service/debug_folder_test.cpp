// Cleaning the debug folder.
#include "service/debug_folder.h"

#include <gtest/gtest.h>

#include "support/house.h"

namespace quillon {
namespace {

TEST(DebugFolder, ClearingTakesTheDebugFilesAndKeepsTheEvents) {
  House house;
  for (const char* name :
       {"WebConnection-1.txt", "WebConnections.txt", "WebServices.txt", "Language.ini",
        "HelpText.txt", "qws.css", "WebSqlTop10.txt", "WebSqlHist45.txt", "SendMailSMTP.txt",
        "~new.txt", "AppEventWeb.txt", "notes.txt", "Other.ini"}) {
    house.installation.Write(std::string("Debug/") + name, "text");
  }
  ClearDebugDir(house.diagnostics);
  EXPECT_EQ(house.installation.List("Debug"),
            (std::vector<std::string>{"AppEventWeb.txt", "Other.ini", "notes.txt"}));
}

TEST(DebugFolder, MissingFolderIsNoFailure) {
  House house;
  house.settings.AppPath += "/nowhere";
  ClearDebugDir(house.diagnostics);
  EXPECT_EQ(house.clock.slept().count(), 0);
}

}  // namespace
}  // namespace quillon
