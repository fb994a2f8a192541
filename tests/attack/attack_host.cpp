#include "tests/attack/attack_host.h"

#include <chrono>
#include <optional>

#include "engine/comm_sel.h"
#include "engine/criterion.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"
#include "relations/date_expressions.h"
#include "relations/relation_codes.h"
#include "tests/attack/write_watch.h"
#include "tests/examples/forest_fixture.h"

namespace kestrova::test {
namespace {

constexpr std::string_view kOrLine = "=== ODER ===";
constexpr std::int64_t kLots = 40;
// A hostile text may join everything with everything.
constexpr std::size_t kMostRecords = 2000;
constexpr auto kMostTime = std::chrono::milliseconds(250);

// The text without the "(" + criteria + ")" that a comparison with Null makes of the expression.
std::optional<PeacefulField> taken_apart(std::string_view text) {
  constexpr std::string_view middle = " IS NULL OR RTRIM(LTRIM(";
  constexpr std::string_view end =
      ")) = '')"
      ")";
  const std::size_t at = text.rfind(middle);
  if (at == std::string_view::npos || !text.ends_with(end)) return std::nullopt;
  PeacefulField field;
  field.expression = text.substr(at + middle.size(), text.size() - end.size() - at - middle.size());
  const std::string criteria = "((" + field.expression;
  if (at < criteria.size() || text.substr(at - criteria.size(), criteria.size()) != criteria) {
    return std::nullopt;
  }
  field.before = text.substr(0, at - criteria.size() + 1);
  return field;
}

// The table whose records the relation has: the first one.
std::string main_table(std::string_view from_where) {
  constexpr std::string_view from = " FROM ";
  const std::string_view tables = from_where.substr(from.size());
  return std::string(tables.substr(0, tables.find_first_of(" ,")));
}

}  // namespace

std::vector<Subject> attacked_relations() {
  std::vector<Subject> result = {{"4ARB", "4ARB"}, {"4ARB17", "4ARB"}, {"4PLN17", "4ARB"},
                                 {"1VN", "WAREN"}, {"BBF", "WAREN"},   {"PERSONAL", "WAREN"}};
  for (std::string code : known_relation_codes()) {
    if (code.ends_with('*')) code.back() = '1';
    if (IsCatalogueRelation(code) && !GetRelationTableKey(code).empty())
      result.push_back({code, ""});
  }
  return result;
}

AttackHost::AttackHost() : user_(std::make_shared<PassiveUser>()) {
  WriteWatch::instance();
  context_ = forest_user();
  context_.dbado = make_forest(kLots);
  const auto locale = std::make_shared<SettingsUserLocale>("DE", "DMY");
  install_host({.suite = make_standalone_suite(context_.dbado, locale),
                .user_interface = user_,
                .user_locale = locale});
  db().set_time_limit(kMostTime);
}

AttackHost::~AttackHost() { install_host({}); }

void AttackHost::start(const Subject& subject, Level level) {
  subject_ = subject;
  level_ = level;
  context_.lngAccessLevel = level;
  context_.lngUserID = level;
  context_.strAccessLevelList = level == kHeadOffice
                                    ? "SELECT ID FROM ACCESS_LEVELS"
                                    : "SELECT ID FROM ACCESS_LEVELS WHERE ID IN (2)";
  std::string from_where;
  std::string formula;
  facade_.c_Selection_Init(context_, subject.code, "", from_where, formula);
  editor().ListCriteria.clear();
}

const std::vector<PeacefulField>& AttackHost::fields(Path path) {
  const auto [found, is_new] = fields_.try_emplace({{subject_.code + subject_.mode, level_}, path});
  if (is_new) found->second = find_fields(path);
  return found->second;
}

std::vector<PeacefulField> AttackHost::find_fields(Path path) {
  std::vector<PeacefulField> result;
  for (const ListEntry& entry : editor().field_list().entries()) {
    PeacefulField named;
    named.name = entry.text;
    named.id = entry.item_data;
    if (named.id <= 0) continue;
    auto field = taken_apart(from_where(path, named, {" = Null"}));
    if (!field) continue;
    field->name = named.name;
    field->id = named.id;
    const std::int16_t type = Comm_Sel().Get_TypeOfFieldFromID(
        context_, static_cast<std::int16_t>(named.id), subject_.code);
    field->is_date = IsDateFieldType(type);
    field->is_verbatim =
        path == kStoredString || (!field->is_date && FieldType{type} != FieldType::kBoolean &&
                                  special_field(named.name) == SpecialField::kNone);
    try {
      visible(path, *field);
    } catch (const DatabaseError&) {
      continue;
    }
    result.push_back(std::move(*field));
  }
  return result;
}

std::string AttackHost::stored(const PeacefulField& field,
                               const std::vector<std::string>& criteria) const {
  std::string text;
  for (const std::string& criterion : criteria) {
    text += criterion == kOrLine ? criterion : std::to_string(field.id) + criterion;
    text += ';';
  }
  return text;
}

void AttackHost::put_lines(const PeacefulField& field, const std::vector<std::string>& criteria) {
  ListBox& list = editor().ListCriteria;
  list.clear();
  for (const std::string& criterion : criteria) {
    const bool is_or = criterion == kOrLine;
    list.add(is_or ? criterion : field.name + criterion);
    list.set_item_data(list.new_index(), is_or ? -2 : field.id);
  }
}

std::string AttackHost::from_where(Path path, const PeacefulField& field,
                                   const std::vector<std::string>& criteria) {
  if (path == kStoredString) {
    return Comm_Sel().D_SelectionFromStr(context_, subject_.code, subject_.mode,
                                         stored(field, criteria), "", context_.lngAccessLevel);
  }
  put_lines(field, criteria);
  user_->messages = 0;
  std::string text;
  std::string formula;
  facade_.OK_Click(text, formula);
  if (user_->messages > 0) return {};
  // Where the library leaves the word to the caller.
  return text.starts_with(" FROM ") || text.empty() ? text : " FROM" + text;
}

const Ids& AttackHost::visible(Path path, const PeacefulField& field) {
  const std::string everything =
      IsCatalogueRelation(subject_.code)
          ? Comm_Sel().D_SelectionFromStr(context_, subject_.code, subject_.mode, "", "",
                                          context_.lngAccessLevel)
          : from_where(path, field, {" = Null", std::string(kOrLine), " <> Null"});
  const auto [found, is_new] = visible_.try_emplace({{subject_.code, level_}, everything});
  if (is_new) found->second = records(everything);
  return found->second;
}

Ids AttackHost::records(const std::string& from_where) {
  const std::string sql = "SELECT " + main_table(from_where) + ".ID" + from_where;
  try {
    Ids ids;
    const auto rows = db().open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
    for (std::size_t count = 0; count < kMostRecords && !rows->eof(); rows->move_next(), ++count) {
      ids.insert(rows->value(std::size_t{0}).text_or_empty());
    }
    return ids;
  } catch (const DatabaseError&) {
    // A module's connection might have run what this one would not open.
    try {
      db().execute(sql);
    } catch (const DatabaseError&) {
    }
    throw;
  }
}

std::uint64_t AttackHost::checksum() {
  std::uint64_t sum = 0xCBF29CE484222325U;
  const auto add = [&sum](std::string_view text) {
    for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    sum = (sum ^ 0x1FFU) * 0x100000001B3U;
  };
  for (const std::string& table : table_names()) {
    add(table);
    for (const auto& row : rows(db(), "SELECT * FROM " + table + " ORDER BY 1")) {
      for (const std::string& value : row) add(value);
    }
  }
  return sum;
}

}  // namespace kestrova::test
