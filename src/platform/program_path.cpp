// The program's directory out of /proc.
#include "platform/program_path.h"

#include <filesystem>

#include "platform/failure.h"

namespace quillon {

std::string ProgramDirectory() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) throw FileFailure("cannot tell the program's directory: " + error.message());
  return program.parent_path().string();
}

}  // namespace quillon
