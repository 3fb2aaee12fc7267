// The directory of an installation: its folders, its Morvane.ini, its first stylesheet, its
// databases.
#pragma once

#include <array>
#include <string>

namespace quillon {

// The folders below the directory, parents first.
inline constexpr std::array<const char*, 4> kFolders = {"WebReports", "WebReports/Cache",
                                                        "WebReports/Mail", "Debug"};

inline constexpr const char* kMorvaneIni = "Morvane.ini";

// Makes the directory where it is missing, and all that a new installation holds. Folders, a
// Morvane.ini and a stylesheet that are there stay as they are. Throws std::runtime_error where a
// database is there already, before anything is added, or where something cannot be written.
void CreateInstallation(const std::string& directory);

// Lets the listener of the installation use another port from its next start on.
void SetListenerPort(const std::string& directory, int port);

// Whether nothing of any database is there, so that CreateInstallation would make them.
bool HasNoDatabase(const std::string& directory);

// Throws std::runtime_error, with a word on what to do, where a database is missing.
void RequireDatabases(const std::string& directory);

}  // namespace quillon
