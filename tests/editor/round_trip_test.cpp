// A list that is stored, loaded and stored again gives the same text: a filter neither drifts nor
// loses a line, however often it is edited.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/error.h"
#include "tests/editor/round_trip_host.h"

namespace kestrova::test {
namespace {

struct Way {
  const char* name;
  // For each date order and language, 12 times; 100,800 in all.
  std::uint64_t lists;
  // A user composes one in so many; the others are put into the list in the same form.
  std::uint64_t composed_one_in;
  std::function<std::unique_ptr<RoundTripHost>(const UserSettings&)> make_host;
};

void PrintTo(const Way& way, std::ostream* out) { *out << way.name; }

template <class Host>
std::unique_ptr<RoundTripHost> make(const UserSettings& settings) {
  return std::make_unique<Host>(settings);
}

const Way kWays[] = {{"Contract", 250, 4, make<ContractRoundTrip>},
                     {"Model", 250, 4, make<ModelRoundTrip>},
                     {"Host", 1500, 20, make<HostRoundTrip>},
                     {"Catalogue", 6400, 40, make<CatalogueRoundTrip>}};
const std::string kDateOrders[] = {"DMY", "MDY", "YMD", "YDM"};
const char* const kLanguages[] = {"DE", "EN", "FR"};

constexpr std::uint64_t kFirstSeed = 20'260'000;

std::string stored_text(const std::vector<DrawnLine>& lines) {
  std::string text;
  for (const DrawnLine& line : lines) text += line.stored_record() + ";";
  return text;
}

std::vector<std::string> display_lines(const std::vector<DrawnLine>& lines) {
  std::vector<std::string> texts;
  for (const DrawnLine& line : lines) texts.push_back(line.display_line());
  return texts;
}

// Stores, loads and stores; the failure if a text is not the expected one.
testing::AssertionResult comes_back(RoundTripHost& host, const std::vector<DrawnLine>& lines) {
  const std::string expected = stored_text(lines);
  std::string first;
  std::string second;
  std::string error;
  try {
    first = host.store();
    host.load(first);
    second = host.store();
  } catch (const Error& raised) {
    error = raised.what();
  }
  if (first == expected && second == first) return testing::AssertionSuccess();
  auto failure = testing::AssertionFailure() << "\n  lines:";
  for (const DrawnLine& line : lines) failure << "\n    " << line.display_line();
  failure << "\n  loaded:";
  for (const std::string& line : host.lines()) failure << "\n    " << line;
  return failure << "\n  expected: " << expected << "\n  first:    " << first
                 << "\n  second:   " << second << "\n  error:    " << error;
}

class RoundTrip : public testing::TestWithParam<std::tuple<Way, std::string>> {};

TEST_P(RoundTrip, StoresTheSameTextAgain) {
  const auto& [way, order] = GetParam();
  for (const char* language : kLanguages) {
    const UserSettings settings{language, order};
    const auto host = way.make_host(settings);
    for (std::uint64_t seed = kFirstSeed; seed < kFirstSeed + way.lists; ++seed) {
      const std::vector<DrawnLine> lines = draw_list(seed, host->fields(), settings);
      if (seed % way.composed_one_in == 0) {
        host->compose_lines(lines);
        ASSERT_EQ(host->lines(), display_lines(lines)) << language << ", seed " << seed;
      } else {
        host->put_lines(lines);
      }
      ASSERT_TRUE(comes_back(*host, lines)) << language << ", seed " << seed;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, RoundTrip,
                         testing::Combine(testing::ValuesIn(kWays), testing::ValuesIn(kDateOrders)),
                         [](const auto& test) {
                           return std::string(std::get<0>(test.param).name) +
                                  std::get<1>(test.param);
                         });

// --- What by the rules of the format does not come back: the lines that are not drawn

const UserSettings kGerman = {"DE", "DMY"};

// The texts of a list of one line, stored, loaded and stored again.
using Texts = std::vector<std::string>;

Texts trip(RoundTripHost& host, const std::string& line) {
  host.editor->ListCriteria.clear();
  host.fill_lines({{line, 0}});
  Texts texts = {host.store()};
  host.load(texts[0]);
  texts.push_back(host.lines().at(0));
  texts.push_back(host.store());
  return texts;
}

// Gives a field another name, for the fields whose names decide.
void rename(RoundTripHost& host, const std::string& from, const std::string& to) {
  host.pick(host.editor->cboField, from);
  const int index = host.editor->cboField.index();
  host.editor->cboField.set_entry_text(index, to);
  host.suite->answers().texts[host.editor->cboField.item_data(index)] = to;
}

TEST(NotDrawn, ASemicolonEndsItsRecord) {
  CatalogueRoundTrip host(kGerman);
  host.fill_lines({{"Größe = 'a;b'", 5}});
  EXPECT_THROW(host.store(), InvalidArgument);
  EXPECT_THROW(host.load("5 = 'a;b';"), TypeMismatch);
}

TEST(NotDrawn, ASignInTheValueHidesTheOperator) {
  CatalogueRoundTrip host(kGerman);
  EXPECT_EQ(trip(host, "Größe > 'a=b'"), (Texts{"0 = b';", " = b'", "0 = b';"}));
  EXPECT_EQ(trip(host, "Größe < 'a>b'"), (Texts{"0 > b';", " > b'", "0 > b';"}));
  EXPECT_EQ(trip(host, "Größe LIKE 'a<b'"), (Texts{"0 < b';", " < b'", "0 < b';"}));
  EXPECT_EQ(trip(host, "Größe IN ('LIKE', 'b')"),
            (Texts{"0 LIKE ', 'b');", " LIKE ', 'b')", "0 LIKE ', 'b');"}));
}

TEST(NotDrawn, AFieldOfSelektionWhoseOperatorIsHiddenIsRefused) {
  HostRoundTrip host(kGerman);
  host.connection->answer("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 0", {{"ID_SELEKTION"}});
  EXPECT_THROW(trip(host, "Feld 202 > 'a=b'"), NoCurrentRecord);
}

TEST(NotDrawn, InInTheNameOfTheFieldHidesTheOperatorIn) {
  CatalogueRoundTrip host(kGerman);
  rename(host, "Größe", "LINIE");
  EXPECT_EQ(trip(host, "LINIE IN ('a')"),
            (Texts{"0 INIE IN ('a') ;", " INIE IN ('a') ", "0 INIE IN ('a') ;"}));
  EXPECT_EQ(trip(host, "LINIE = 'a'"), (Texts{"5 = 'a';", "LINIE = 'a'", "5 = 'a';"}));
}

TEST(NotDrawn, AParenthesisInAListGoesLastOrTheListIsRefused) {
  CatalogueRoundTrip host(kGerman);
  host.fill_lines({{"Größe IN ('a)', 'b (c) defgh')", 5}});
  EXPECT_THROW(host.store(), InvalidArgument);
  EXPECT_EQ(trip(host, "Größe IN ('bcdefghijklmnop', 'a)')"),
            (Texts{"5 IN ('bcdefghijklmnop', 'a)') ;", "Größe IN ('bcdefghijklmnop', 'a)') ",
                   "5 IN ('bcdefghijklmnop', 'a)') ;"}));
}

TEST(NotDrawn, SeveralRelativeDatesOfAListAreRefused) {
  CatalogueRoundTrip host(kGerman);
  host.fill_lines({{"Datum IN ('5', '-3')", 60}});
  EXPECT_THROW(host.store(), InvalidArgument);
}

TEST(NotDrawn, ALongRelativeDateOfAListIsRefused) {
  CatalogueRoundTrip host(kGerman);
  EXPECT_EQ(
      trip(host, "Datum IN ('999')"),
      (Texts{"60 IN (GETDATE()+999) ;", "Datum IN (GETDATE()+999) ", "60 IN (GETDATE()+999) ;"}));
  host.fill_lines({{"Datum IN ('1000')", 60}});
  EXPECT_THROW(host.store(), InvalidArgument);
}

TEST(NotDrawn, ACommaInAListOfDatesSeparatesThem) {
  CatalogueRoundTrip host(kGerman);
  host.fill_lines({{"Datum IN ('1,5')", 60}});
  EXPECT_THROW(host.store(), InvalidArgument) << "two relative dates";
}

TEST(NotDrawn, ABooleanIsTrueOrFalseOrNull) {
  HostRoundTrip host(kGerman);
  EXPECT_EQ(trip(host, "Feld 11 = Wahr"), (Texts{"21 = 1;", "Feld 11 = Wahr", "21 = 1;"}));
  EXPECT_EQ(trip(host, "Feld 11 = Null"), (Texts{"21 = Null;", "Feld 11 = Null", "21 = Null;"}));
  rename(host, "Feld 11", "Status");
  EXPECT_EQ(trip(host, "Status = Wahr"), (Texts{"21 = 'Wahr';", "Status = Wahr", "21 = 'Wahr';"}));
}

TEST(NotDrawn, AUnitIsStoredAsAFlag) {
  HostRoundTrip host(kGerman);
  rename(host, "Feld 11", "RINDEPROZENT");
  EXPECT_EQ(trip(host, "RINDEPROZENT = cm"), (Texts{"21 = 1;", "RINDEPROZENT = cm", "21 = 1;"}));
  // As the value list offers it.
  EXPECT_EQ(trip(host, "RINDEPROZENT = 'cm'"), (Texts{"21 = 1;", "RINDEPROZENT = cm", "21 = 1;"}));
  EXPECT_EQ(trip(host, "RINDEPROZENT = '%'"), (Texts{"21 = 0;", "RINDEPROZENT = 0", "21 = 0;"}));
  rename(host, "RINDEPROZENT", "DM/EURO");
  EXPECT_EQ(trip(host, "DM/EURO = DM").front(), "21 = 0;");
  EXPECT_EQ(trip(host, "DM/EURO = EURO"), (Texts{"21 = EURO;", "DM/EURO = EURO", "21 = EURO;"}));
}

TEST(NotDrawn, NullAmongDatesIsRefused) {
  CatalogueRoundTrip host(kGerman);
  host.fill_lines({{"Datum IN ('Null')", 60}});
  EXPECT_THROW(host.store(), TypeMismatch);
}

TEST(NotDrawn, TheBareWordNullInCapitalsIsNoDate) {
  CatalogueRoundTrip host(kGerman);
  host.load("60 = NULL;");
  EXPECT_EQ(host.lines(), Texts{"Datum = NULL"});
  EXPECT_THROW(host.store(), TypeMismatch);
}

// --- The predicates that keep such lines from being drawn

DrawnLine line_of(const DrawnField& field, const std::string& op, std::vector<DrawnValue> values) {
  return {&field, op, std::move(values)};
}

TEST(DrawnLists, APredicateHoldsForItsLinesOnly) {
  const DrawnField text = {5, "Größe", FieldType::kVarWChar, {}};
  const DrawnField date = {60, "Datum", FieldType::kDate, {}};
  const auto word = [](const std::string& typed) {
    return DrawnValue{typed, "'" + typed + "'", "'" + typed + "'"};
  };
  const auto days = [](const std::string& typed) {
    return DrawnValue{typed, "'" + typed + "'", "GETDATE()+" + typed};
  };

  EXPECT_TRUE(ends_its_record(line_of(text, "=", {word("a;b")})));
  EXPECT_FALSE(ends_its_record(line_of(text, "=", {word("a,b")})));

  for (const auto& [op, value, hidden] :
       {std::tuple{"=", "=<>LIKE", false}, std::tuple{">=", "=<>LIKE", false},
        std::tuple{"<=", "=<>LIKE", false}, std::tuple{"<>", "a=b", true},
        std::tuple{"<>", "a>b<LIKE", false}, std::tuple{">", "a=b", true},
        std::tuple{">", "a>b<LIKE", false}, std::tuple{"<", "a=b", true},
        std::tuple{"<", "a>b", true}, std::tuple{"<", "a<bLIKE", false},
        std::tuple{"LIKE", "a<b", true}, std::tuple{"LIKE", "LIKE IN", false},
        std::tuple{"IN", "LIKE", true}, std::tuple{"IN", "IN", false}}) {
    EXPECT_EQ(hides_its_operator(line_of(text, op, {word(value)})), hidden) << op << " " << value;
  }

  EXPECT_TRUE(cuts_its_list(line_of(text, "IN", {word("a)"), word("bcdefghijklmnop")})));
  EXPECT_FALSE(cuts_its_list(line_of(text, "IN", {word("a"), word("bcdefghijklmnop)")})));
  EXPECT_FALSE(cuts_its_list(line_of(date, "IN", {days("999")})));
  EXPECT_TRUE(cuts_its_list(line_of(date, "IN", {days("1000")})));
  EXPECT_TRUE(cuts_its_list(line_of(date, "IN", {days("5"), days("3")})));
  EXPECT_FALSE(cuts_its_list(line_of(date, "=", {days("1000")})));

  EXPECT_TRUE(lists_null_as_a_date(line_of(date, "IN", {{"null", "'null'", "Null"}})));
  EXPECT_FALSE(lists_null_as_a_date(line_of(date, "=", {{"null", "'null'", "Null"}})));
}

// Every type with every operator that the editor offers for it, and every kind of value.
TEST(DrawnLists, HoldEveryTypeWithEveryOperator) {
  ModelRoundTrip host(kGerman);
  std::set<std::string> drawn;
  for (std::uint64_t seed = kFirstSeed; seed < kFirstSeed + 1500; ++seed) {
    for (const DrawnLine& line : draw_list(seed, host.fields(), kGerman)) {
      drawn.insert(line.is_or() ? std::string(kOrText) : line.field->name + " " + line.op);
    }
  }
  std::set<std::string> offered = {std::string(kOrText)};
  for (const DrawnField& field : host.fields()) {
    for (const std::string& op : field.operators) offered.insert(field.name + " " + op);
  }
  EXPECT_EQ(drawn, offered);
}

}  // namespace
}  // namespace kestrova::test
