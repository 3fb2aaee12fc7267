// Statements that add rows to the tables of the reports and of their history: an ordinary row that
// differs in the columns that a test cares for, or rows by the number.
#pragma once

#include <map>
#include <string>

namespace quillon {

// Columns of a row with their values as SQL literals: {"DevName", "'Core'"}.
using Columns = std::map<std::string, std::string>;

// The columns, some of them with other values.
Columns With(Columns columns, const Columns& differing);

// "INSERT INTO <table> (...) VALUES (...);" of these columns.
std::string InsertRow(const std::string& table, const Columns& columns);

// Stands in front of a select, which then finds the numbers 1, 2, ... n up to that count as
// Number(n).
std::string NumbersUpTo(int count);

// A row of VLAN: an access port of device 7, of 2024-05-02.
std::string InsertPort(const Columns& differing = {});

// A row of HostDiskInfo: the disk "C:" of server 900, 60 M free and 40 M used, of 2024-05-02.
std::string InsertStorage(const Columns& differing = {});

// A day table by its number: "VLAN_Day07" of those that begin with "VLAN_Day".
std::string DayTable(const std::string& beginning, int number);

// The control row of a day table: it holds the ports, or the storages, of that moment. Both are SQL
// literals.
std::string InsertPortControl(const std::string& moment, const std::string& histTable);
std::string InsertStorageControl(const std::string& moment, const std::string& histTable);

// A row of a day table: port 4 of device 7 with a small figure in each series.
std::string InsertPortOfDay(const std::string& histTable, const Columns& differing = {});

// A row of a day table: the Windows disk "C:" of server 900, 40 of 100 M used, with the trends of
// the product.
std::string InsertStorageOfDay(const std::string& histTable, const Columns& differing = {});

}  // namespace quillon
