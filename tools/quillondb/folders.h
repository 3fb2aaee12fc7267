// Places of an installation and of a backup: whether something is there, and the folders, made
// where they are missing.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace quillon {

// Whether anything has that name, a link that leads nowhere as well.
bool IsThere(const std::filesystem::path& path);

// FileFailure where something has that name. `remedy` says what to do.
void RefuseExisting(const std::filesystem::path& path, const std::string& remedy);

// Makes the folder where it is missing. FileFailure where that is not possible.
void MakeFolder(const std::filesystem::path& path, mode_t mode);

// Makes the installation directory where it is missing, with those above it. Whoever can open it
// could hold the lock by which one service runs in it, so it is not for all.
void MakeHome(const std::filesystem::path& directory);

// Makes the folders of the installation where they are missing.
void MakeFolders(const std::filesystem::path& directory);

}  // namespace quillon
