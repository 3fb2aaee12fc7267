// Files as the service uses them: whole texts read and written in one step, lines
// appended, folders cleared by a pattern. Nothing is ever held open.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quillon {

// Line end of every text file and page that the service writes.
inline constexpr std::string_view kLineEnd = "\r\n";

// `folder` and `name` as a path, where `name` is one plain file name: it is not
// empty, "." or "..", and holds no "/", "\" or NUL. Any other name raises FileFailure,
// so that a name out of a URL or a database can reach nothing outside the folder.
std::string PlainFilePath(const std::string& folder, std::string_view name);

// True for an ordinary file of that name; false for anything else and for a name
// that is not plain. Never fails.
bool PlainFileExists(const std::string& folder, std::string_view name);

// True for an ordinary file.
bool FileExists(const std::string& path);

// True for anything of that name, a folder too.
bool PathExists(const std::string& path);

// The bytes of the file. FileFailure where it cannot be opened or read.
std::string ReadFileBytes(const std::string& path);

// Hands the lines of the file over, one after the other and without their ends, which are CR, LF
// or CR LF. Holds no more than a piece of it. FileFailure as above; what the handler throws
// ends the reading.
void ReadLines(const std::string& path, const std::function<void(std::string_view line)>& handler);

// Makes an empty file where there is none, and leaves another as it is.
void TouchFile(const std::string& path);

// What becomes of the old file when its replacement cannot be written.
enum class OldFile { kStays, kGoes };

// Replaces the file: the bytes go into a temporary file beside it that is then moved,
// so a reader sees the old file or the new one and never a part, also after a kill.
// On a failure the new file is not there, and FileFailure is raised.
void ReplaceFile(const std::string& path, std::string_view bytes, OldFile onFailure);

// Appends in one step. FileFailure where that is not possible; then nothing of it is there.
void AppendToFile(const std::string& path, std::string_view bytes);

// Returns when what was written to the file is on the disk.
void SyncFile(const std::string& path);

// Gives the file another name, which is free: FileFailure where there is such a file already.
void MoveFile(const std::string& from, const std::string& to);

// FileFailure where that is not possible.
void DeleteFile(const std::string& path);

// Deletes the ordinary files of `folder` whose names match the pattern, in which "*"
// stands for any run of characters. A folder that is missing holds no such file.
void DeleteMatching(const std::string& folder, const std::string& pattern);

}  // namespace quillon
