// What tells a file apart from a damaged copy of it.
#pragma once

#include <string>

namespace quillon {

class SourceFile;

// The SHA-256 of the file's bytes, as 64 small hexadecimal digits: what 'sha256sum' prints.
// FileFailure where the file cannot be read.
std::string Sha256Of(const SourceFile& file);
std::string Sha256OfFile(const std::string& path);

}  // namespace quillon
