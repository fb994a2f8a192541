// The UPDATE that writes one row by its key, where the driver's cursors cannot be updated.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrova::odbc {

// A name as the database writes it: between the quotes that the driver names, or as it stands where
// it names none (" "). For "[" the name is put in brackets.
std::string quoted_name(std::string_view name, std::string_view quote);

// The table as metadata name it; catalog and schema may be empty.
struct TableName {
  std::string catalog;
  std::string schema;
  std::string table;
  friend bool operator==(const TableName&, const TableName&) = default;
};
std::string quoted_name(const TableName& table, std::string_view quote);

// A column in a condition. NULL is compared in another form than a value, which is a parameter.
struct OldValue {
  std::string column;
  bool is_null = false;
};

// The columns are names as the database spells them.
struct SearchedUpdate {
  TableName table;
  std::vector<std::string> changed;
  std::vector<OldValue> key;
  std::vector<OldValue> others;  // old values by which a change made meanwhile is noticed
};

// Its parameters are the new values, then the old ones of key and others that are not NULL, then
// the key again: the UPDATE itself asks that the key names one row only, so that it can never write
// two.
std::string update_text(const SearchedUpdate& update, std::string_view quote);

// How many rows have the key; tells why the UPDATE wrote none.
std::string count_text(const SearchedUpdate& update, std::string_view quote);

// The columns of the row with the key, as the database holds them.
std::string select_text(const TableName& table, const std::vector<std::string>& columns,
                        const std::vector<OldValue>& key, std::string_view quote);

}  // namespace kestrova::odbc
