// receivers: who gets report mails. A receiver is named by his number, which stays his while others
// come and go.
#pragma once

#include <cstdint>
#include <string>

#include "quillonctl/output.h"
#include "quillonctl/receiver_fields.h"

namespace quillon {

// In stored order. For people, fields that belong together share a column.
int ListReceivers(const std::string& directory, OutputForm form);
// The change has a name and an address; what else is not given gets an ordinary value. Prints the
// number.
int AddReceiver(const std::string& directory, const SettingChange& change);
int ChangeReceiver(const std::string& directory, std::int64_t number, const SettingChange& change);
int RemoveReceiver(const std::string& directory, std::int64_t number);

}  // namespace quillon
