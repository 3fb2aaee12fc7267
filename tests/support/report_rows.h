// Statements that add rows to the tables of the reports and of their history: an ordinary row that
// differs in the columns that a test cares for, or rows by the number.
#pragma once

#include <map>
#include <string>

namespace quillon {

// Columns of a row with their values as SQL literals: {"DevName", "'Core'"}.
using Columns = std::map<std::string, std::string>;

// "INSERT INTO <table> (...) VALUES (...);" of these columns.
std::string InsertRow(const std::string& table, const Columns& columns);

// Stands in front of a select, which then finds the numbers 1, 2, ... n up to that count as
// Number(n).
std::string NumbersUpTo(int count);

// A row of VLAN: an access port of device 7, of 2024-05-02.
std::string InsertPort(const Columns& differing = {});

// A row of HostDiskInfo: the disk "C:" of server 900, 60 M free and 40 M used, of 2024-05-02.
std::string InsertStorage(const Columns& differing = {});

}  // namespace quillon
