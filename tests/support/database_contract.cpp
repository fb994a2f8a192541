#include "tests/support/database_contract.h"

#include <algorithm>
#include <cstddef>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::test {

void PrintTo(const ContractAdapter& adapter, std::ostream* out) { *out << adapter.name; }

std::string contract_adapter_name(const testing::TestParamInfo<ContractAdapter>& info) {
  return info.param.name;
}

namespace {

std::string server_literal(const Value& value) {
  if (value.is_null()) return "NULL";
  if (value.get_if<Bytes>()) return "0x" + value.text();
  if (!value.get_if<std::string>() && !value.get_if<DateTime>()) return value.text();
  return "N'" + text::replace_all(value.text(), "'", "''") + "'";
}

}  // namespace

ContractDialect::ContractDialect() : literal(server_literal) {}

std::vector<std::string> contract_statements(const ContractTable& table,
                                             const ContractDialect& dialect) {
  std::string columns;
  for (const ContractColumn& column : table.columns) {
    columns += (columns.empty() ? "" : ", ") + column.name + " " + dialect.column(column).sql_type;
  }
  std::vector<std::string> statements = {"CREATE TABLE " + table.name + " (" + columns + ")"};
  for (const Row& row : table.rows) {
    std::string values;
    for (const Value& value : row) values += (values.empty() ? "" : ", ") + dialect.literal(value);
    statements.push_back("INSERT INTO " + table.name + " VALUES (" + values + ")");
  }
  return statements;
}

Row DatabaseContract::stored(Row values) {
  for (Value& value : values) value = dialect().value(value);
  return values;
}

namespace {

// clang-format off

// Tree species, with a name that has trailing blanks, an empty name, a missing one, and two names
// and prices that occur twice.
const ContractTable kSpecies = {"BAUMART",
    {{"ID",    "int NOT NULL PRIMARY KEY", FieldType::kInteger},
     {"NAME",  "nvarchar(50)",             FieldType::kVarWChar},
     {"PREIS", "numeric(12,2)",            FieldType::kNumeric}},
    {{1, "Fichte",  Decimal{"12.50"}},
     {2, "Eiche  ", Decimal{"7.00"}},
     {3, Value(),   Value()},
     {4, "Föhre",   Decimal{"12.50"}},
     {5, "",        Decimal{"0.00"}},
     {6, "Fichte",  Decimal{"3.10"}}}};

const ContractTable kSites = {"STANDORT",
    {{"ID",  "int NOT NULL PRIMARY KEY", FieldType::kInteger},
     {"ORT", "nvarchar(50)",             FieldType::kVarWChar}},
    {{10, "Harz"},
     {20, "Eifel"}}};

const ContractTable kWithoutKey = {"OHNE_SCHLUESSEL",
    {{"NAME", "nvarchar(50)", FieldType::kVarWChar}},
    {{"gleich"},
     {"gleich"},
     {"anders"}}};

// One column per kind of value; the last row is NULL all over.
const ContractTable kKinds = {"WERTE",
    {{"ID",           "int NOT NULL PRIMARY KEY", FieldType::kInteger},
     {"W_SMALLINT",   "smallint",                 FieldType::kSmallInt},
     {"W_TINYINT",    "tinyint",                  FieldType::kUnsignedTinyInt},
     {"W_BIGINT",     "bigint",                   FieldType::kBigInt},
     {"W_FLOAT",      "float",                    FieldType::kDouble},
     {"W_NUMERIC",    "numeric(12,2)",            FieldType::kNumeric},
     {"W_BIT",        "bit",                      FieldType::kBoolean},
     {"W_DATETIME",   "datetime",                 FieldType::kDBTimeStamp},
     {"W_NVARCHAR",   "nvarchar(50)",             FieldType::kVarWChar},
     {"W_NTEXT",      "ntext",                    FieldType::kLongVarWChar},
     {"W_VARBINARY",  "varbinary(20)",            FieldType::kVarBinary}},
    {{1, -32768, 0, std::int64_t{9007199254740993}, 0.1, Decimal{"-12.50"}, true,
      DateTime{2024, 2, 29, 13, 45, 10}, "Käufer O'Brien, 🌲 Ω ł Ж", "Zeile 1\r\nZeile 2\t;",
      Bytes{std::byte{0x00}, std::byte{0xff}}},
     {2, 32767, 255, std::int64_t{-9007199254740993}, -1e300, Decimal{"1234567890.00"}, false,
      DateTime{1999, 12, 31}, "", " ", Bytes{std::byte{0x27}}},
     {3, Value(), Value(), Value(), Value(), Value(), Value(), Value(), Value(), Value(),
      Value()}}};

// The same columns as in WERTE, without a row.
const ContractTable kEmpty = {"LEER", kKinds.columns, {}};

// clang-format on

constexpr std::size_t kMegabyte = 1'000'000;

// A text of 1 MB with characters of two bytes at odd and even offsets.
std::string large_text() {
  std::string text;
  while (text.size() < kMegabyte) text += "Holzkäufer; größer ";
  return text;
}

ContractTable large_table() {
  return {"GROSS",
          {{"ID", "int NOT NULL PRIMARY KEY", FieldType::kInteger},
           {"INHALT", "ntext", FieldType::kLongVarWChar}},
          {{1, large_text()}}};
}

// The values of a column from the current row to the end.
Row rest_of_column(Recordset& rows, std::string_view column) {
  Row values;
  for (; !rows.eof(); rows.move_next()) values.push_back(rows.value(column));
  return values;
}

Row ids_up_to(int last) {
  Row ids;
  for (int id = 1; id <= last; ++id) ids.emplace_back(id);
  return ids;
}

// Whether a row set can be used again after whatever happened: the position and what is read there.
void expect_on_row(Recordset& rows, int id) {
  ASSERT_FALSE(rows.eof());
  EXPECT_EQ(rows.value("ID"), Value(id));
}

}  // namespace

DatabaseContract::DatabaseContract()
    : connection_(GetParam().connect({kSpecies, kSites, kWithoutKey, kKinds, kEmpty})) {}

// A fake that answers table names only does not instantiate the tests of statements.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SqlDatabaseContract);

// --- Position

TEST_P(DatabaseContract, ARowSetOpensOnItsFirstRow) {
  const auto rows = open("BAUMART");
  EXPECT_FALSE(rows->eof());
  EXPECT_EQ(rows->value("ID"), Value(1));
}

TEST_P(DatabaseContract, AnEmptyRowSetOpensAtItsEnd) {
  const auto rows = open("LEER");
  EXPECT_TRUE(rows->eof());
  rows->move_first();
  EXPECT_TRUE(rows->eof());
  EXPECT_THROW(rows->move_next(), NoCurrentRecord);
  EXPECT_THROW(rows->value("ID"), NoCurrentRecord);
}

TEST_P(DatabaseContract, MovingWalksAllRowsAndEndsBehindTheLast) {
  const auto rows = open("BAUMART");
  EXPECT_EQ(rest_of_column(*rows, "ID"), ids_up_to(6));
  EXPECT_TRUE(rows->eof());
  EXPECT_THROW(rows->move_next(), NoCurrentRecord);
  EXPECT_THROW(rows->move_next(), NoCurrentRecord);
  EXPECT_TRUE(rows->eof());
}

TEST_P(DatabaseContract, NothingCanBeReadAtTheEnd) {
  const auto rows = open("BAUMART");
  rest_of_column(*rows, "ID");
  EXPECT_THROW(rows->value("ID"), NoCurrentRecord);
  EXPECT_THROW(rows->value(0), NoCurrentRecord);
}

TEST_P(DatabaseContract, MoveFirstGoesBackFromEveryPosition) {
  const auto rows = open("BAUMART");
  rows->move_first();
  expect_on_row(*rows, 1);
  rows->move_next();
  rows->move_next();
  rows->move_first();
  EXPECT_EQ(rest_of_column(*rows, "ID"), ids_up_to(6));
  rows->move_first();
  EXPECT_EQ(rest_of_column(*rows, "ID"), ids_up_to(6));
}

TEST_P(DatabaseContract, AForwardOnlyRowSetCanStillMoveFirst) {
  const auto rows = open_forward_only("BAUMART");
  rows->move_first();
  expect_on_row(*rows, 1);
  rows->move_next();
  rows->move_first();
  EXPECT_EQ(rest_of_column(*rows, "ID"), ids_up_to(6));
  rows->move_first();
  EXPECT_EQ(rest_of_column(*rows, "ID"), ids_up_to(6));
}

TEST_P(DatabaseContract, EveryCursorAndLockReadsTheSameRows) {
  for (const CursorType cursor : {CursorType::kUnspecified, CursorType::kForwardOnly,
                                  CursorType::kKeyset, CursorType::kDynamic, CursorType::kStatic}) {
    for (const LockType lock : {LockType::kUnspecified, LockType::kReadOnly, LockType::kPessimistic,
                                LockType::kOptimistic}) {
      const auto rows = connection_->open("BAUMART", cursor, lock);
      EXPECT_EQ(rest_of_column(*rows, "ID"), ids_up_to(6))
          << "cursor " << static_cast<int>(cursor) << ", lock " << static_cast<int>(lock);
    }
  }
}

// --- Columns

TEST_P(DatabaseContract, ColumnsAreNamedAndCountedAsInTheTable) {
  const auto rows = open("BAUMART");
  ASSERT_EQ(rows->column_count(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(rows->column_name(i), dialect().column(kSpecies.columns[i]).name);
  }
  EXPECT_EQ(open("LEER")->column_count(), kEmpty.columns.size());
}

TEST_P(DatabaseContract, AColumnIsFoundByNameInAnyCaseAndByPosition) {
  const auto rows = open("BAUMART");
  EXPECT_EQ(rows->value("NAME"), Value("Fichte"));
  EXPECT_EQ(rows->value("name"), Value("Fichte"));
  EXPECT_EQ(rows->value("Name"), Value("Fichte"));
  EXPECT_EQ(rows->value(1), Value("Fichte"));
  EXPECT_EQ(rows->type("name"), dialect().column(kSpecies.columns[1]).type);
  EXPECT_EQ(rows->type(1), dialect().column(kSpecies.columns[1]).type);
}

TEST_P(DatabaseContract, AColumnThatDoesNotExistIsNotFound) {
  const auto rows = open("BAUMART");
  EXPECT_THROW(rows->value("NAM"), ItemNotFound);
  EXPECT_THROW(rows->value(""), ItemNotFound);
  EXPECT_THROW(rows->value(3), ItemNotFound);
  EXPECT_THROW(rows->type("NAMEN"), ItemNotFound);
  EXPECT_THROW(rows->type(3), ItemNotFound);
  EXPECT_THROW(rows->column_name(3), ItemNotFound);
  expect_on_row(*rows, 1);
}

TEST_P(DatabaseContract, TypesAreAnsweredWithAndWithoutRows) {
  for (const std::string_view table : {"WERTE", "LEER"}) {
    const auto rows = open(table);
    for (std::size_t i = 0; i < kKinds.columns.size(); ++i) {
      const ContractColumn column = dialect().column(kKinds.columns[i]);
      EXPECT_EQ(rows->type(column.name), column.type) << table << "." << column.name;
      EXPECT_EQ(rows->type(i), column.type) << table << "." << column.name;
    }
  }
}

TEST_P(DatabaseContract, TypesAreAnsweredAtTheEnd) {
  const auto rows = open("BAUMART");
  rest_of_column(*rows, "ID");
  EXPECT_EQ(rows->type("PREIS"), dialect().column(kSpecies.columns[2]).type);
}

// --- Values

TEST_P(DatabaseContract, EveryKindOfValueIsReadWithoutLoss) {
  const auto rows = open("WERTE");
  for (const Row& row : kKinds.rows) {
    const Row expected = stored(row);
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_EQ(rows->value(i), expected[i]) << kKinds.columns[i].name;
      EXPECT_EQ(rows->value(kKinds.columns[i].name), expected[i]) << kKinds.columns[i].name;
    }
    rows->move_next();
  }
  EXPECT_TRUE(rows->eof());
}

TEST_P(DatabaseContract, AnEmptyTextIsNotNull) {
  const auto rows = open("BAUMART");
  rows->find("ID = 3");
  EXPECT_TRUE(rows->value("NAME").is_null());
  rows->find("ID = 5");
  EXPECT_EQ(rows->value("NAME"), Value(""));
}

TEST_P(DatabaseContract, AMegabyteOfTextIsReadWhole) {
  const auto connection = GetParam().connect({large_table()});
  const auto rows = connection->open("GROSS", CursorType::kForwardOnly, LockType::kReadOnly);
  EXPECT_TRUE(rows->value("INHALT") == Value(large_text()));  // not printed when it differs
}

// --- Find

struct FindCase {
  std::string_view criterion;
  int from_id;
  int found_id;  // 0: at the end
};

TEST_P(DatabaseContract, FindGoesToTheFirstRowFromTheCurrentOneOnThatMeets) {
  // clang-format off
  constexpr FindCase kCases[] = {
      {"ID = 4",             1, 4},
      {"ID = 1",             1, 1},  // the current row counts
      {"ID = 1",             2, 0},  // a row before it does not
      {"ID = 4.0",           1, 4},  // numbers are compared as numbers
      {"ID='4'",             1, 4},  // and as texts when the criterion says so
      {"ID = 7",             1, 0},
      {"ID = -1",            1, 0},
      {"PREIS = 12.5",       1, 1},
      {"PREIS = 12.5",       2, 4},
      {"PREIS = 0",          1, 5},  // NULL is not 0
      {"NAME = 'Fichte'",    1, 1},
      {"NAME = 'Fichte'",    2, 6},
      {"name = 'fichte'",    2, 6},
      {"NAME = 'FÖHRE'",     1, 4},
      {"NAME = 'Eiche'",     1, 2},  // the row has trailing blanks
      {"NAME = 'Fichte   '", 2, 6},  // the criterion has them
      {"NAME = ' Fichte'",   1, 0},  // leading ones count
      {"NAME = 'Ficht'",     1, 0},
      {"NAME = ''",          1, 5},  // NULL is not the empty text
      {"NAME = 'NULL'",      1, 0},
      {"NAME = 5",           1, 0},
  };
  // clang-format on
  for (const FindCase& c : kCases) {
    SCOPED_TRACE(std::string(c.criterion) + " from row " + std::to_string(c.from_id));
    for (const CursorType cursor : {CursorType::kStatic, CursorType::kForwardOnly}) {
      const auto rows = connection_->open("BAUMART", cursor, LockType::kReadOnly);
      while (rows->value("ID") != Value(c.from_id)) rows->move_next();
      rows->find(c.criterion);
      if (c.found_id == 0) {
        EXPECT_TRUE(rows->eof());
      } else {
        expect_on_row(*rows, c.found_id);
      }
    }
  }
}

TEST_P(DatabaseContract, AfterAFindTheRowSetWalksOnFromThere) {
  const auto rows = open("BAUMART");
  rows->find("NAME = 'Fichte'");
  rows->move_next();
  rows->find("NAME = 'Fichte'");
  expect_on_row(*rows, 6);
  rows->move_first();
  rows->find("ID = 5");
  EXPECT_EQ(rest_of_column(*rows, "ID"), (Row{5, 6}));
}

TEST_P(DatabaseContract, FindAtTheEndStaysThere) {
  const auto rows = open("BAUMART");
  rest_of_column(*rows, "ID");
  rows->find("ID = 1");
  EXPECT_TRUE(rows->eof());
  rows->move_first();
  expect_on_row(*rows, 1);
  const auto empty = open("LEER");
  empty->find("ID = 1");
  EXPECT_TRUE(empty->eof());
}

TEST_P(DatabaseContract, ACriterionThatCannotBeReadLeavesThePosition) {
  const auto rows = open("BAUMART");
  rows->move_next();
  for (const std::string_view criterion :
       {"", "NAME", "NAME =", "= 'Fichte'", "NAME LIKE 'F%'", "NAME <> 'Fichte'", "ID > 3",
        "ID >= 3", "NAME = 'O''Brien'", "NAME = 'Fichte", "NAME = Fichte",
        "ID = 3 AND NAME = 'Fichte'", "NAME = 'Fichte' OR NAME = 'Eiche'"}) {
    EXPECT_THROW(rows->find(criterion), BadCriterion) << criterion;
    expect_on_row(*rows, 2);
  }
}

TEST_P(DatabaseContract, FindInAColumnThatDoesNotExistLeavesThePosition) {
  const auto rows = open("BAUMART");
  rows->move_next();
  EXPECT_THROW(rows->find("NAMEN = 'Fichte'"), ItemNotFound);
  expect_on_row(*rows, 2);
}

// --- Several row sets

TEST_P(DatabaseContract, RowSetsOpenAtOnceDoNotDisturbEachOther) {
  for (const CursorType cursor : {CursorType::kForwardOnly, CursorType::kStatic}) {
    const auto a = connection_->open("BAUMART", cursor, LockType::kReadOnly);
    a->move_next();
    const auto b = connection_->open("BAUMART", cursor, LockType::kReadOnly);
    const auto c = connection_->open("STANDORT", cursor, LockType::kReadOnly);
    expect_on_row(*a, 2);
    expect_on_row(*b, 1);
    expect_on_row(*c, 10);
    a->move_next();
    c->move_next();
    b->find("ID = 5");
    expect_on_row(*a, 3);
    expect_on_row(*b, 5);
    expect_on_row(*c, 20);
    b->close();
    c->move_next();
    EXPECT_TRUE(c->eof());
    EXPECT_EQ(rest_of_column(*a, "ID"), (Row{3, 4, 5, 6}));
  }
}

TEST_P(DatabaseContract, ARowSetCanBeOpenedForEachRowOfAnother) {
  const auto outer = open_forward_only("BAUMART");
  int rows_read = 0;
  for (; !outer->eof(); outer->move_next()) {
    const auto inner = open_forward_only("LEER");
    EXPECT_EQ(inner->type("W_FLOAT"), FieldType::kDouble);
    ++rows_read;
  }
  EXPECT_EQ(rows_read, 6);
}

TEST_P(DatabaseContract, ManyRowSetsCanBeOpenAndAreFreedWhenDestroyed) {
  for (int round = 0; round < 20; ++round) {
    std::vector<std::unique_ptr<Recordset>> open_at_once;
    for (int i = 0; i < 50; ++i) open_at_once.push_back(open_forward_only("BAUMART"));
    for (const auto& rows : open_at_once) expect_on_row(*rows, 1);
  }
}

// --- Writing

TEST_P(DatabaseContract, UpdateWritesTheChangedColumnsOfExactlyOneRow) {
  const auto rows = open_for_update("BAUMART");
  rows->find("ID = 4");
  rows->set_value("name", "Kiefer 'rot'");
  rows->set_value("PREIS", Decimal{"9.75"});
  rows->update();
  EXPECT_EQ(rows->value("NAME"), Value("Kiefer 'rot'"));
  expect_on_row(*rows, 4);
  const auto again = open_in_order("BAUMART");
  EXPECT_EQ(rest_of_column(*again, "NAME"),
            (Row{"Fichte", "Eiche  ", Value(), "Kiefer 'rot'", "", "Fichte"}));
  again->move_first();
  EXPECT_EQ(rest_of_column(*again, "PREIS"),
            stored({Decimal{"12.50"}, Decimal{"7.00"}, Value(), Decimal{"9.75"}, Decimal{"0.00"},
                    Decimal{"3.10"}}));
}

TEST_P(DatabaseContract, EveryKindOfValueIsWrittenWithoutLoss) {
  // The first row's values go into the NULL row, and the NULLs into the first row.
  const auto rows = open_for_update("WERTE");
  const auto write = [&rows](const Row& values) {
    for (std::size_t i = 1; i < values.size(); ++i) {
      rows->set_value(kKinds.columns[i].name, values[i]);
    }
    rows->update();
  };
  write(kKinds.rows[2]);
  rows->find("ID = 3");
  write(kKinds.rows[0]);
  const auto again = open_in_order("WERTE");
  for (std::size_t i = 1; i < kKinds.columns.size(); ++i) {
    again->move_first();
    EXPECT_EQ(rest_of_column(*again, kKinds.columns[i].name),
              stored({kKinds.rows[2][i], kKinds.rows[1][i], kKinds.rows[0][i]}))
        << kKinds.columns[i].name;
  }
}

TEST_P(DatabaseContract, AMegabyteOfTextIsWrittenWhole) {
  const auto rows = open_for_update("WERTE");
  rows->set_value("W_NTEXT", large_text());
  rows->update();
  EXPECT_TRUE(open_in_order("WERTE")->value("W_NTEXT") == Value(large_text()));
}

TEST_P(DatabaseContract, AChangeIsSeenInTheRowAtOnceAndInTheTableAfterUpdate) {
  const auto rows = open_for_update("BAUMART");
  rows->set_value("NAME", "Tanne");
  EXPECT_EQ(rows->value("NAME"), Value("Tanne"));
  EXPECT_EQ(open_in_order("BAUMART")->value("NAME"), Value("Fichte"));
  rows->update();
  EXPECT_EQ(open_in_order("BAUMART")->value("NAME"), Value("Tanne"));
}

TEST_P(DatabaseContract, LeavingTheRowDiscardsTheChange) {
  const auto rows = open_for_update("BAUMART");
  rows->set_value("NAME", "Tanne");
  rows->move_next();
  rows->set_value("NAME", "Lärche");
  rows->move_first();
  EXPECT_EQ(rows->value("NAME"), Value("Fichte"));
  rows->set_value("NAME", "Ulme");
  rows->find("ID = 3");
  rows->set_value("NAME", "Erle");
  rows->update();  // writes this row, and nothing of the rows left
  rows->set_value("NAME", "Esche");
  rows->close();
  EXPECT_EQ(rest_of_column(*open_in_order("BAUMART"), "NAME"),
            (Row{"Fichte", "Eiche  ", "Erle", "Föhre", "", "Fichte"}));
}

TEST_P(DatabaseContract, EveryRowOfAWalkCanBeUpdated) {
  const auto rows = open_for_update("BAUMART");
  for (; !rows->eof(); rows->move_next()) {
    rows->set_value("NAME", "Nr. " + rows->value("ID").text());
    rows->update();
  }
  EXPECT_EQ(rest_of_column(*open_in_order("BAUMART"), "NAME"),
            (Row{"Nr. 1", "Nr. 2", "Nr. 3", "Nr. 4", "Nr. 5", "Nr. 6"}));
}

TEST_P(DatabaseContract, OfEqualRowsOneIsWrittenOrTheWritingIsRefused) {
  bool refused = false;
  try {
    const auto rows = open_for_update("OHNE_SCHLUESSEL");
    rows->set_value("NAME", "neu");
    rows->update();
  } catch (const DatabaseError&) {
    refused = true;
  }
  const auto rows = open("OHNE_SCHLUESSEL");
  Row names = rest_of_column(*rows, "NAME");
  std::sort(names.begin(), names.end(),
            [](const Value& a, const Value& b) { return a.text() < b.text(); });
  EXPECT_EQ(names,
            refused ? (Row{"anders", "gleich", "gleich"}) : (Row{"anders", "gleich", "neu"}));
}

TEST_P(DatabaseContract, AReadOnlyRowSetRefusesToWrite) {
  for (const CursorType cursor : {CursorType::kForwardOnly, CursorType::kKeyset}) {
    const auto rows = connection_->open("BAUMART", cursor, LockType::kReadOnly);
    EXPECT_THROW(rows->set_value("NAME", "Tanne"), DatabaseError);
    EXPECT_THROW(rows->update(), DatabaseError);
    EXPECT_EQ(rows->value("NAME"), Value("Fichte"));
  }
  EXPECT_EQ(open_in_order("BAUMART")->value("NAME"), Value("Fichte"));
}

TEST_P(DatabaseContract, AColumnThatDoesNotExistCannotBeSet) {
  const auto rows = open_for_update("BAUMART");
  EXPECT_THROW(rows->set_value("NAMEN", "Tanne"), ItemNotFound);
  expect_on_row(*rows, 1);
}

TEST_P(DatabaseContract, NothingCanBeWrittenAtTheEnd) {
  const auto rows = open_for_update("BAUMART");
  rest_of_column(*rows, "ID");
  EXPECT_THROW(rows->set_value("NAME", "Tanne"), NoCurrentRecord);
  EXPECT_THROW(rows->update(), NoCurrentRecord);
}

// --- Closing

TEST_P(DatabaseContract, AClosedRowSetCanOnlyBeClosedAgain) {
  const auto rows = open_for_update("BAUMART");
  rows->close();
  EXPECT_NO_THROW(rows->close());
  EXPECT_THROW(rows->eof(), ObjectNotSet);
  EXPECT_THROW(rows->move_first(), ObjectNotSet);
  EXPECT_THROW(rows->move_next(), ObjectNotSet);
  EXPECT_THROW(rows->find("ID = 1"), ObjectNotSet);
  EXPECT_THROW(rows->column_count(), ObjectNotSet);
  EXPECT_THROW(rows->column_name(0), ObjectNotSet);
  EXPECT_THROW(rows->value("ID"), ObjectNotSet);
  EXPECT_THROW(rows->value(0), ObjectNotSet);
  EXPECT_THROW(rows->type("ID"), ObjectNotSet);
  EXPECT_THROW(rows->type(0), ObjectNotSet);
  EXPECT_THROW(rows->set_value("ID", 1), ObjectNotSet);
  EXPECT_THROW(rows->update(), ObjectNotSet);
}

TEST_P(SqlDatabaseContract, ARowSetThatIsClosedOrDestroyedLetsGoOfItsTable) {
  const auto closed = open_forward_only("BAUMART");
  closed->close();
  execute("DROP TABLE BAUMART");
  open_forward_only("STANDORT").reset();
  execute("DROP TABLE STANDORT");
  EXPECT_THROW(open("BAUMART"), DatabaseError);
  EXPECT_THROW(open("STANDORT"), DatabaseError);
}

// --- Errors

TEST_P(DatabaseContract, ATableThatDoesNotExistIsADatabaseError) {
  for (const std::string_view source : {"NICHT_DA", "#NICHT_DA", "SELECT * FROM NICHT_DA"}) {
    try {
      open(source);
      ADD_FAILURE() << "No error for: " << source;
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.number(), DatabaseError::kNumber);
      EXPECT_EQ(error.sqlstate(), "42S02") << source;
    }
  }
}

TEST_P(DatabaseContract, AnErrorLeavesTheConnectionAndOtherRowSetsWorking) {
  const auto rows = open_for_update("BAUMART");
  rows->move_next();
  EXPECT_THROW(open("NICHT_DA"), DatabaseError);
  EXPECT_THROW(rows->value("NAMEN"), ItemNotFound);
  EXPECT_THROW(rows->find("NAME"), BadCriterion);
  expect_on_row(*rows, 2);
  rows->set_value("NAME", "Tanne");
  rows->update();
  const auto again = open_in_order("BAUMART");
  again->move_next();
  EXPECT_EQ(again->value("NAME"), Value("Tanne"));
}

TEST_P(SqlDatabaseContract, ARefusedStatementLeavesTheConnectionAndOtherRowSetsWorking) {
  const auto rows = open_forward_only("BAUMART");
  EXPECT_THROW(open("SELECT NICHT_DA FROM BAUMART"), DatabaseError);
  EXPECT_THROW(open("SELECT * FORM BAUMART"), DatabaseError);
  EXPECT_THROW(execute("DELETE FROM NICHT_DA"), DatabaseError);
  EXPECT_THROW(execute("INSERT INTO BAUMART (ID, NAME) VALUES (1, 'doppelt')"), DatabaseError);
  EXPECT_EQ(rest_of_column(*rows, "ID"), ids_up_to(6));
  EXPECT_EQ(execute("UPDATE BAUMART SET NAME = 'Tanne' WHERE ID = 1"), 1);
  EXPECT_EQ(open_in_order("BAUMART")->value("NAME"), Value("Tanne"));
}

// --- One SELECT and nothing else

TEST_P(SqlDatabaseContract, AnythingButOneSelectIsRefusedAndNothingOfItRuns) {
  for (const std::string_view source :
       {"DELETE FROM BAUMART",
        "SELECT 1 DELETE FROM BAUMART",
        "SELECT 1\r\nDELETE FROM BAUMART",
        "SELECT 1; DELETE FROM BAUMART",
        "SELECT 'x'DELETE FROM BAUMART",
        "SELECT 1DELETE FROM BAUMART",
        "SELECT (1)drop table BAUMART",
        "DROP TABLE BAUMART",
        "SELECT * FROM BAUMART WHERE (NAME = 'x') DELETE FROM BAUMART SELECT 1 --')",
        "SELECT * INTO NEU FROM BAUMART",
        "SELECT * INTO #NEU FROM BAUMART",
        "UPDATE BAUMART SET NAME = 'x'",
        "INSERT INTO STANDORT (ID, ORT) VALUES (30, 'Solling')",
        "EXEC sp_rename 'BAUMART', 'X'",
        "CREATE TABLE NEU (ID int)",
        "TRUNCATE TABLE BAUMART",
        "SELECT 1 SELECT 2",
        "BAUMART;DELETE/**/FROM/**/BAUMART",
        "BAUMART--",
        "SELECT 1 --",
        "SELECT 'x",
        "SELECT (1",
        "",
        " "}) {
    for (const LockType lock : {LockType::kReadOnly, LockType::kOptimistic}) {
      try {
        connection_->open(dialect().sql(source), CursorType::kKeyset, lock);
        ADD_FAILURE() << "No error for: " << source;
      } catch (const DatabaseError& error) {
        EXPECT_EQ(error.sqlstate(), "42000") << source;
      }
    }
  }
  EXPECT_EQ(rest_of_column(*open("BAUMART"), "ID"), ids_up_to(6));
  EXPECT_EQ(rest_of_column(*open("BAUMART"), "NAME"),
            (Row{"Fichte", "Eiche  ", Value(), "Föhre", "", "Fichte"}));
  EXPECT_EQ(rest_of_column(*open("STANDORT"), "ID"), (Row{10, 20}));
  EXPECT_THROW(open("NEU"), DatabaseError);
  EXPECT_THROW(open("#NEU"), DatabaseError);
}

TEST_P(SqlDatabaseContract, WordsOfStatementsInQuotesAreText) {
  const auto rows =
      open("SELECT 'DELETE; --' AS A, NAME FROM BAUMART WHERE NAME <> 'DROP' AND ID = 1");
  EXPECT_EQ(rows->value("A"), Value("DELETE; --"));
}

// --- Queries and statements

TEST_P(SqlDatabaseContract, AQueryAnswersItsOwnRowsAndColumns) {
  const auto rows = open("SELECT NAME, PREIS FROM BAUMART WHERE ID IN (2, 4) ORDER BY ID DESC");
  EXPECT_EQ(rows->column_count(), 2U);
  EXPECT_EQ(rest_of_column(*rows, "NAME"), (Row{"Föhre", "Eiche  "}));
  rows->move_first();
  EXPECT_EQ(rest_of_column(*rows, "PREIS"), stored({Decimal{"12.50"}, Decimal{"7.00"}}));
}

TEST_P(SqlDatabaseContract, OfColumnsWithOneNameTheFirstCounts) {
  const auto rows = open("SELECT ID, NAME AS ID FROM BAUMART WHERE ID = 4");
  EXPECT_EQ(rows->value("ID"), Value(4));
  EXPECT_EQ(rows->type("ID"), FieldType::kInteger);
  EXPECT_EQ(rows->column_name(1), dialect().column(kSpecies.columns[0]).name);
  EXPECT_EQ(rows->value(1), Value("Föhre"));
  EXPECT_EQ(rows->type(1), dialect().column(kSpecies.columns[1]).type);
}

TEST_P(SqlDatabaseContract, AQueryForNoRowsStillKnowsItsTypes) {
  const auto rows = open_forward_only("SELECT TOP 0 NAME, PREIS FROM BAUMART");
  EXPECT_TRUE(rows->eof());
  EXPECT_EQ(rows->type("NAME"), dialect().column(kSpecies.columns[1]).type);
  EXPECT_EQ(rows->type("PREIS"), dialect().column(kSpecies.columns[2]).type);
}

TEST_P(SqlDatabaseContract, RowsOfAQueryOnOneTableCanBeUpdated) {
  const auto rows = open_for_update("SELECT * FROM BAUMART WHERE NAME = 'Fichte' ORDER BY ID DESC");
  rows->set_value("NAME", "Tanne");
  rows->update();
  EXPECT_EQ(rest_of_column(*open_in_order("BAUMART"), "NAME"),
            (Row{"Fichte", "Eiche  ", Value(), "Föhre", "", "Tanne"}));
}

TEST_P(SqlDatabaseContract, RowsThatCannotBeToldApartRefuseToBeWritten) {
  const auto rows = open_for_update("SELECT COUNT(*) AS ANZAHL FROM BAUMART");
  EXPECT_EQ(rows->value("ANZAHL"), Value(6));
  EXPECT_THROW(rows->set_value("ANZAHL", 7), DatabaseError);
  EXPECT_THROW(rows->update(), DatabaseError);
}

TEST_P(SqlDatabaseContract, ExecuteAnswersTheRowsChangedByTheLastChangingStatement) {
  EXPECT_EQ(execute("UPDATE BAUMART SET PREIS = 1 WHERE ID > 2"), 4);
  EXPECT_EQ(execute("DELETE FROM BAUMART WHERE ID = 99"), 0);
  EXPECT_EQ(execute("INSERT INTO STANDORT (ID, ORT) VALUES (30, 'Solling')"), 1);
  EXPECT_EQ(execute("CREATE TABLE NEU (ID int)"), 0);
  EXPECT_EQ(execute("UPDATE BAUMART SET PREIS = 2\r\nDELETE FROM STANDORT"), 3);
  EXPECT_EQ(execute("DELETE FROM BAUMART WHERE ID = 1\r\nDROP TABLE NEU"), 1);
}

TEST_P(SqlDatabaseContract, TheStatementsOfABatchRunInOrder) {
  execute(
      "CREATE TABLE NEU (ID int)\r\n"
      "INSERT INTO NEU (ID) SELECT ID FROM BAUMART WHERE ID < 3\r\n"
      "INSERT INTO NEU (ID) VALUES (7)");
  EXPECT_EQ(rest_of_column(*open("SELECT ID FROM NEU ORDER BY ID"), "ID"), (Row{1, 2, 7}));
}

TEST_P(SqlDatabaseContract, StatementsBeforeTheFailingOneOfABatchStayDone) {
  EXPECT_THROW(execute("DELETE FROM BAUMART WHERE ID = 1\r\n"
                       "DELETE FROM NICHT_DA\r\n"
                       "DELETE FROM BAUMART WHERE ID = 2"),
               DatabaseError);
  EXPECT_EQ(rest_of_column(*open("SELECT ID FROM BAUMART ORDER BY ID"), "ID"),
            (Row{2, 3, 4, 5, 6}));
}

TEST_P(SqlDatabaseContract, ABatchThatCannotBeReadRunsNothing) {
  EXPECT_THROW(execute("DELETE FROM BAUMART\r\nDELETE FROM STANDORT WHERE ORT = 'Harz"),
               DatabaseError);
  EXPECT_EQ(rest_of_column(*open("BAUMART"), "ID"), ids_up_to(6));
  EXPECT_EQ(rest_of_column(*open("STANDORT"), "ID"), (Row{10, 20}));
}

TEST_P(SqlDatabaseContract, StatementsRunWhileRowSetsAreOpen) {
  const auto rows = open_forward_only("BAUMART");
  rows->move_next();
  execute("CREATE TABLE NEU (ID int)");
  for (; !rows->eof(); rows->move_next()) {
    execute("INSERT INTO NEU (ID) VALUES (" + rows->value("ID").text() + ")");
  }
  EXPECT_EQ(rest_of_column(*open("SELECT ID FROM NEU ORDER BY ID"), "ID"), (Row{2, 3, 4, 5, 6}));
  rows->move_first();
  execute("DROP TABLE NEU");
  EXPECT_EQ(rest_of_column(*rows, "ID"), ids_up_to(6));
}

TEST_P(SqlDatabaseContract, ATemporaryTableLivesAsLongAsItsConnection) {
  execute("CREATE TABLE #NEU (ID int)\r\nINSERT INTO #NEU (ID) VALUES (5)");
  EXPECT_EQ(rest_of_column(*open("#NEU"), "ID"), (Row{5}));
  EXPECT_EQ(rest_of_column(*open("SELECT B.ID FROM BAUMART B, #NEU N WHERE B.ID = N.ID"), "ID"),
            (Row{5}));
  const auto other = GetParam().connect({kSpecies});
  EXPECT_THROW(other->open(dialect().sql("#NEU"), CursorType::kStatic, LockType::kReadOnly),
               DatabaseError);
}

TEST_P(SqlDatabaseContract, LargeAndForeignTextsPassThroughStatements) {
  // As N'...' on the server: in a text without the N it keeps the letters of the database's code
  // page only, and no more is promised.
  const std::string text = large_text();
  connection_->execute("UPDATE WERTE SET W_NTEXT = " + dialect().literal(text) +
                       ", W_NVARCHAR = " + dialect().literal("O'Brien 🌲 Ω ł Ж") + " WHERE ID = 3");
  const auto rows = open("SELECT W_NVARCHAR, W_NTEXT FROM WERTE WHERE ID = 3");
  EXPECT_EQ(rows->value("W_NVARCHAR"), Value("O'Brien 🌲 Ω ł Ж"));
  EXPECT_TRUE(rows->value("W_NTEXT") == Value(text));
}

}  // namespace kestrova::test
