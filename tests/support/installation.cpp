// Test installations in the temporary directory of the machine.
#include "support/installation.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "import/schema/creation.h"

namespace quillon {
namespace {

using Handle = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

Handle OpenFile(const std::string& path) {
  sqlite3* handle = nullptr;
  if (sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    throw std::runtime_error("cannot open " + path);
  }
  sqlite3_busy_timeout(handle, 5000);
  return {handle, sqlite3_close};
}

}  // namespace

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
  const Handle handle = OpenFile(path_ + "/" + file);
  char* message = nullptr;
  if (sqlite3_exec(handle.get(), statements.c_str(), nullptr, nullptr, &message) == SQLITE_OK) {
    return;
  }
  const std::string text = message;
  sqlite3_free(message);
  throw std::runtime_error(file + ": " + text + " in: " + statements);
}

std::vector<std::string> Installation::Select(const std::string& file,
                                              const std::string& select) const {
  const Handle handle = OpenFile(path_ + "/" + file);
  std::vector<std::string> rows;
  const auto addRow = [](void* data, int count, char** values, char**) {
    std::string row;
    for (int i = 0; i < count; ++i) {
      row += (i == 0 ? "" : "|") + std::string(values[i] == nullptr ? "NULL" : values[i]);
    }
    static_cast<std::vector<std::string>*>(data)->push_back(row);
    return 0;
  };
  char* message = nullptr;
  if (sqlite3_exec(handle.get(), select.c_str(), addRow, &rows, &message) != SQLITE_OK) {
    const std::string text = message;
    sqlite3_free(message);
    throw std::runtime_error(file + ": " + text);
  }
  return rows;
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
