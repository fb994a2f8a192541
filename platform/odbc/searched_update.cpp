#include "platform/odbc/searched_update.h"

#include "platform/text.h"

namespace kestrova::odbc {
namespace {

std::string condition(const std::vector<OldValue>& values, std::string_view quote) {
  std::string result;
  for (const OldValue& value : values) {
    if (!result.empty()) result += " AND ";
    result += quoted_name(value.column, quote) + (value.is_null ? " IS NULL" : " = ?");
  }
  return result;
}

}  // namespace

std::string quoted_name(std::string_view name, std::string_view quote) {
  if (quote.empty() || quote == " ") return std::string(name);
  if (quote == "[") return "[" + text::replace_all(name, "]", "]]") + "]";
  const std::string q(quote);
  return q + text::replace_all(name, quote, q + q) + q;
}

std::string quoted_name(const TableName& table, std::string_view quote) {
  std::string result;
  if (!table.catalog.empty()) result += quoted_name(table.catalog, quote) + ".";
  if (!table.schema.empty()) result += quoted_name(table.schema, quote) + ".";
  // SQL Server's form for the schema of the login in another database.
  if (quote == "[" && !table.catalog.empty() && table.schema.empty()) result += ".";
  return result + quoted_name(table.table, quote);
}

std::string update_text(const SearchedUpdate& update, std::string_view quote) {
  std::string sql = "UPDATE " + quoted_name(update.table, quote) + " SET ";
  for (std::size_t i = 0; i < update.changed.size(); ++i) {
    if (i > 0) sql += ", ";
    sql += quoted_name(update.changed[i], quote) + " = ?";
  }
  sql += " WHERE " + condition(update.key, quote);
  if (!update.others.empty()) sql += " AND " + condition(update.others, quote);
  return sql + " AND (" + count_text(update, quote) + ") = 1";
}

std::string count_text(const SearchedUpdate& update, std::string_view quote) {
  return "SELECT COUNT(*) FROM " + quoted_name(update.table, quote) + " WHERE " +
         condition(update.key, quote);
}

std::string select_text(const TableName& table, const std::vector<std::string>& columns,
                        const std::vector<OldValue>& key, std::string_view quote) {
  std::string list;
  for (const std::string& column : columns) {
    list += (list.empty() ? "" : ", ") + quoted_name(column, quote);
  }
  return "SELECT " + list + " FROM " + quoted_name(table, quote) + " WHERE " +
         condition(key, quote);
}

}  // namespace kestrova::odbc
