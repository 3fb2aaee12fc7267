// quillonctl morvane: where the management product is.
#include <fstream>

#include "support/temporary_folder.h"
#include "tools/quillonctl_fixture.h"

namespace quillon {
namespace {

class QuillonctlMorvane : public Quillonctl {
 protected:
  QuillonctlMorvane() { CreateWhole(); }

  std::string Stored() const {
    return Sql("Quillon.mdb", "SELECT SnmpcDir FROM Settings_General").at(0).at(0);
  }

  std::string FolderWithIni() const {
    std::ofstream(product_.path() + "/Morvane.ini") << "ServerIpAddr=127.0.0.1\r\n";
    return product_.path();
  }

  TemporaryFolder product_;
};

TEST_F(QuillonctlMorvane, FolderOfTheIniIsSavedForTheNextStart) {
  const std::string folder = FolderWithIni();
  const Outcome set = Run("morvane set --folder " + folder);
  EXPECT_EQ(set.status, 0) << set.error;
  EXPECT_EQ(set.out, "Saved for the next start\n");
  EXPECT_EQ(Stored(), folder);
  EXPECT_EQ(Run("morvane").out, "folder  " + folder + "\n");
  EXPECT_EQ(Run("morvane show --json").out, "{\n  \"folder\": \"" + folder + "\"\n}\n");
}

TEST_F(QuillonctlMorvane, FolderInWhichTheServiceWouldFindNothingIsRefused) {
  const std::string before = Stored();
  for (const std::string& wrong :
       {product_.path(), product_.path() + "/none", std::string("''"), std::string("Debug")}) {
    const Outcome set = Run("morvane set --folder " + wrong);
    EXPECT_EQ(set.status, 1) << wrong;
    EXPECT_EQ(set.error.find("quillonctl: --folder: "), 0U) << set.error;
    EXPECT_EQ(Stored(), before) << wrong;
  }
}

TEST_F(QuillonctlMorvane, WhatIsNoCommandLineIsWrongUsage) {
  for (const char* arguments : {"morvane set", "morvane set --folder", "morvane --folder /tmp"}) {
    EXPECT_EQ(Run(arguments).status, 2) << arguments;
  }
}

}  // namespace
}  // namespace quillon
