// The settings that the whole service reads. Each field says where its value comes
// from and when it takes effect; only service/ writes them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace quillon {

struct Settings {
  // Directory of the executable, without a slash at its end. Set once, by Form_Load.
  std::string AppPath;
  // Folder of Morvane.ini; read at the start.
  std::string MorvaneDir;

  // Connection strings of the three database files; set at the start. ConnMain also
  // says whether the start state has been reached.
  std::string ConnMain;
  std::string ConnReports;
  std::string ConnHistory;

  // Debug files on or off; read at the start and at each hourly pass.
  bool DebugMode = false;
  // Display pattern of dates: "YYYY-MM-DD", "MM/DD/YYYY" or "DD/MM/YYYY"; read with DebugMode.
  std::string DatumFormat;
  // Charset of all page text; read when the listener opens.
  std::string CharSet;

  // Traps on or off; read when the agent opens and at each hourly pass.
  bool SendAppEvents = false;
  // Community of the traps, in UTF-8; read when the agent opens.
  std::string TrapComm;

  // Address and trap port of the management server; read from Morvane.ini at the start.
  std::string ServerIpAddr = "127.0.0.1";
  std::int16_t ServerTrapPort = 162;

  // The moment at which the start state was reached.
  DateTime StartTime = ZeroDate();

  // Replays a day: True takes txtRepDate in place of the present date wherever a report
  // asks for its day. Nothing in the service sets it.
  bool RepDateOverride = false;
  std::string txtRepDate = "2014-11-07";
};

// A path below AppPath that is written with backslashes, as "\Debug\WebServices.txt".
std::string PathBelow(const Settings& settings, std::string_view backslashPath);

}  // namespace quillon
