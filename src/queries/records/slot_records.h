// One record for each connection, made when a report first uses the slot: the records of the
// charts are large, and most slots never see one.
#pragma once

#include <memory>

#include "platform/one_based.h"

namespace quillon {

template <typename Record>
class SlotRecords {
 public:
  // A slot outside 1 to 20 raises IndexFailure. The record stays where it is for the life of the
  // process.
  Record& operator[](long slot) {
    std::unique_ptr<Record>& record = records_[slot];
    if (!record) record = std::make_unique<Record>();
    return *record;
  }

  // For readers: a slot that no report has used reads like a fresh record.
  const Record& operator[](long slot) const {
    static const Record kFresh;
    const std::unique_ptr<Record>& record = records_[slot];
    return record ? *record : kFresh;
  }

 private:
  Slots<std::unique_ptr<Record>> records_;
};

}  // namespace quillon
