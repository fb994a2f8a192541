// Criteria strings of any bytes: a record falls into its parts without losing a byte, and what is
// translated is each record's own text, lexically closed, between the parentheses. Everything else
// ends in an error of the library.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "engine/comm_sel.h"
#include "engine/criterion.h"
#include "engine/from_where_builder.h"
#include "fuzz/selektion_connection.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/relation_codes.h"
#include "tests/attack/sql_closure.h"
#include "tests/support/fake_suite.h"

namespace kestrova::fuzz {
namespace {

constexpr std::string_view kOrLine = "=== ODER ===";

void require(bool holds) {
  if (!holds) std::abort();
}

// A catalogue relation, a restricted one, and one that reads SELEKTION.
struct Subject {
  std::string_view code;
  std::string_view mode;
};
constexpr Subject kSubjects[] = {{"1WL", ""}, {"1EXP", ""}, {"4PLN17", "4ARB"}};

// One host for all inputs.
struct CriteriaHost {
  test::CallLog log = test::make_call_log();
  std::shared_ptr<test::FakeSuite> suite = std::make_shared<test::FakeSuite>(log);
  KesVar context;

  CriteriaHost() {
    suite->answers().map_field_id = [](std::string_view, std::int32_t id) { return id; };
    suite->answers().field_formats = {{2, "0.00"}, {3, "0"}, {4, "dd.mm.yyyy"}};
    install_host(
        {.suite = suite,
         .user_interface = nullptr,
         .user_locale = std::make_shared<test::FakeLocale>(test::FakeLocale::Language::kGerman)});
    context.strOderLine = kOrLine;
    context.strDateOrder = "DMY";
    context.dbado = make_selektion_connection();
  }
};

CriteriaHost& the_host() {
  static CriteriaHost host;
  return host;
}

// Field, operator and value stand behind each other and end with the record; between the field and
// the operator there are only the blanks that trimming takes.
void check_parts(std::string_view record) {
  RecordParts parts;
  try {
    parts = split_record(record);
  } catch (const InvalidArgument&) {
    return;
  }
  require(parts.value.data() + parts.value.size() == record.data() + record.size());
  if (parts.op.empty()) {
    require(parts.value == record && parts.field.empty());
    return;
  }
  require(parts.op.data() + parts.op.size() == parts.value.data());
  const std::string_view before =
      record.substr(0, record.size() - parts.op.size() - parts.value.size());
  require(parts.field == text::trim(before));
}

// How the translation compares a field; "" for one whose column is joined and has no expression.
std::string expression(const Relation& relation, std::int16_t id) {
  if (relation.catalogue || relation.restricted) {
    const std::string_view key = relation.restricted ? relation.access_key : relation.table_key;
    return "EXPR(" + std::string(key) + "," + std::to_string(id) + ")";
  }
  const Field* const known = field(id);
  require(known != nullptr);
  return known->expression.empty() ? "LAGER." + std::string(known->name)
                                   : std::string(known->expression);
}

// The criterion that a record has to become, blanks outside quotes aside.
std::string expected_criterion(const Relation& relation, std::string_view record) {
  const RecordParts parts = split_record(record);
  const std::string compared = expression(relation, text::to_int16(parts.field));
  const std::string_view op = text::trim(parts.op);
  const std::string_view value = text::trim(parts.value);
  const std::string word = text::upper(value);
  if (word == "NULL" || word == "'NULL'") {
    return std::string(op == "=" ? "" : "NOT") + "(" + compared + " IS NULL OR RTRIM(LTRIM(" +
           compared + ")) = '')";
  }
  return compared + std::string(record.substr(static_cast<std::size_t>(op.data() - record.data())));
}

void check_text(const Relation& relation, std::string_view criteria, std::string_view translated) {
  require(translated.starts_with(" FROM "));
  std::vector<std::string_view> records = text::split(criteria, ';');
  if (records.back().empty()) records.pop_back();
  if (records.empty()) return;
  std::string expected;
  bool joins = false;
  for (const std::string_view record : records) {
    const bool is_or = record == kOrLine;
    require(is_or || !(test::is_open(record) || test::is_unprintable(record)));
    if (joins && !is_or) expected += "AND";
    expected += is_or ? "OR" : expected_criterion(relation, record);
    joins = !is_or;
  }
  // An " AND" at the end of all criteria is cut, even where it was written. Blanks between the
  // parts mean nothing, and lists of dates come without empty elements.
  expected = without_trailing_and(expected);
  constexpr std::string_view free = " ,";
  require(test::without_outer(translated, free)
              .ends_with("(" + test::without_outer(expected, free) + ")"));
}

void check_translation(const Subject& subject, std::string_view criteria) {
  CriteriaHost& host = the_host();
  host.log->clear();
  std::string text;
  try {
    text = Comm_Sel().D_SelectionFromStr(host.context, subject.code, subject.mode, criteria, "", 0);
  } catch (const Error&) {
    text.clear();  // refused, not translated
  }
  require(host.suite->live_services() == 0);
  if (!text.empty()) check_text(Relation(subject.code), criteria, text);
}

}  // namespace
}  // namespace kestrova::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace fuzz = kestrova::fuzz;
  // The first byte chooses the relation.
  if (size == 0) return 0;
  const std::string_view criteria(reinterpret_cast<const char*>(data) + 1, size - 1);
  for (const std::string_view record : kestrova::text::split(criteria, ';')) {
    fuzz::check_parts(record);
  }
  fuzz::check_translation(fuzz::kSubjects[data[0] % std::size(fuzz::kSubjects)], criteria);
  return 0;
}
