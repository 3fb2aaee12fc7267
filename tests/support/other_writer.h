// Another program at a database file: while it writes, nobody else does. It never waits for
// anybody.
#pragma once

#include <memory>
#include <string>

struct sqlite3;

namespace quillon {

class OtherWriter {
 public:
  // A program that is writing until End, or as long as it lives. Throws where it cannot.
  explicit OtherWriter(const std::string& path);
  // One that has only opened the file.
  static OtherWriter Idle(const std::string& path);

  // Whether nobody else has the file open. Its journal mode then is DELETE: a file leaves the mode
  // that it has for one that is alone with it.
  static bool IsAlone(const std::string& path);

  // Begins to write; false where somebody else is writing.
  bool Begin();
  // Gives up what it wrote, where it is writing at all.
  void End();
  bool isWriting() const;

  // Runs a statement; false where somebody keeps it from that.
  bool Run(const std::string& statement);

 private:
  using Handle = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
  explicit OtherWriter(Handle handle);

  Handle handle_;
};

}  // namespace quillon
