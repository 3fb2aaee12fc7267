// Loading the module.
#include "platform/mail_module.h"

#include <dlfcn.h>

#include "platform/failure.h"

namespace quillon {

std::unique_ptr<Smtp> NewSmtp(const std::string& programDirectory, EventLoop& loop) {
  const std::string path = programDirectory + "/" + kMailModuleFile;
  void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_NODELETE);
  if (module == nullptr) throw FileFailure(std::string("cannot load ") + dlerror());
  // A pointer to a procedure and one to data are the same here, which the language does not know.
  auto* const newSmtp = reinterpret_cast<NewSmtpProcedure*>(dlsym(module, kMailModuleProcedure));
  if (newSmtp == nullptr) throw FileFailure(std::string("cannot load ") + dlerror());
  return std::unique_ptr<Smtp>(newSmtp(loop));
}

}  // namespace quillon
