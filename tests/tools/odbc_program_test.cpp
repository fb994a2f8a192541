// The program over ODBC: what it answers on the sample database through a driver that speaks the
// server's dialect is what it answers on the file.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/text.h"
#include "tests/tools/program_fixture.h"

namespace kestrova::tool {
namespace {

class OdbcProgram : public Program {
 protected:
  static std::string source() {
    return "odbc:Driver=" KESTROVA_DIALECT_DRIVER ";Database=" + database() + ";PWD=geheim";
  }
  static ProgramResult over_odbc(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--db", source()});
    return run_program(arguments);
  }
};

struct OdbcCommand {
  const char* name;
  std::vector<std::string> arguments;
};

class OdbcAnswer : public OdbcProgram, public testing::WithParamInterface<OdbcCommand> {};

TEST_P(OdbcAnswer, IsTheAnswerOnTheFile) {
  const ProgramResult file = on_database(GetParam().arguments);
  const ProgramResult odbc = over_odbc(GetParam().arguments);
  ASSERT_NE(file.out, "");
  EXPECT_EQ(odbc.out, file.out);
  EXPECT_EQ(text::replace_all(odbc.err, "[Dialect]", ""), file.err);  // the driver's own mark
  EXPECT_EQ(odbc.exit_code, file.exit_code);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Commands, OdbcAnswer, testing::Values(
    OdbcCommand{"Relation", {"relations", "1VM"}},
    OdbcCommand{"Fields", {"fields", "1EXP"}},
    OdbcCommand{"TranslateCatalogue", {"translate", "1EXP", "703 = 'FI';713 >= GETDATE()-60;=== ODER ===;712 > 3.5;"}},
    OdbcCommand{"TranslateSelektion", {"translate", "1VM", "703 = 'FI';711 >= 40;"}},
    OdbcCommand{"TranslateModel", {"translate", "4ARB17", "--model", "Unerledigt"}},
    OdbcCommand{"TranslateRefused", {"translate", "1EXP", "703 = 7;712 > 'x';"}},
    OdbcCommand{"RunCatalogue", {"run", "1EXP", "703 = 'FI';=== ODER ===;703 IN ('BU','EI');712 > 3.5;"}},
    OdbcCommand{"RunSelektion", {"run", "1VM", "703 = 'FI';", "--limit", "3"}},
    OdbcCommand{"RunNothing", {"run", "1VM", "703 = 'ZZ';"}},
    OdbcCommand{"RunLabour", {"run", "LEISTUNGS_BB1", "", "--limit", "2"}},
    OdbcCommand{"RunJson", {"run", "1EXP", "712 > 3.5;", "--columns", "LOGS.*", "--json"}},
    OdbcCommand{"Describe", {"describe", "1VM", "703 = 'FI';711 >= 40;"}},
    OdbcCommand{"Models", {"models", "1VM", "--user", "2", "--user-level", "2"}},
    OdbcCommand{"Values", {"values", "1VM", "703"}},
    OdbcCommand{"Audit", {"audit"}},
    OdbcCommand{"AuditJson", {"audit", "--json"}},
    OdbcCommand{"Materialise", {"materialise", "ID", "--code", "1VM", "--criteria", "711 >= 40;"}}),
    [](const auto& test) { return std::string(test.param.name); });
// clang-format on

// Sessions write: models through statements, a contract through an updatable row set.
TEST_F(OdbcProgram, ASessionSavesWhatASessionOnTheFileSaves) {
  const auto saved_by = [](const std::string& path, const std::string& source) {
    std::filesystem::copy_file(database(), path, std::filesystem::copy_options::overwrite_existing);
    const ProgramResult model = run_program(
        {"--db", source, "session", "1VM"},
        "new\nfield Holzart\nvalue FI\ninsert\nor\nfield Menge (fm)\nop >\nvalue 3,5\ninsert\n"
        "save as Über ODBC\nstandard on\nok\n");
    EXPECT_EQ(model.exit_code, 0) << model.err;
    const ProgramResult contract =
        run_program({"--db", source, "session", "VERTP12"}, "fill 703 = 'FI';711 >= 30;\nok\n");
    EXPECT_EQ(contract.exit_code, 0) << contract.err;
    const auto connection = open_sqlite(path, {.read_only = true});
    const auto value = [&connection](const std::string& sql) {
      return connection->open(sql, CursorType::kForwardOnly, LockType::kReadOnly)->value(0).text();
    };
    return std::vector<std::string>{
        model.out, contract.out,
        value("SELECT MODEL + '/' + CAST(STANDARD AS varchar(1)) FROM MODELS WHERE NAME = 'Über "
              "ODBC'"),
        value("SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12")};
  };
  const std::string on_file = file("session_on_file.db");
  const std::string over_driver = file("session_over_driver.db");
  const auto expected = saved_by(on_file, on_file);
  EXPECT_EQ(expected[2], "703 = 'FI';=== ODER ===;712 > 3.5;/1");
  EXPECT_EQ(expected[3], "703 = 'FI';711 >= 30;");
  EXPECT_EQ(
      saved_by(over_driver, "odbc:Driver=" KESTROVA_DIALECT_DRIVER ";Database=" + over_driver),
      expected);
}

TEST_F(OdbcProgram, NamesADatabaseWithoutTheSuiteWithoutItsSecrets) {
  const std::string driver = "Driver=" KESTROVA_DIALECT_DRIVER;
  EXPECT_EQ(error_line(run_program({"--db", "odbc:" + driver + ";PWD={ge;heim}", "audit"})),
            "'" + driver +
                ";PWD=***' is no database of the suite, check --db: [Dialect]Invalid object name "
                "'SUITE_TABLE_KEYS'.");
}

TEST_F(OdbcProgram, TellsInJsonToo) {
  const ProgramResult result =
      run_program({"--db", "odbc:Driver=/no/driver.so;UID=anna;PWD=geheim", "audit", "--json"});
  EXPECT_EQ(result.exit_code, 1);
  const json error = json::parse(result.out).at("error");
  EXPECT_EQ(error.at("message").get<std::string>().substr(0, 65),
            "cannot connect to 'Driver=/no/driver.so;UID=anna;PWD=***': [unixO");
  EXPECT_EQ(result.out.find("geheim"), std::string::npos);
}

// Without the prefix it would be the name of a file, and be quoted.
TEST_F(OdbcProgram, AStringWithoutItsPrefixIsNotQuoted) {
  for (const std::string source : {"DSN=forest;PWD=geheim", "Server=tcp:x,1433;PWD=geheim"}) {
    const ProgramResult text = run_program({"--db", source, "audit"});
    EXPECT_EQ(text.exit_code, 2);
    EXPECT_EQ(error_line(text), "--db: a connection string begins with 'odbc:'");
    const ProgramResult document = run_program({"--db", source, "audit", "--json"});
    EXPECT_EQ((document.out + document.err).find("geheim"), std::string::npos);
  }
}

TEST_F(OdbcProgram, RefusesAStringThatCannotBeRead) {
  const ProgramResult result = run_program({"--db", "odbc:PWD={geheim", "audit"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(error_line(result), "--db: The connection string cannot be read: a \"}\" is missing.");
}

}  // namespace
}  // namespace kestrova::tool
