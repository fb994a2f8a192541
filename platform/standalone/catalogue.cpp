#include "platform/standalone/catalogue.h"

#include <algorithm>

#include "platform/error.h"
#include "platform/standalone/from_text.h"
#include "platform/text.h"

namespace kestrova::standalone {
namespace {

template <class ReadRow>
void for_each_row(Connection& connection, std::string_view query, ReadRow read_row) {
  const auto rows = connection.open(query, CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !rows->eof(); rows->move_next()) read_row(*rows);
}

void read_table_keys(Connection& connection, Catalogue& catalogue) {
  for_each_row(connection, "SELECT TABLE_KEY, BASE_FROM FROM SUITE_TABLE_KEYS",
               [&](const Recordset& row) {
                 catalogue.table_keys[row.value(0).text()].base_from = row.value(1).text();
               });
}

TableKey& table_key_of_field(Catalogue& catalogue, const std::string& table_key) {
  const auto found = catalogue.table_keys.find(table_key);
  if (found == catalogue.table_keys.end()) {
    throw ItemNotFound("SUITE_FIELDS names the table key '" + table_key +
                       "', which SUITE_TABLE_KEYS does not have.");
  }
  return found->second;
}

void read_fields(Connection& connection, Catalogue& catalogue) {
  for_each_row(connection,
               "SELECT TABLE_KEY, FIELD_NO, ID_STRING, EXPRESSION, FORMAT FROM SUITE_FIELDS"
               " ORDER BY TABLE_KEY, FIELD_NO",
               [&](const Recordset& row) {
                 TableKey& table_key = table_key_of_field(catalogue, row.value(0).text());
                 const std::int32_t number = row.value(1).integer();
                 const Value text_number = row.value(2);
                 if (!text_number.is_null()) {
                   table_key.offered.push_back({number, text_number.integer()});
                 }
                 Field& field = table_key.fields[number];
                 field.expression = row.value(3).text();
                 field.format = row.value(4).text_or_empty();
               });
}

// The name under which a join text makes its table known: the alias, if it gives one.
std::string joined_name(const std::string& table, const std::string& join_text) {
  const std::vector<FromTable> wanted = tables_in(table);
  const std::vector<FromTable> joined = tables_in(join_text);
  const auto found = std::find_if(joined.begin(), joined.end(), [&](const FromTable& t) {
    return wanted.size() == 1 && (t.table == wanted[0].table || t.name == wanted[0].name);
  });
  if (found == joined.end()) {
    throw InvalidArgument("The join text '" + join_text + "' does not join the table " + table +
                          ".");
  }
  return found->name;
}

Field& field_of_table(Catalogue& catalogue, const std::string& table_key, std::int32_t number) {
  const auto key = catalogue.table_keys.find(table_key);
  if (key != catalogue.table_keys.end()) {
    const auto field = key->second.fields.find(number);
    if (field != key->second.fields.end()) return field->second;
  }
  throw ItemNotFound("SUITE_FIELD_TABLES names the field " + std::to_string(number) +
                     " of the table key '" + table_key + "', which SUITE_FIELDS does not have.");
}

void read_field_tables(Connection& connection, Catalogue& catalogue) {
  TextMap<TextMap<std::string>> join_texts;  // by table key and name
  for_each_row(connection,
               "SELECT TABLE_KEY, FIELD_NO, TABLE_NAME, JOIN_TEXT FROM SUITE_FIELD_TABLES"
               " ORDER BY TABLE_KEY, FIELD_NO, POSITION",
               [&](const Recordset& row) {
                 const std::string table_key = row.value(0).text();
                 const std::string join_text = row.value(3).text();
                 const std::string name = joined_name(row.value(2).text(), join_text);
                 const auto known = join_texts[table_key].try_emplace(name, join_text).first;
                 if (known->second != join_text) {
                   throw InvalidArgument("The table key '" + table_key + "' joins " + name +
                                         " in two ways: '" + known->second + "' and '" + join_text +
                                         "'.");
                 }
                 field_of_table(catalogue, table_key, row.value(1).integer())
                     .tables.push_back({name, join_text});
               });
}

void read_field_lists(Connection& connection, Catalogue& catalogue) {
  for_each_row(connection,
               "SELECT LIST_KEY, FIELD_NO, ID_STRING FROM SUITE_FIELD_LISTS"
               " ORDER BY LIST_KEY, POSITION",
               [&](const Recordset& row) {
                 catalogue.field_lists[row.value(0).text()].push_back(
                     {row.value(1).integer(), row.value(2).integer()});
               });
}

void read_field_map(Connection& connection, Catalogue& catalogue) {
  TextMap<FieldNumbers> prefixes;
  for_each_row(connection, "SELECT RELATION, IS_PREFIX, FIELD_ID, FIELD_NO FROM SUITE_FIELD_MAP",
               [&](const Recordset& row) {
                 const std::string relation = row.value(0).text();
                 FieldNumbers& numbers = row.value(1).integer() != 0
                                             ? prefixes[text::upper(relation)]
                                             : catalogue.exact_relations[relation];
                 numbers.emplace(row.value(2).integer(), row.value(3).integer());
               });
  catalogue.relation_prefixes.assign(prefixes.begin(), prefixes.end());
  std::sort(catalogue.relation_prefixes.begin(), catalogue.relation_prefixes.end(),
            [](const auto& a, const auto& b) { return a.first.size() > b.first.size(); });
}

void read_restrictions(Connection& connection, Catalogue& catalogue) {
  for_each_row(connection, "SELECT TABLE_NAME, RESTRICTION FROM SUITE_ACCESS",
               [&](const Recordset& row) {
                 catalogue.restrictions[text::upper(row.value(0).text())] = row.value(1).text();
               });
}

void read_texts(Connection& connection, Catalogue& catalogue) {
  for_each_row(connection, "SELECT NAME, SQL_TEXT FROM SUITE_TEXTS", [&](const Recordset& row) {
    catalogue.texts[row.value(0).text()] = row.value(1).text();
  });
}

}  // namespace

Catalogue read_catalogue(Connection& connection) {
  Catalogue catalogue;
  read_table_keys(connection, catalogue);
  read_fields(connection, catalogue);
  read_field_tables(connection, catalogue);
  read_field_lists(connection, catalogue);
  read_field_map(connection, catalogue);
  read_restrictions(connection, catalogue);
  read_texts(connection, catalogue);
  return catalogue;
}

}  // namespace kestrova::standalone
