// smtp, snmp and morvane: the one row that each of them has, shown and changed.
#pragma once

#include <string>

#include "quillonctl/setting_fields.h"

namespace quillon {

const SettingFieldList& SmtpFields();
const SettingFieldList& SnmpFields();
const SettingFieldList& MorvaneFields();

int ShowSmtp(const std::string& directory, OutputForm form);
// With `askPassword` the password is asked for: on the terminal without an echo, else it is the
// first line of standard input.
int SetSmtp(const std::string& directory, SettingChange change, bool askPassword);

int ShowSnmp(const std::string& directory, OutputForm form);
int SetSnmp(const std::string& directory, const SettingChange& change);

int ShowMorvane(const std::string& directory, OutputForm form);
int SetMorvane(const std::string& directory, const SettingChange& change);

}  // namespace quillon
