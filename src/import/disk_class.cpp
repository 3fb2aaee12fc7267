// Names and classes.
#include "import/disk_class.h"

#include "platform/text_encoding.h"

namespace quillon {
namespace {

// "C:" and whatever else has a colon as its second character.
bool IsVolume(const std::string& name) {
  const std::string start = FirstCharacters(name, 2, "UTF-8");
  return start.size() > 1 && start.back() == ':';
}

}  // namespace

DiskClass ClassOf(const Value& storDescr) {
  if (storDescr.IsNull()) return DiskClass::kUnixDisk;
  const std::string name = storDescr.AsText();
  if (name == "Physical") return DiskClass::kPhysicalMemory;
  if (name == "Virtual") return DiskClass::kVirtualMemory;
  return IsVolume(name) ? DiskClass::kWindowsDisk : DiskClass::kUnixDisk;
}

}  // namespace quillon
