// Where exported text goes: standard output, or a file that is there as a whole or not at all.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace quillon {

class CsvOutput {
 public:
  // A path, or "-". FileFailure where nothing can be written there, and where the path is a link, a
  // device or the name of a database. A file gets its name at Commit: until then it lies beside it
  // under another one, readable for its owner alone.
  explicit CsvOutput(const std::string& path);
  ~CsvOutput();
  CsvOutput(const CsvOutput&) = delete;
  CsvOutput& operator=(const CsvOutput&) = delete;

  // A terminal gets of the record, which ends in LF, what is fit for it.
  void WriteRecord(std::string_view record);

  // Replaces the file, and an old one stays without this.
  void Commit();

 private:
  struct Closer {
    void operator()(std::FILE* file) const;
  };

  [[noreturn]] void Fail(const char* what) const;
  void OpenTemporary();
  void Write(std::string_view bytes);

  std::string path_;       // empty for standard output
  std::string temporary_;  // while it is there
  std::unique_ptr<std::FILE, Closer> file_;
  bool isTerminal_ = false;
};

}  // namespace quillon
