// A host for the engine: database, suite and user are fakes that write into one log, so that a test
// sees the order of all calls.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/comm_sel.h"
#include "interface/module_state.h"
#include "tests/support/fake_suite.h"
#include "tests/support/fake_user_interface.h"
#include "tests/support/recording_connection.h"

namespace kestrova::test {

// An editor that is nothing but its field list and its value list.
class FakeSelectionForm : public SelectionForm {
 public:
  const ComboBox& field_list() const override { return fields; }
  const ComboBox& value_list() const override { return values; }

  // Adds a field to the list, without selecting it.
  void add(std::string_view display_name, std::int32_t id);

  ComboBox fields{"cboField", ComboBox::Style::kDropDownList};
  ComboBox values{"cboValue", ComboBox::Style::kFreeText};
};

// A row of SELEKTION. What a test does not name is NULL.
struct SelektionRow {
  int id = 0;
  Value name = {};
  Value nickname = {};
  Value table = {};
  Value table2 = {};
  Value table3 = {};
  Value sqlselect = {};
  Value sqlvalue = {};
  Value condition = {};
  Value condition2 = {};
  Value format = {};
};

// The columns of SELEKTION, and a row of them.
const Columns& selektion_columns();
Row row_of(const SelektionRow& field);

// The column from which a field has its type.
struct TypedColumn {
  std::string table;
  std::string column;
};
TypedColumn column_of(const SelektionRow& field);

// How the log shows an open that is forward-only and read-only, as the engine's all are.
std::string opened(std::string_view sql);

// A record of a criteria string and the field it asks for.
using IndexedField = std::pair<int, SelektionRow>;

// The catalogue query of a criteria string.
std::string catalogue_query(const std::vector<IndexedField>& fields);

// Installs itself, with strVerType "R7", and removes itself again. The context holds the
// connection.
class EngineHost {
 public:
  explicit EngineHost(std::shared_ptr<FakeSuite> its_suite = nullptr);
  ~EngineHost();
  EngineHost(const EngineHost&) = delete;
  EngineHost& operator=(const EngineHost&) = delete;

  // Lets the field's type be looked up by its row of SELEKTION.
  void know_type(const SelektionRow& field, FieldType type);
  // Answers the catalogue query with these rows.
  void answer_catalogue(const std::vector<IndexedField>& fields,
                        const std::vector<SelektionRow>& rows);
  // Both, each field found.
  void know_fields(const std::vector<IndexedField>& fields, FieldType type);

  // A row set over SELEKTION as a caller holds it. Its opening is not in the log.
  std::unique_ptr<Recordset> open_selektion(const std::vector<SelektionRow>& rows);

  void expect_debug_message(std::string prompt);

  // All calls but the reads of single columns and the walk over the records.
  std::vector<std::string> calls() const;

  CallLog log = make_call_log();
  std::shared_ptr<RecordingConnection> connection;
  std::shared_ptr<FakeSuite> suite;
  std::shared_ptr<ScriptedUserInterface> user;
  std::shared_ptr<FakeSelectionForm> form = std::make_shared<FakeSelectionForm>();
  KesVar context;
  Comm_Sel engine;
};

}  // namespace kestrova::test
