// An installation directory of a test's own: the three databases with their seed and
// the folders, removed at the end.
#pragma once

#include <string>
#include <vector>

namespace quillon {

class Installation {
 public:
  Installation();
  ~Installation();
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  // The directory, without a slash at its end.
  const std::string& path() const { return path_; }

  // Runs SQL statements on a database file: "Quillon.mdb", "Reports.mdb", "History.mdb".
  void Sql(const std::string& file, const std::string& statements) const;

  // Rows of a select; the fields of a row are joined by "|", a null is "NULL".
  std::vector<std::string> Select(const std::string& file, const std::string& select) const;

  // Bytes of a file below the directory, "Debug/AppEventWeb.txt"; "" where there is none.
  std::string Read(const std::string& relativePath) const;
  void Write(const std::string& relativePath, const std::string& bytes) const;
  bool Exists(const std::string& relativePath) const;
  void Remove(const std::string& relativePath) const;
  // Names in a folder, sorted.
  std::vector<std::string> List(const std::string& relativeFolder) const;

 private:
  std::string path_;
};

// Lines of a text with CR LF line ends; the empty piece behind the last one is left out.
std::vector<std::string> SplitLines(const std::string& text);

}  // namespace quillon
