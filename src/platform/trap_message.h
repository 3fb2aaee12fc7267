// The SNMP version 1 trap as bytes. Small enough to be our own: one message, three types of
// values, no agent behind it that answers.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace quillon {

// One variable of a trap: its object identifier in dotted form, and an integer or a text.
struct Varbind {
  std::string identifier;
  std::variant<std::int32_t, std::string> value;
};

// The fields of a Trap-PDU (RFC 1157, section 4.1.6) and of the message around it.
struct TrapMessage {
  std::string community;
  std::string enterprise;        // object identifier in dotted form
  std::string agentAddress;      // IPv4; anything else is sent as 0.0.0.0
  std::int32_t genericTrap = 0;  // 6 is enterprise specific
  std::int32_t specificTrap = 0;
  std::uint32_t timeStamp = 0;  // hundredths of a second since the sender's start
  std::vector<Varbind> varbinds;
};

// The message in its basic encoding: definite lengths and integers in their shortest form.
// ConversionFailure for an identifier that is none.
std::string EncodeTrap(const TrapMessage& message);

}  // namespace quillon
