// An editor over fakes: database, suite and user write into one log, so that a test sees the order
// of all calls. The engine reads the lists of the same editor.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "editor/f_selection.h"
#include "tests/engine/engine_host.h"

namespace kestrova::test {

// A field of SELEKTION as the editor reads it: its row and the text under which it is offered.
struct OfferedField {
  SelektionRow row;
  std::string text = "";         // column DE
  std::string custom_text = "";  // column CUSTOM_DE, shown when it is not empty
  FieldType type = FieldType::kVarWChar;
};

// Fields of the relation "SONST", of each join kind and of the types that matter to the pickers.
// 10 Holzart (HA), 11 Anzahl, 12 Menge, 13 Datum, 14 Gesperrt, 15 Artname (INNER), 16 Gruppe
// (TRIPLE), 17 RINDEPROZENT, 18 DM/EURO, 19 Kreuz (unknown join kind).
const std::vector<OfferedField>& sonst_fields();

// Their value queries, for a field of the main table by its column, and for "Artname" and "Gruppe".
// The values are read under the access restriction of the main table.
std::string plain_query(std::string_view column);
extern const std::string kInnerValues;
extern const std::string kTripleValues;

// The queries that every start runs.
std::string fields_query(std::string_view parameter);
std::string models_query(std::string_view model_relation);
std::string model_state_query(std::string_view model_relation);  // no model selected
extern const std::string kChangeModelsQuery;

class EditorHost : public EngineHost {
 public:
  // Without arguments: fake services in the host's log, and German settings.
  explicit EditorHost(std::shared_ptr<FakeSuite> its_suite = nullptr,
                      std::shared_ptr<UserLocale> locale = nullptr);

  // InitForm with all answers that it needs: no models. The log is empty afterwards.
  void open(std::string relation);
  // "SONST" with sonst_fields(), their types known.
  void open_sonst();
  // Lets the suite offer these fields under a field-list key, then opens the relation. The fields
  // keep their numbers.
  void open_catalogue(std::string relation, std::string list_key, std::vector<ListEntry> fields);

  // Reads of the fields of a relation that is not in the catalogue.
  void answer_fields(std::string_view parameter, const std::vector<OfferedField>& fields);
  // The type of a column of a table, as the pickers and the value conversion ask for it.
  void know_column(const std::string& table, const std::string& column, FieldType type);
  // The values of a query, in one column.
  void answer_values(const std::string& sql, const std::vector<Value>& values);

  // The click of a user on an entry with this text. Fails the test when there is none.
  void pick(ComboBox& combo, std::string_view text);
  // Field, operator and value as a user chooses them, the value typed and confirmed.
  void compose(std::string_view field, std::string_view oper, std::string_view value);

  // The texts of the criteria list.
  std::vector<std::string> lines() const;
  std::vector<std::string> texts_of(const EntryList& list) const;
  // Puts lines into the list without an event; the selection stays as it is.
  void fill_lines(const std::vector<ListEntry>& lines);

  // Forgets the log so far.
  void forget() { connection->clear_log(); }

  std::shared_ptr<F_Selection> editor;
};

}  // namespace kestrova::test
