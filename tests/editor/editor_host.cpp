#include "tests/editor/editor_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>

namespace kestrova::test {
namespace {

Columns offered_columns() {
  Columns columns = selektion_columns();
  columns.insert(columns.end(), {{"DE"}, {"CUSTOM_DE"}});
  return columns;
}

Row offered_row(const OfferedField& field) {
  Row row = row_of(field.row);
  row.insert(row.end(), {field.text, field.custom_text});
  return row;
}

SelektionRow plain(int id, std::string_view name, std::string_view nickname) {
  SelektionRow row;
  row.id = id;
  row.name = Value(std::string(name));
  row.nickname = Value(std::string(nickname));
  row.table = Value("LAGER");
  return row;
}

// A field of the table HOLZART, joined by the kind.
SelektionRow joined(int id, std::string_view nickname, std::string_view kind) {
  SelektionRow row = plain(id, "ID", nickname);
  row.table2 = Value("HOLZART");
  row.sqlselect = Value(std::string(kind));
  row.sqlvalue = Value("HOLZART.NAME");
  row.condition = Value("LAGER.ID_HA = HOLZART.ID");
  return row;
}

SelektionRow triple(int id, std::string_view nickname) {
  SelektionRow row = joined(id, nickname, "TRIPLE");
  row.table3 = Value("GRUPPE");
  row.condition2 = Value("HOLZART.ID_GR = GRUPPE.ID");
  return row;
}

// The values that the fields of sonst_fields() offer.
std::vector<std::pair<std::string, std::vector<Value>>> sonst_values() {
  return {
      {"SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"BU", "FI", "KI"}},
      {plain_query("ANZAHL"), {1, 2}},
      {plain_query("MENGE"), {"1,5", "2"}},
      {plain_query("DATUM"), {"01.02.2024"}},
      {plain_query("GESPERRT"), {"0", "1"}},
      {kInnerValues, {"Buche", "Fichte"}},
      {kTripleValues, {"Laub", "Nadel"}},
      {plain_query("RINDE"), {true, false}},
      {plain_query("EURO"), {true, false}},
  };
}

}  // namespace

const std::string kInnerValues =
    "SELECT DISTINCT HOLZART.NAME AS FVALUE FROM LAGER INNER JOIN HOLZART ON LAGER.ID_HA = "
    "HOLZART.ID WHERE  {LAGER,7} ORDER BY 1";
const std::string kTripleValues =
    "SELECT DISTINCT HOLZART.NAME AS FVALUE FROM LAGER INNER JOIN (HOLZART INNER JOIN GRUPPE ON "
    "HOLZART.ID_GR = GRUPPE.ID) ON LAGER.ID_HA = HOLZART.ID WHERE  {LAGER,7} ORDER BY 1";

const std::string kChangeModelsQuery =
    "SELECT ISNULL(NR_VAL,1) FROM (SELECT NUMBER_VALUE AS NR_VAL FROM OPTIONEN WHERE PROPERTY_ID = "
    "'CHANGE_MODELS') A";

const std::vector<OfferedField>& sonst_fields() {
  static const std::vector<OfferedField> fields = {
      {plain(10, "HA", "HA"), "Holzart"},
      {plain(11, "ANZAHL", "ANZAHL"), "Anzahl", "", FieldType::kInteger},
      {plain(12, "MENGE", "MENGE"), "fm", "Menge", FieldType::kDouble},
      {plain(13, "DATUM", "DATUM"), "Datum", "", FieldType::kDBTimeStamp},
      {plain(14, "GESPERRT", "GESPERRT"), "Gesperrt", "", FieldType::kBoolean},
      {joined(15, "HANAME", "INNER"), "Artname"},
      {triple(16, "GRNAME"), "Gruppe"},
      {plain(17, "RINDE", "RINDEPROZENT"), "RINDEPROZENT", "", FieldType::kBoolean},
      {plain(18, "EURO", "DM/EURO"), "DM/EURO", "", FieldType::kBoolean},
      {joined(19, "KREUZ", "CROSS"), "Kreuz"},
  };
  return fields;
}

std::string plain_query(std::string_view column) {
  return "SELECT DISTINCT LAGER." + std::string(column) + " FROM LAGER WHERE  {LAGER,7} ORDER BY 1";
}

std::string fields_query(std::string_view parameter) {
  return "SELECT SELEKTION.*,STRINGS.DE,STRINGS.CUSTOM_DE FROM SELEKTION LEFT JOIN STRINGS ON "
         "SELEKTION.ID_STRING = STRINGS.ID_STRING WHERE RTRIM(LTRIM(SELEKTION.PARAMETER)) = '" +
         std::string(parameter) + "' AND VISIBLE = 1 ORDER BY SELEKTION.ORDER_CUSTOM";
}

std::string models_query(std::string_view model_relation) {
  return "SELECT MODELS.ID,MODELS.NAME FROM MODELS LEFT JOIN ACCESS_LEVELS ON "
         "MODELS.ID_ACCESS_LEVELS = ACCESS_LEVELS.ID WHERE MODELS.RELATION = '" +
         std::string(model_relation) + "' AND  {MODELS,7} ORDER BY MODELS.NAME,MODELS.ID";
}

std::string model_state_query(std::string_view model_relation) {
  return "SELECT * FROM (SELECT 0 AS val1,(CASE WHEN EXISTS(SELECT ID FROM MODELS WHERE RELATION = "
         "'" +
         std::string(model_relation) +
         "' AND NICHT_ANDERBAR = 1 AND STANDARD = 1) THEN 1 ELSE 0 END) AS val2,NULL AS val3,NULL "
         "AS val4,0 AS STANDARD) A";
}

EditorHost::EditorHost(std::shared_ptr<FakeSuite> its_suite, std::shared_ptr<UserLocale> locale)
    : EngineHost(std::move(its_suite)) {
  if (!locale) locale = std::make_shared<FakeLocale>(FakeLocale::Language::kGerman);
  install_host({suite, user, std::move(locale)});
  editor = std::make_shared<F_Selection>();
  ModuleState& state = module_state();
  state.theSelectionForm = editor;
  state.dbado = connection;
  state.strLanguage = context.strLanguage;
  state.strOderLine = context.strOderLine;
  state.strNatWahrung = context.strNatWahrung;
  state.strVerType = "R7";
  state.strBlank = " ";
  state.strDecimalSep = ",";
  connection->answer_executes(1);  // the models are there
  connection->answer(kChangeModelsQuery, {{"A", FieldType::kInteger}}, {{1}});
}

void EditorHost::open(std::string relation) {
  for (const std::string& model_relation : {relation, std::string("VERTP"), std::string("VERTM")}) {
    connection->answer(models_query(model_relation), {{"ID", FieldType::kInteger}, {"NAME"}});
    connection->answer(model_state_query(model_relation),
                       {{"val1", FieldType::kInteger},
                        {"val2", FieldType::kInteger},
                        {"val3", FieldType::kInteger},
                        {"val4"},
                        {"STANDARD", FieldType::kInteger}},
                       {{0, 0, Value(), Value(), 0}});
  }
  editor->InitForm(context, relation);
  forget();
}

void EditorHost::open_sonst() {
  answer_fields("SONST", sonst_fields());
  for (const auto& [sql, values] : sonst_values()) answer_values(sql, values);
  open("SONST");
}

void EditorHost::open_catalogue(std::string relation, std::string list_key,
                                std::vector<ListEntry> fields) {
  suite->answers().field_lists[std::move(list_key)] = std::move(fields);
  suite->answers().map_field_id = [](std::string_view, std::int32_t field_id) { return field_id; };
  open(std::move(relation));
}

void EditorHost::answer_fields(std::string_view parameter,
                               const std::vector<OfferedField>& fields) {
  Rows rows;
  std::transform(fields.begin(), fields.end(), std::back_inserter(rows), offered_row);
  connection->answer(fields_query(parameter), offered_columns(), std::move(rows));
  for (const OfferedField& field : fields) {
    const SelektionRow& row = field.row;
    know_type(row, field.type);
    connection->answer(
        "SELECT NICKNAME_OF_FIELD FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(row.id),
        {{"NICKNAME_OF_FIELD"}}, {{row.nickname}});
  }
  // ApcboValue reads a type from the table itself.
  std::map<std::string, Columns> tables;
  for (const OfferedField& field : fields) {
    const auto [table, column] = column_of(field.row);
    tables[table].push_back({column, field.type});
  }
  for (auto& [table, columns] : tables) connection->table(table, std::move(columns));
}

void EditorHost::know_column(const std::string& table, const std::string& column, FieldType type) {
  connection->answer("SELECT TOP 0 " + column + " FROM " + table, {{column, type}});
  connection->table(table, {{column, type}});
}

void EditorHost::answer_values(const std::string& sql, const std::vector<Value>& values) {
  Rows rows;
  for (const Value& value : values) rows.push_back({value});
  connection->answer(sql, {{"FVALUE"}}, std::move(rows));
}

void EditorHost::pick(ComboBox& combo, std::string_view text) {
  const auto& entries = combo.entries();
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [text](const ListEntry& entry) { return entry.text == text; });
  if (found == entries.end()) {
    ADD_FAILURE() << combo.name() << " offers no " << text;
    return;
  }
  combo.set_index(static_cast<int>(found - entries.begin()));
}

void EditorHost::compose(std::string_view field, std::string_view oper, std::string_view value) {
  pick(editor->cboField, field);
  pick(editor->cboOperator, oper);
  editor->cboValue.set_text(value);
  bool cancel = false;
  editor->cboValue_Validate(cancel);
}

std::vector<std::string> EditorHost::lines() const { return texts_of(editor->ListCriteria); }

std::vector<std::string> EditorHost::texts_of(const EntryList& list) const {
  std::vector<std::string> texts;
  for (const ListEntry& entry : list.entries()) texts.push_back(entry.text);
  return texts;
}

void EditorHost::fill_lines(const std::vector<ListEntry>& lines) {
  for (const ListEntry& line : lines) {
    editor->ListCriteria.add(line.text);
    editor->ListCriteria.set_item_data(editor->ListCriteria.new_index(), line.item_data);
  }
}

}  // namespace kestrova::test
