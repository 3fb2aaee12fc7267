// Two lists.
#include "quillonctl/site_fields.h"

#include "quillonctl/settings_rules.h"

namespace quillon {
namespace {

using Kind = SettingField::Kind;

}  // namespace

const SettingFieldList& GeneralFields() {
  static const SettingFieldList kFields = {
      {"debug-mode", "DebugMode", Kind::kTruth, "Write debug files", nullptr},
      {"date-format", "DatumFormat", Kind::kText, "YYYY-MM-DD, MM/DD/YYYY or DD/MM/YYYY",
       rules::DateFormat},
  };
  return kFields;
}

const SettingFieldList& WebServerFields() {
  static const SettingFieldList kFields = {
      {"enabled", "Enabled", Kind::kTruth, "Open the site with the service", nullptr},
      {"address", "IpAddr", Kind::kText,
       "IP address to listen on; 0.0.0.0 takes that of Morvane.ini", rules::Address},
      {"port", "TcpPort", Kind::kNumber, "TCP port to listen on", rules::Port},
      {"char-set", "CharSet", Kind::kText, "Charset of the pages, such as ISO-8859-1",
       rules::CharSet},
  };
  return kFields;
}

}  // namespace quillon
