// Get_Value_Sel: a stored value as the host shows it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/engine_host.h"
#include "tests/engine/failure_sweep.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ValueConversion : public ::testing::Test {
 protected:
  std::string shown(std::string_view field, const Value& value) {
    return host.engine.Get_Value_Sel(field, false, value, nullptr, "DM");
  }

  void use_english() {
    install_host(
        {host.suite, host.user, std::make_shared<FakeLocale>(FakeLocale::Language::kEnglish)});
  }

  EngineHost host;
};

// --- Which field ------------------------------------------------------------------------------

TEST_F(ValueConversion, AnEmptyNameAnswersNothingAndLeavesTheRowSetAlone) {
  for (const Value& value : {Value(), Value(1), Value("EURO")}) {
    EXPECT_EQ(host.engine.Get_Value_Sel("", true, value, nullptr, "DM"), "");
    EXPECT_EQ(host.engine.Get_Value_Sel("", false, value, nullptr, "DM"), "");
  }
  const auto rows = host.open_selektion({{.id = 7, .name = "", .nickname = ""}});
  EXPECT_EQ(host.engine.Get_Value_Sel("", true, 1, rows.get(), "DM"), "");
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_F(ValueConversion, TheBarkAllowanceIsAUnit) {
  for (const char* name : {"RINDEPROZENT", "rindeprozent ", "  RindeProzent  "}) {
    EXPECT_EQ(shown(name, 1), "'cm'") << name;
    EXPECT_EQ(shown(name, 0), "'%'") << name;
    EXPECT_EQ(shown(name, true), "'cm'") << name;
    EXPECT_EQ(shown(name, false), "'%'") << name;
    EXPECT_EQ(shown(name, Value()), "'%'") << name;
  }
}

TEST_F(ValueConversion, TheMoneyFieldIsAUnit) {
  for (const char* name : {"DM/EURO", "dm/euro ", " Dm/Euro"}) {
    EXPECT_EQ(shown(name, true), "DM") << name;
    EXPECT_EQ(shown(name, 1), "DM") << name;
    EXPECT_EQ(shown(name, false), "EURO") << name;
    EXPECT_EQ(shown(name, Value()), "EURO") << name;
  }
}

// A criterion stores "0" for the national currency; the way back is another one, on purpose.
TEST_F(ValueConversion, TheStoredFlagOfTheNationalCurrencyReadsBackAsEuro) {
  EXPECT_EQ(shown("DM/EURO", "0"), "EURO");
}

TEST_F(ValueConversion, TheNationalCurrencyIsTheCallers) {
  EXPECT_EQ(host.engine.Get_Value_Sel("DM/EURO", false, true, nullptr, "ÖS"), "ÖS");
  EXPECT_EQ(host.engine.Get_Value_Sel("DM/EURO", false, true, nullptr, ""), "");
  EXPECT_EQ(host.engine.Get_Value_Sel("DM/EURO", false, false, nullptr, "ÖS"), "EURO");
}

TEST_F(ValueConversion, ANeighbouringNameIsNoUnit) {
  for (const char* name : {"RINDE PROZENT", "RINDEPROZENT2", "DM", "EURO", "EURO/DM", "DM /EURO",
                           "'DM/EURO'", "\tDM/EURO", " "}) {
    EXPECT_EQ(shown(name, 1), "1") << name;
  }
}

// --- Values of unit fields --------------------------------------------------------------------

TEST_F(ValueConversion, AFlagIsReadFromWordsAndNumbers) {
  const Value set[] = {
      true,   1,      -1,    2,      0.5,    Decimal{"-0.01"}, std::int64_t{1} << 40,
      "1",    "-1",   " 1 ", "True", "TRUE", "true",           "Wahr",
      "WAHR", "Vrai", "vrai"};
  const Value clear[] = {false,   0,       0.0,      Decimal{"0.00"}, "0",    "0.0", " 0 ",
                         "False", "FALSE", "Falsch", "falsch",        "Faux", "FAUX"};
  for (const Value& value : set) {
    EXPECT_EQ(shown("RINDEPROZENT", value), "'cm'") << ::testing::PrintToString(value);
    EXPECT_EQ(shown("DM/EURO", value), "DM") << ::testing::PrintToString(value);
  }
  for (const Value& value : clear) {
    EXPECT_EQ(shown("RINDEPROZENT", value), "'%'") << ::testing::PrintToString(value);
    EXPECT_EQ(shown("DM/EURO", value), "EURO") << ::testing::PrintToString(value);
  }
}

TEST_F(ValueConversion, ATextThatIsNoFlagIsATypeMismatch) {
  for (const char* field : {"RINDEPROZENT", "DM/EURO"}) {
    for (const char* value :
         {"EURO", "DM", "cm", "%", "'cm'", "", " ", "x1", "Ja", "T", "T R U E", "Wahrr"}) {
      EXPECT_THROW(shown(field, value), TypeMismatch) << field << " " << value;
    }
    EXPECT_THROW(shown(field, Bytes{std::byte{1}}), TypeMismatch) << field;
  }
}

// --- Values of other fields -------------------------------------------------------------------

TEST_F(ValueConversion, AnyOtherValueComesAsText) {
  EXPECT_EQ(shown("MENGE", 12), "12");
  EXPECT_EQ(shown("MENGE", -3), "-3");
  EXPECT_EQ(shown("MENGE", std::int64_t{1} << 40), "1099511627776");
  EXPECT_EQ(shown("ORT", " Käufer O'Neill "), " Käufer O'Neill ");
  EXPECT_EQ(shown("ORT", ""), "");
  EXPECT_EQ(shown("ORT", "1.5"), "1.5");
  EXPECT_EQ(shown("ORT", "EURO"), "EURO");
}

TEST_F(ValueConversion, ItsNumbersAndBooleansFollowTheUsersLocale) {
  EXPECT_EQ(shown("MENGE", 1.5), "1,5");
  EXPECT_EQ(shown("MENGE", -1234.5), "-1234,5");
  EXPECT_EQ(shown("MENGE", 2.0), "2");
  EXPECT_EQ(shown("MENGE", Decimal{"12.25"}), "12,25");
  EXPECT_EQ(shown("FLAG", true), "Wahr");
  EXPECT_EQ(shown("FLAG", false), "Falsch");
  use_english();
  EXPECT_EQ(shown("MENGE", 1.5), "1.5");
  EXPECT_EQ(shown("MENGE", -1234.5), "-1234.5");
  EXPECT_EQ(shown("MENGE", Decimal{"12.25"}), "12.25");
  EXPECT_EQ(shown("FLAG", true), "True");
  EXPECT_EQ(shown("FLAG", false), "False");
}

TEST_F(ValueConversion, ADateComesWithItsTimeOnlyWhenItHasOne) {
  EXPECT_EQ(shown("BEGINN", DateTime{2024, 2, 29}), "29.02.2024");
  EXPECT_EQ(shown("BEGINN", DateTime{2024, 2, 29, 7, 5, 9}), "29.02.2024 07:05:09");
}

TEST_F(ValueConversion, NullIsAnInvalidUseInAnyOtherField) {
  EXPECT_THROW(shown("MENGE", Value()), InvalidUseOfNull);
  EXPECT_THROW(shown(" ", Value()), InvalidUseOfNull);
}

// --- The nickname search ----------------------------------------------------------------------

const SelektionRow kMenge = {.id = 7, .name = "MENGE", .nickname = "Menge"};
const SelektionRow kBark = {.id = 8, .name = "RINDEPROZENT", .nickname = "Rinde"};
const SelektionRow kMoney = {.id = 9, .name = "IN_EURO", .nickname = "DM/EURO"};

TEST_F(ValueConversion, ANicknameMovesTheRowSet) {
  const auto rows = host.open_selektion({kMenge, kBark, kMoney});
  rows->move_next();
  host.connection->clear_log();
  EXPECT_EQ(host.engine.Get_Value_Sel("Menge", true, 5, rows.get(), "DM"), "5");
  EXPECT_THAT(*host.log, ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = 'Menge'",
                                     "#1 value NAME_OF_FIELD"));
  ASSERT_FALSE(rows->eof());
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(7));
}

TEST_F(ValueConversion, TheNameThatDecidesIsTheGivenOne) {
  const auto rows = host.open_selektion({kMenge, kBark, kMoney});
  EXPECT_EQ(host.engine.Get_Value_Sel("Rinde", true, 1, rows.get(), "DM"), "1");
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(8));
  EXPECT_EQ(host.engine.Get_Value_Sel("DM/EURO", true, true, rows.get(), "DM"), "DM");
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(9));
  EXPECT_EQ(host.engine.Get_Value_Sel("RINDEPROZENT", true, 1, rows.get(), "DM"), "'cm'");
  EXPECT_TRUE(rows->eof());
}

TEST_F(ValueConversion, TheNicknameIsSearchedAsItStands) {
  const auto rows = host.open_selektion({kMenge});
  EXPECT_EQ(host.engine.Get_Value_Sel(" dm/euro ", true, 1, rows.get(), "DM"), "DM");
  EXPECT_THAT(*host.log, ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = ' dm/euro '"));
}

TEST_F(ValueConversion, ANicknameThatIsNotFoundLeavesTheRowSetAtItsEndAndStillConverts) {
  const auto rows = host.open_selektion({kMenge});
  EXPECT_EQ(host.engine.Get_Value_Sel("Nirgends", true, 5, rows.get(), "DM"), "5");
  EXPECT_THAT(*host.log, ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = 'Nirgends'"));
  EXPECT_TRUE(rows->eof());
}

TEST_F(ValueConversion, ANameThatIsNoNicknameLeavesTheRowSetAlone) {
  const auto rows = host.open_selektion({kMenge, kBark});
  EXPECT_EQ(host.engine.Get_Value_Sel("RINDEPROZENT", false, 1, rows.get(), "DM"), "'cm'");
  EXPECT_THAT(*host.log, IsEmpty());
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(7));
}

TEST_F(ValueConversion, TheSearchComesBeforeTheConversion) {
  const auto rows = host.open_selektion({kMenge, kMoney});
  EXPECT_THROW(host.engine.Get_Value_Sel("DM/EURO", true, "EURO", rows.get(), "DM"), TypeMismatch);
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(9));
}

TEST_F(ValueConversion, ANicknameWithAnApostropheIsABadCriterion) {
  const auto rows = host.open_selektion({kMenge});
  EXPECT_THROW(host.engine.Get_Value_Sel("O'rt", true, 5, rows.get(), "DM"), BadCriterion);
}

TEST_F(ValueConversion, AnAbsentRowSetIsAnErrorForANicknameOnly) {
  EXPECT_THROW(host.engine.Get_Value_Sel("Menge", true, 5, nullptr, "DM"), ObjectNotSet);
  EXPECT_EQ(host.engine.Get_Value_Sel("Menge", false, 5, nullptr, "DM"), "5");
}

// --- Failures ---------------------------------------------------------------------------------

struct Conversion : EngineHost {
  std::unique_ptr<Recordset> rows = open_selektion({kMenge, kMoney});
  std::string run() { return engine.Get_Value_Sel("DM/EURO", true, 1, rows.get(), "DM"); }
};

TEST(ValueConversionFailures, EveryDatabaseCall) {
  expect_every_database_failure_to_reach_the_caller<Conversion>();
}

}  // namespace
}  // namespace kestrova::test
