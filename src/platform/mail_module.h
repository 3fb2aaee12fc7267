// The part of the program that composes and sends mails, as a file of its own beside it: its
// libraries, dozens of them, would more than double the memory of a service that mails nobody.
#pragma once

#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/smtp.h"

namespace quillon {

// The module's file in the directory of the program, and the procedure that it exports.
inline constexpr const char* kMailModuleFile = "quillonmail.so";
inline constexpr const char* kMailModuleProcedure = "QuillonNewSmtp";
using NewSmtpProcedure = Smtp*(EventLoop& loop);

// A new mail; the first one loads the module, which stays. FileFailure where that is not possible.
std::unique_ptr<Smtp> NewSmtp(const std::string& programDirectory, EventLoop& loop);

}  // namespace quillon

// Defined by the module.
extern "C" quillon::Smtp* QuillonNewSmtp(quillon::EventLoop& loop);
