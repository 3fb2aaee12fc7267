// What may be written into the settings: each rule takes a text and returns what is wrong with it,
// for an operator to read, or an empty text. Everything that a tool writes is judged here first.
#pragma once

#include <cstdint>
#include <string>

namespace quillon::rules {

// UTF-8 without control characters, which no setting has a use for.
std::string PlainText(const std::string& text);

// A whole number between these two, them included.
std::string Number(const std::string& text, std::int64_t lowest, std::int64_t highest);

// An IP address, of version 4 or 6. Names are none.
std::string Address(const std::string& text);

// A number from 1 to 65535.
std::string Port(const std::string& text);

// One of the three date formats of the console's list.
std::string DateFormat(const std::string& text);

// A charset that this machine knows and in which ASCII is itself, as the markup of pages needs it:
// the console's list, "UTF-8", and others of that kind.
std::string CharSet(const std::string& text);

// One mail address, with a name in front of it or without: "a@b", "Name <a@b>".
std::string MailAddress(const std::string& text);

// One of the five themes. Case counts.
std::string Theme(const std::string& text);

// A day, "YYYY-MM-DD".
std::string Day(const std::string& text);

}  // namespace quillon::rules
