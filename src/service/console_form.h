// frmQuillonWeb, the operator's console: its captions, its lists and its fields. Where they stand
// on a terminal is the business of whoever shows them.
#pragma once

#include <string>

#include "render/themes.h"

namespace quillon {

// Captions, by the control that carries them. A label stands in front of the control behind it.
namespace captions {
inline constexpr const char* frmQuillonWeb = "Quillon Web Server";
inline constexpr const char* fraGeneral = "General";
inline constexpr const char* chkDebugMode = "Debug Mode";
inline constexpr const char* lblUseDateFormat = "Date Format:";
inline constexpr const char* fraWebServer = "Web Server";
inline constexpr const char* chkEnabled = "Enabled";
inline constexpr const char* lblBindToAddress = "Bind To Address:";
inline constexpr const char* lblListeningPort = "Listening Port:";
inline constexpr const char* lblStatus = "Status:";
inline constexpr const char* lblCharSet = "Char Set:";
inline constexpr const char* fraCss = "Layout (CSS)";
inline constexpr const char* lblColorTheme = "Color Theme:";
inline constexpr const char* cmdApplyChanges = "Apply Changes";
inline constexpr const char* cmdRead = "Read from DB";
inline constexpr const char* cmdSave = "Save to DB";
inline constexpr const char* cmdImport = "Import";
inline constexpr const char* cmdAutoCreate = "Auto Create";
inline constexpr const char* cmdMailCreate = "Mail Create";
inline constexpr const char* cmdSetRepDate = "Set Rep Date";
}  // namespace captions

// What the lists offer, in their order.
namespace lists {
inline constexpr const char* cboDatumFormat[] = {"YYYY-MM-DD", "MM/DD/YYYY", "DD/MM/YYYY"};
inline constexpr const char* cboCharSet[] = {
    "ISO-8859-1",  "ISO-8859-2",  "ISO-8859-3",  "ISO-8859-4",  "ISO-8859-5",  "ISO-8859-6",
    "ISO-8859-7",  "ISO-8859-8",  "ISO-8859-9",  "ISO-8859-10", "ISO-8859-11", "ISO-8859-13",
    "ISO-8859-14", "ISO-8859-15", "ISO-8859-16", "ISO-2022-JP"};
inline constexpr const char* cboColorTheme[] = {"Black", "Blue", "Gold", "Gray", "Kestrel"};
}  // namespace lists

// The contents of the controls, in UTF-8. Nothing is judged here: what a list does not offer can
// stand in its field all the same. (The field txtRepDate is one of the settings, where the reports
// find it.)
struct ConsoleForm {
  bool chkDebugMode = false;
  std::string cboDatumFormat;
  bool chkEnabled = false;
  std::string txtIpAddr;
  std::string txtListeningPort;
  std::string txtStatus;  // shown alone
  std::string cboCharSet;
  std::string cboColorTheme = std::string(kDefaultTheme);  // of no table: as it is chosen
};

}  // namespace quillon
