// The ODBC adapter keeps the contract of platform/database.h on two drivers. PostgreSQL's stands
// for drivers whose cursors can be updated, and once more, told not to, for those without.
#include <array>
#include <utility>

#include "platform/odbc/odbc_connection.h"
#include "platform/text.h"
#include "tests/platform/odbc/data_sources.h"
#include "tests/support/database_contract.h"

namespace kestrova::test {
namespace {

struct TypeForm {
  std::string_view server_type;  // begins with
  std::string_view own_type;
  FieldType type;
};

struct TextForm {
  std::string_view server_text;
  std::string_view own_text;
};

template <class Forms>
ContractColumn with_type(ContractColumn column, const Forms& forms) {
  for (const TypeForm& form : forms) {
    if (!column.sql_type.starts_with(form.server_type)) continue;
    column.sql_type.replace(0, form.server_type.size(), form.own_type);
    column.type = form.type;
    break;
  }
  return column;
}

template <class Forms>
std::string with_texts(std::string_view sql, const Forms& forms) {
  std::string result(sql);
  for (const TextForm& form : forms) {
    result = text::replace_all(result, form.server_text, form.own_text);
  }
  return result;
}

std::string literal(const Value& value, std::string_view bytes_begin) {
  if (value.is_null()) return "NULL";
  if (value.get_if<Bytes>()) return std::string(bytes_begin) + value.text() + "'";
  if (const auto* truth = value.get_if<bool>()) return *truth ? "TRUE" : "FALSE";
  if (!value.get_if<std::string>() && !value.get_if<DateTime>()) return value.text();
  return "'" + text::replace_all(value.text(), "'", "''") + "'";
}

std::string in_order(std::string_view table) {
  return "SELECT * FROM " + std::string(table) + " ORDER BY ID";
}

std::shared_ptr<Connection> load(std::shared_ptr<Connection> connection,
                                 const std::vector<ContractTable>& tables,
                                 const ContractDialect& dialect) {
  for (const ContractTable& table : tables) {
    for (const std::string& statement : contract_statements(table, dialect)) {
      connection->execute(statement);
    }
  }
  return connection;
}

// clang-format off
// Temporary tables have no mark of their own on either database.
constexpr std::array kOwnTexts = {
    TextForm{"CREATE TABLE #", "CREATE TEMPORARY TABLE TEMP_"},
    TextForm{"#", "TEMP_"},
    TextForm{"SELECT TOP 0 NAME, PREIS FROM BAUMART", "SELECT NAME, PREIS FROM BAUMART LIMIT 0"},
};

constexpr std::array kPostgresqlTypes = {
    TypeForm{"nvarchar",  "varchar",      FieldType::kVarWChar},
    TypeForm{"tinyint",   "smallint",     FieldType::kSmallInt},
    TypeForm{"bit",       "boolean",      FieldType::kBoolean},
    TypeForm{"datetime",  "timestamp(3)", FieldType::kDBTimeStamp},
    TypeForm{"ntext",     "text",         FieldType::kLongVarWChar},
    TypeForm{"varbinary(20)", "bytea",    FieldType::kVarBinary},
};

// Decimal numbers are floating ones there.
constexpr std::array kSqliteTypes = {
    TypeForm{"nvarchar",  "nvarchar",     FieldType::kVarChar},
    TypeForm{"ntext",     "longvarchar",  FieldType::kLongVarChar},
    TypeForm{"numeric",   "numeric",      FieldType::kDouble},
    TypeForm{"tinyint",   "tinyint",      FieldType::kTinyInt},
};
// clang-format on

std::string upper_to_lower(std::string name) {
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

ContractDialect postgresql_dialect() {
  ContractDialect dialect;
  dialect.column = [](const ContractColumn& column) {
    ContractColumn own = with_type(column, kPostgresqlTypes);
    own.name = upper_to_lower(own.name);
    return own;
  };
  dialect.literal = [](const Value& value) { return literal(value, "'\\x"); };
  dialect.sql = [](std::string_view sql) { return with_texts(sql, kOwnTexts); };
  dialect.in_order = in_order;
  return dialect;
}

ContractDialect sqlite_dialect() {
  ContractDialect dialect;
  dialect.column = [](const ContractColumn& column) { return with_type(column, kSqliteTypes); };
  dialect.value = [](const Value& value) {
    const auto* decimal = value.get_if<Decimal>();
    return decimal == nullptr ? value : Value(std::stod(decimal->digits));
  };
  dialect.literal = [](const Value& value) { return literal(value, "x'"); };
  dialect.sql = [](std::string_view sql) { return with_texts(sql, kOwnTexts); };
  dialect.in_order = in_order;
  return dialect;
}

ContractAdapter postgresql_adapter(const std::string& name, const std::string& attributes) {
  return {.name = name,
          .connect =
              [attributes](const std::vector<ContractTable>& tables) {
                return load(connect_postgresql(attributes), tables, postgresql_dialect());
              },
          .dialect = postgresql_dialect()};
}

const ContractAdapter kAdapters[] = {
    {.name = "SqliteDriver",
     .connect =
         [](const std::vector<ContractTable>& tables) {
           return load(open_odbc(kSqliteDriver), tables, sqlite_dialect());
         },
     .dialect = sqlite_dialect()},
    {.name = "DialectDriver",
     .connect =
         [](const std::vector<ContractTable>& tables) {
           return load(open_odbc(kDialectDriver), tables, {});
         }},
    {.name = "LikeFreeTds",
     .connect =
         [](const std::vector<ContractTable>& tables) {
           return load(open_odbc(kDriverLikeFreeTds), tables, {});
         }},
    postgresql_adapter("PostgresqlCursors", "UpdatableCursors=1"),
    postgresql_adapter("PostgresqlSearched", "UpdatableCursors=0"),
};

INSTANTIATE_TEST_SUITE_P(Odbc, DatabaseContract, testing::ValuesIn(kAdapters),
                         contract_adapter_name);
INSTANTIATE_TEST_SUITE_P(Odbc, SqlDatabaseContract, testing::ValuesIn(kAdapters),
                         contract_adapter_name);

}  // namespace
}  // namespace kestrova::test
