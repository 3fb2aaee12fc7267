// Statements that make a table refuse what is done to it, with the text "refused".
#pragma once

#include <string>

namespace quillon {

// The action is "INSERT", "UPDATE" or "DELETE"; the condition tells which rows refuse it: of
// "NEW.RecNo = 140" or "OLD.RecNo = 140".
inline std::string Refusal(const std::string& action, const std::string& table,
                           const std::string& condition = "TRUE") {
  return "CREATE TRIGGER Refusal_" + action + "_" + table + " BEFORE " + action + " ON " + table +
         " WHEN " + condition + " BEGIN SELECT RAISE(ABORT, 'refused'); END;";
}

inline std::string EndOfRefusal(const std::string& action, const std::string& table) {
  return "DROP TRIGGER Refusal_" + action + "_" + table + ";";
}

}  // namespace quillon
