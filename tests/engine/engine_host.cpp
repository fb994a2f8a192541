#include "tests/engine/engine_host.h"

#include <algorithm>
#include <iterator>

namespace kestrova::test {

const Columns& selektion_columns() {
  static const Columns columns = {{"ID_SELEKTION", FieldType::kInteger},
                                  {"NAME_OF_FIELD"},
                                  {"NICKNAME_OF_FIELD"},
                                  {"TABLE_NAME"},
                                  {"TABLE_NAME_II"},
                                  {"TABLE_NAME_III"},
                                  {"SQLSELECT"},
                                  {"SQLVALUE"},
                                  {"CONDITION"},
                                  {"CONDITIONII"},
                                  {"FORMAT"}};
  return columns;
}

Row row_of(const SelektionRow& field) {
  return {field.id,        field.name,       field.nickname,  field.table,
          field.table2,    field.table3,     field.sqlselect, field.sqlvalue,
          field.condition, field.condition2, field.format};
}

TypedColumn column_of(const SelektionRow& field) {
  const bool joined = field.sqlselect == Value("INNER") || field.sqlselect == Value("TRIPLE");
  if (!joined) return {field.table.text(), field.name.text()};
  const std::string expression = field.sqlvalue.text();
  const std::size_t point = expression.find('.');
  return {field.table2.text(),
          point == std::string::npos ? expression : expression.substr(point + 1)};
}

void FakeSelectionForm::add(std::string_view display_name, std::int32_t id) {
  fields.add(display_name);
  fields.set_item_data(fields.new_index(), id);
}

std::string opened(std::string_view sql) {
  return "open " + std::string(sql) + " [forward-only, read-only]";
}

std::string catalogue_query(const std::vector<IndexedField>& fields) {
  std::string query;
  for (const auto& [index, field] : fields) {
    if (!query.empty()) query += " UNION ";
    query += "SELECT " + std::to_string(index) +
             " AS XXX,* FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(field.id);
  }
  return query + " ORDER BY XXX";
}

EngineHost::EngineHost(std::shared_ptr<FakeSuite> its_suite)
    : connection(std::make_shared<RecordingConnection>(ConnectionKind::kSqlServer, log)),
      suite(its_suite ? std::move(its_suite) : std::make_shared<FakeSuite>(log)),
      user(std::make_shared<ScriptedUserInterface>(log)) {
  install_host({suite, user, std::make_shared<FakeLocale>(FakeLocale::Language::kGerman)});
  module_state().theSelectionForm = form;
  module_state().strVerType = "R7";
  context.dbado = connection;
  context.strLanguage = "DE";
  context.strOderLine = "=== ODER ===";
  context.strNatWahrung = "DM";
  context.strDateOrder = "DMY";
  context.lngAccessLevel = 7;
  context.strAccessLevelList = "1,2";
}

EngineHost::~EngineHost() { install_host({}); }

void EngineHost::know_type(const SelektionRow& field, FieldType type) {
  connection->answer("SELECT * FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(field.id),
                     selektion_columns(), {row_of(field)});
  const auto [table, column] = column_of(field);
  connection->answer("SELECT TOP 0 " + column + " FROM " + table, {{column, type}});
}

void EngineHost::answer_catalogue(const std::vector<IndexedField>& fields,
                                  const std::vector<SelektionRow>& rows) {
  Columns columns = {{"XXX", FieldType::kInteger}};
  std::copy(selektion_columns().begin(), selektion_columns().end(), std::back_inserter(columns));
  Rows answer;
  for (const SelektionRow& field : rows) {
    answer.push_back(row_of(field));
    answer.back().insert(answer.back().begin(), Value(static_cast<int>(answer.size())));
  }
  connection->answer(catalogue_query(fields), std::move(columns), std::move(answer));
}

void EngineHost::know_fields(const std::vector<IndexedField>& fields, FieldType type) {
  std::vector<SelektionRow> rows;
  for (const auto& [index, field] : fields) {
    know_type(field, type);
    rows.push_back(field);
  }
  answer_catalogue(fields, rows);
}

std::unique_ptr<Recordset> EngineHost::open_selektion(const std::vector<SelektionRow>& rows) {
  Rows answer;
  std::transform(rows.begin(), rows.end(), std::back_inserter(answer), row_of);
  connection->table("SELEKTION", selektion_columns(), std::move(answer));
  auto opened_rows = connection->open("SELEKTION", CursorType::kStatic, LockType::kReadOnly);
  connection->clear_log();
  return opened_rows;
}

void EngineHost::expect_debug_message(std::string prompt) {
  user->expect_message({std::move(prompt), 16, "Kestrova", "", 0});
}

std::vector<std::string> EngineHost::calls() const {
  std::vector<std::string> result;
  std::copy_if(log->begin(), log->end(), std::back_inserter(result), [](const std::string& line) {
    return !line.starts_with("TokenCount(") && !line.starts_with("TokenAt(") &&
           (!line.starts_with('#') || line.find(" value ") == std::string::npos);
  });
  return result;
}

}  // namespace kestrova::test
