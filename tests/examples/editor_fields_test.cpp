// The field lists of the editor on the sample database: what every relation code offers, and that
// every field that it offers can be picked.
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/error.h"
#include "relations/relation_codes.h"
#include "tests/examples/editor_fixture.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

// A field as the golden table writes it: "703t".
struct ExpectedField {
  int id;
  char type;
};

// The operators of the groups of types.
const std::map<char, std::vector<std::string>> kOperators = {
    {'t', {"=", ">", "<", ">=", "<=", "<>", "LIKE", "IN"}},
    {'l', {"=", ">", "<", ">=", "<=", "<>", "LIKE"}},
    {'d', {"=", ">", "<", ">=", "<=", "<>", "IN"}},
    {'n', {"=", ">", "<", ">=", "<=", "<>", "IN"}},
    {'b', {"="}},
};

// What the golden table says, by relation code.
const std::map<std::string, std::vector<ExpectedField>>& expected_fields() {
  static const auto expected = [] {
    std::map<std::string, std::vector<ExpectedField>> result;
    for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/offered_fields.tsv")) {
      std::istringstream fields(row["fields"]);
      for (ExpectedField field{}; fields >> field.id >> field.type;) {
        result[row["code"]].push_back(field);
      }
    }
    return result;
  }();
  return expected;
}

std::vector<int> expected_ids(const std::string& code) {
  const auto found = expected_fields().find(code);
  std::vector<int> ids;
  if (found == expected_fields().end()) return ids;
  for (const ExpectedField& field : found->second) ids.push_back(field.id);
  return ids;
}

// What a module calls itself: no near miss of a code, and with the number of the person that the
// condition of a group or of work orders holds.
bool is_module(const std::string& code) {
  static const std::vector<std::string> modules = {"4PAG17",
                                                   "4ARB17",
                                                   "4PLN17",
                                                   "1VN",
                                                   "HIZ_SELEKTION_XYZ",
                                                   "VERTP123",
                                                   "VERTM5",
                                                   "ANGEBOT_BB1",
                                                   "RECHNUNG_BB_A",
                                                   "STAMMEINGABE_BB_HAB",
                                                   "BELEG_BB_2021",
                                                   "FAKTURA_BB2",
                                                   "LEISTUNGS_BB_MV",
                                                   "HIZBB_SELEKTION_RECHNUNG_MV"};
  static const std::vector<std::string> known = known_relation_codes();
  return std::count(known.begin(), known.end(), code) +
             std::count(modules.begin(), modules.end(), code) >
         0;
}

// A text stands between apostrophes as it is, so one with an apostrophe makes no SQL. An empty
// value makes no criterion.
bool can_be_compared(const std::string& value) {
  return !value.empty() && value.find('\'') == std::string::npos;
}

// What the host puts before a text that leaves the word FROM to it. The condition of planned work
// is one on the plan lines, which not every field brings along.
std::string host_from(const std::string& text) {
  if (text.starts_with(" FROM ")) return "";
  const std::string_view tables = std::string_view(text).substr(0, text.find(" WHERE "));
  const bool lacks_lines = text.find("ARBEITSAUFTRAG_PLANN.PERSONAL_ID") != std::string::npos &&
                           tables.find("ARBEITSAUFTRAG_PLANN") == std::string_view::npos;
  return lacks_lines ? " FROM ARBEITSAUFTRAG_PLANN," : " FROM";
}

using Texts = std::vector<std::string>;

bool is_fraction(const std::string& value) {
  return std::count(value.begin(), value.end(), '.') == 1 &&
         value.find_first_not_of("-.0123456789") == std::string::npos;
}

Texts fractions(const Texts& values) {
  Texts result;
  std::copy_if(values.begin(), values.end(), std::back_inserter(result), is_fraction);
  return result;
}

// The longest is the number with the most digits, if the values are numbers.
Texts first_last_and_longest(const Texts& values) {
  const auto longest =
      std::max_element(values.begin(), values.end(),
                       [](const auto& a, const auto& b) { return a.size() < b.size(); });
  return {values.front(), values.back(), *longest};
}

class EditorFields : public ForestEditor {
 protected:
  EditorFields() = default;
  explicit EditorFields(std::shared_ptr<Connection> database) : ForestEditor(std::move(database)) {}

  // What a list of the one criterion "field = value" selects.
  std::string selection_of(const std::string& field, const std::string& value) {
    editor().ListCriteria.clear();
    add_picked(field, "=", value);
    EXPECT_EQ(lines().size(), 1U) << field << " = " << value;
    std::string text;
    std::string formula;
    editor().btnOK2_Click(text, formula);
    return text;
  }

  // Puts values that the fields of all modules offer back as criteria: of catalogue relations each
  // must select a record, of others the selection must run. Returns how many.
  std::size_t select_by_values(bool of_catalogue, Texts (*some)(const Texts&)) {
    std::size_t tried = 0;
    for (const auto& [code, fields] : expected_fields()) {
      if (!is_module(code) || IsCatalogueRelation(code) != of_catalogue) continue;
      SCOPED_TRACE(code);
      open(code);
      for (const std::string& name : texts_of(editor().cboField)) {
        pick(editor().cboField, name);
        for (const std::string& value : some(texts_of(editor().cboValue))) {
          // The word for the second currency stays a word.
          if (value == "EURO" || (!can_be_compared(value) && name != "Rindeprozent")) continue;
          const std::string text = selection_of(name, value);
          std::int64_t records = -1;
          EXPECT_NO_THROW(records = number(db(), "SELECT COUNT(*)" + host_from(text) + text))
              << text;
          EXPECT_GE(records, of_catalogue ? 1 : 0) << text;
          ++tried;
        }
      }
    }
    return tried;
  }
};

// Little enough to try every number.
class EditorFieldsOfFewLots : public EditorFields {
 protected:
  EditorFieldsOfFewLots() : EditorFields(make_forest(40)) {}
};

TEST_F(EditorFields, AreThoseOfTheCatalogueForEveryRelationCode) {
  std::size_t offering = 0;
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/field_lists.tsv")) {
    SCOPED_TRACE("relation '" + row["code"] + "'");
    // No module has this code: it is where models of contracts are kept, with fields that SELEKTION
    // does not know.
    if (row["code"] == "2VABR") continue;
    ASSERT_NO_THROW(open(row["code"]));
    EXPECT_EQ(numbers_of(editor().cboField), expected_ids(row["code"]));
    EXPECT_EQ(editor().relation(), row["relation"]);
    if (editor().cboField.count() > 0) ++offering;
  }
  EXPECT_EQ(offering, expected_fields().size()) << "every row of the golden table is a code";
}

TEST_F(EditorFields, AreThereForEveryKnownRelation) {
  for (std::string code : known_relation_codes()) {
    if (code.ends_with('*')) code.back() = '7';
    SCOPED_TRACE(code);
    open(code);
    // The codes that only begin like the stock relations have no table.
    EXPECT_EQ(editor().cboField.count() > 0, code != "HIZBB_SELEKTION_7");
  }
}

TEST_F(EditorFields, OfferTheOperatorsOfTheirTypesAndValues) {
  for (const auto& [code, fields] : expected_fields()) {
    if (!is_module(code)) continue;
    SCOPED_TRACE(code);
    open(code);
    for (std::size_t i = 0; i < fields.size(); ++i) {
      SCOPED_TRACE(fields[i].id);
      ASSERT_NO_THROW(editor().cboField.pick(static_cast<int>(i)));
      EXPECT_EQ(texts_of(editor().cboOperator), kOperators.at(fields[i].type));
      EXPECT_EQ(editor().cboOperator.index(), 0);
      EXPECT_GT(editor().cboValue.count(), 0);
      EXPECT_TRUE(!IsCatalogueRelation(code) || editor().cboValue.count() <= 100);
    }
  }
}

// Whatever is picked from the list of a catalogue relation selects at least one of its records.
TEST_F(EditorFields, OfferValuesThatSelectRecords) {
  EXPECT_GE(select_by_values(true, first_last_and_longest), 1000U);
}
TEST_F(EditorFieldsOfFewLots, OfferFractionsOfWhichEachSelectsRecords) {
  EXPECT_GE(select_by_values(true, fractions), 1000U);
}

// Values of other relations may come from fixed lists, which hold more than the records do.
TEST_F(EditorFields, OfferValuesWhoseSelectionRuns) {
  EXPECT_GE(select_by_values(false, first_last_and_longest), 100U);
}
TEST_F(EditorFieldsOfFewLots, OfferFractionsWhoseSelectionRuns) {
  EXPECT_GE(select_by_values(false, fractions), 10U);
}

TEST_F(EditorFields, OfAGroupRelationWithoutItsPersonCannotBePicked) {
  for (const std::string code : {"4PAG", "4PAG "}) {
    open(code);
    EXPECT_THROW(editor().cboField.pick(0), DatabaseError) << code;
  }
  open("4PAGX");
  EXPECT_THROW(editor().cboField.pick(0), InvalidArgument);
}

// --- Which fields a relation leaves out

TEST_F(EditorFields, OfLotsNotSoldYetLeaveOutTheSale) {
  open("1LV");
  const std::vector<int> fields = numbers_of(editor().cboField);
  for (const int sale : {723, 724, 725}) {
    EXPECT_EQ(std::count(fields.begin(), fields.end(), sale), 0) << sale;
  }
  EXPECT_EQ(std::count(fields.begin(), fields.end(), 726), 1);
}

}  // namespace
}  // namespace kestrova::test
