// A Jet database file, read in processes of its own.
#pragma once

#include <string>

#include "quillondb/jet/jet_source.h"

namespace quillon {

// Every failure names the file. One of them is that the file changed since it was opened here: its
// program writes without a word to others, and a half of it must not be taken for the whole.
class JetFile final : public JetSource {
 public:
  // FileFailure where the file is no Jet database that can be read.
  explicit JetFile(std::string path);

  std::string Name() const override;
  std::vector<JetTable> Tables() override;
  void ReadRows(const JetTable& table, const JetRowHandler& handler) override;

 private:
  struct State {
    std::uint64_t number = 0;  // of the file itself: another one may have its name by now
    std::int64_t size = 0;
    std::int64_t seconds = 0;  // of the last change
    std::int64_t nanoseconds = 0;
    bool operator==(const State&) const = default;
  };

  State Now() const;
  template <typename Reading>
  void Read(const Reading& reading) const;

  std::string path_;
  State atFirst_;
};

}  // namespace quillon
