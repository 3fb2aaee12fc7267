// The tables of a Jet database, as the import sees them: by a file, or by whatever a test makes up.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace quillon {

using JetNull = std::monostate;

// A moment as such files hold it: days since 1899-12-30. The fraction is the time of the day, also
// where the number is below 0.
struct JetDate {
  double days = 0;
};

// Contents that no column of an installation could hold: pictures, bytes, keys of a replica.
struct JetOpaque {};

// A field. Currency and decimal numbers are doubles. Texts are UTF-8; the files do not let a null
// text be told from an empty one, so there is none.
using JetValue =
    std::variant<JetNull, bool, std::int64_t, float, double, JetDate, std::string, JetOpaque>;

struct JetTable {
  std::string name;
  std::vector<std::string> columns;
  std::int64_t rows = 0;
};

// As many values as the table has columns, in their order.
using JetRow = std::vector<JetValue>;
using JetRowHandler = std::function<void(const JetRow& row)>;

class JetSource {
 public:
  virtual ~JetSource() = default;

  // The name by which messages tell one source from another, as a terminal may get it.
  virtual std::string Name() const = 0;

  virtual std::vector<JetTable> Tables() = 0;

  // Hands over all rows of the table, in stored order. A failure where not all can be read; then
  // some of them may have been handed over. What the handler throws ends the reading.
  virtual void ReadRows(const JetTable& table, const JetRowHandler& handler) = 0;

 protected:
  JetSource() = default;
  JetSource(const JetSource&) = default;
  JetSource& operator=(const JetSource&) = default;
};

}  // namespace quillon
