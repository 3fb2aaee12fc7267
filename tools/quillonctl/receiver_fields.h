// The fields of a receiver of report mails, what may stand in them, and what does where an operator
// gives nothing.
#pragma once

#include <string>
#include <vector>

#include "quillonctl/setting_fields.h"

namespace quillon {

const SettingFieldList& ReceiverFields();

// The fields of a new receiver but his name and address. None is left null: a null in what is read
// of any row keeps everybody from getting mail.
SettingChange OrdinaryReceiver();

// What is wrong with a change of the row, which is `before` as it is shown. What only several
// fields together tell is judged over the row as it would be, and only where the change touches one
// of them: a row that is wrong already can be changed elsewhere.
std::vector<std::string> ReceiverComplaints(const SettingChange& before,
                                            const SettingChange& change);

}  // namespace quillon
