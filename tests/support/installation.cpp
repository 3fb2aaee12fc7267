// Test installations in the temporary directory of the machine.
#include "support/installation.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "import/schema/creation.h"
#include "support/sql_rows.h"

namespace quillon {
Installation::Installation() {
  std::string pattern = std::filesystem::temp_directory_path() / "quillon-test-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make " + pattern);
  path_ = pattern;
  for (const char* folder : {"Debug", "WebReports", "WebReports/Cache", "WebReports/Mail"}) {
    std::filesystem::create_directory(path_ + "/" + folder);
  }
  CreateDatabases(path_);
}

Installation::~Installation() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void Installation::Sql(const std::string& file, const std::string& statements) const {
  SqlRows(path_ + "/" + file, statements);
}

std::vector<std::string> Installation::Select(const std::string& file,
                                              const std::string& select) const {
  std::vector<std::string> lines;
  for (const SqlRow& row : SqlRows(path_ + "/" + file, select)) {
    std::string& line = lines.emplace_back();
    for (std::size_t i = 0; i < row.size(); ++i) line += (i == 0 ? "" : "|") + row[i];
  }
  return lines;
}

std::string Installation::Read(const std::string& relativePath) const {
  std::ifstream file(path_ + "/" + relativePath, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void Installation::Write(const std::string& relativePath, const std::string& bytes) const {
  std::ofstream file(path_ + "/" + relativePath, std::ios::binary);
  file << bytes;
  if (!file.flush()) throw std::runtime_error("cannot write " + relativePath);
}

bool Installation::Exists(const std::string& relativePath) const {
  return std::filesystem::exists(path_ + "/" + relativePath);
}

void Installation::Remove(const std::string& relativePath) const {
  std::filesystem::remove(path_ + "/" + relativePath);
}

std::vector<std::string> Installation::List(const std::string& relativeFolder) const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_ + "/" + relativeFolder)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find("\r\n", start), text.size());
    lines.push_back(text.substr(start, end - start));
    start = end + 2;
  }
  return lines;
}

}  // namespace quillon
