// An editor host for whole runs: binding to a relation, showing, committing.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <utility>

#include "tests/editor/editor_host.h"

namespace kestrova::test {

// The query for what is shown of a selected model.
inline std::string model_state_query(const std::string& model_relation, int model) {
  const std::string id = std::to_string(model);
  return "SELECT * FROM (SELECT (CASE WHEN EXISTS(SELECT ID FROM MODELS WHERE ID = '" + id +
         "' AND NICHT_ANDERBAR = 1) THEN 1 ELSE 0 END) AS val1,(CASE WHEN EXISTS(SELECT ID FROM "
         "MODELS WHERE RELATION = '" +
         model_relation +
         "' AND NICHT_ANDERBAR = 1 AND STANDARD = 1) THEN 1 ELSE 0 END) AS val2,(SELECT "
         "ID_ACCESS_LEVELS FROM MODELS WHERE ID = " +
         id +
         ") as val3,(SELECT NAME FROM ACCESS_LEVELS WHERE ID IN (SELECT ID_ACCESS_LEVELS FROM "
         "MODELS WHERE ID = " +
         id + ")) AS val4,(CASE WHEN EXISTS(SELECT ID FROM MODELS WHERE ID = " + id +
         " AND STANDARD = 1) THEN 1 ELSE 0 END) AS STANDARD) A";
}

struct RunHost : EditorHost {
  using EditorHost::EditorHost;

  // MODELS.ID and NAME of the models of a relation; no property is set.
  void answer_models(const std::string& model_relation,
                     const std::vector<std::pair<int, std::string>>& models = {}) {
    Rows rows;
    for (const auto& [id, name] : models) {
      rows.push_back({id, name});
      answer_state(model_state_query(model_relation, id));
    }
    connection->answer(models_query(model_relation), {{"ID", FieldType::kInteger}, {"NAME"}},
                       std::move(rows));
    answer_state(test::model_state_query(model_relation));
  }

  void answer_state(const std::string& sql, Row row = {0, 0, Value(), Value(), 0}) {
    connection->answer(sql,
                       {{"val1", FieldType::kInteger},
                        {"val2", FieldType::kInteger},
                        {"val3", FieldType::kInteger},
                        {"val4"},
                        {"STANDARD", FieldType::kInteger}},
                       {std::move(row)});
  }

  // The database says this from now on: the answer that was valid so far is passed over.
  void change_state(const std::string& sql, Row row) {
    answer_state(sql, std::move(row));
    connection->open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
    forget();
  }

  void answer_criteria(int model, Value criteria) {
    connection->answer("SELECT MODEL FROM MODELS WHERE ID = " + std::to_string(model), {{"MODEL"}},
                       {{std::move(criteria)}});
  }

  void answer_contract(const std::string& source, Value criteria) {
    connection->answer(source, {{"ID", FieldType::kInteger}, {"SELEKTION_VALUE"}},
                       {{12, std::move(criteria)}});
  }

  // The lookups of a field by its number.
  void know_lookups(const SelektionRow& row) {
    const std::string of_field = " FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(row.id);
    connection->answer("SELECT TABLE_NAME,TABLE_NAME_II,TABLE_NAME_III" + of_field,
                       {{"TABLE_NAME"}, {"TABLE_NAME_II"}, {"TABLE_NAME_III"}},
                       {{row.table, row.table2, row.table3}});
    connection->answer("SELECT CONDITION, CONDITIONII" + of_field, {{"CONDITION"}, {"CONDITIONII"}},
                       {{row.condition, row.condition2}});
    connection->answer("SELECT SQLSELECT" + of_field, {{"SQLSELECT"}}, {{row.sqlselect}});
    connection->answer("SELECT SQLVALUE" + of_field, {{"SQLVALUE"}}, {{row.sqlvalue}});
    connection->answer("SELECT NAME_OF_FIELD, TABLE_NAME, SQLVALUE" + of_field,
                       {{"NAME_OF_FIELD"}, {"TABLE_NAME"}, {"SQLVALUE"}},
                       {{row.name, row.table, row.sqlvalue}});
  }

  // Fields that the suite offers for a key, under the numbers by which criteria know them.
  void offer(const std::string& list_key, std::vector<ListEntry> fields) {
    suite->answers().field_lists[list_key] = std::move(fields);
    suite->answers().map_field_id = [](std::string_view, std::int32_t id) { return id; };
  }

  // InitForm. Returns the code as the caller sees it afterwards.
  std::string start(std::string code) {
    editor->InitForm(context, code);
    return code;
  }

  struct Results {
    std::string text = "old text";
    std::string formula = "old formula";
    friend bool operator==(const Results&, const Results&) = default;
    friend void PrintTo(const Results& results, std::ostream* out) {
      *out << "'" << results.text << "', formula '" << results.formula << "'";
    }
  };

  // Run; the user does the action and closes the window.
  Results run(
      const std::string& subset = "", bool read_only = false,
      const std::function<void()>& action = [] {}) {
    user->expect_modal(editor->caption(), [action](ModalDialog& dialog) {
      action();
      if (dialog.is_visible()) dialog.close_requested();
    });
    Results results;
    editor->Run(context, results.text, results.formula, read_only, subset);
    return results;
  }
};

}  // namespace kestrova::test
