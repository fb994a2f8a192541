// F_Selection: the selection editor ("Selektion") as a model over controls, without a window.
//
// A user builds the list of criteria, commits it, and manages models; a view shows the controls and
// passes the user's actions on. Every handler bears the name control + "_" + event and may also be
// called by the host. Handlers show nothing for incomplete input; they ignore the action. Errors of
// the database and of the suite's services reach the caller of the event.
//
// Needs an installed host (interface/module_state.h). One instance lives as long as the library; it
// is hidden, not destroyed, when the user closes it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "interface/selection_form.h"
#include "platform/kes_var.h"
#include "platform/selection_dialog.h"
#include "platform/suite.h"
#include "relations/relation_codes.h"

namespace kestrova {

// Where the selection of a contract is stored.
struct ContractSelection {
  std::string_view table;
  std::int32_t record;
};

// For relations that begin with "VERTP" or "VERTM", in either case: the table, and the record whose
// number the code carries behind its first five characters.
std::optional<ContractSelection> contract_selection(std::string_view relation);

class F_Selection;

// The one editor of the library, made on first use. Raises ObjectNotSet when another form has been
// put in its place.
F_Selection& selection_editor();

class F_Selection final : public SelectionForm, public SelectionDialog {
 public:
  F_Selection();

  // --- Start-up
  // ---------------------------------------------------------------------------------------

  // Binds the editor to a relation: fills the field list and the model list and loads a model, the
  // user's standard model before the first one. Call it before Run. The code is overwritten for one
  // relation that shares the models of another.
  void InitForm(const KesVar& context, std::string& relation_code);

  // Shows the dialog until the user closes it; the two texts then hold the results of the last
  // commit. strSubset is a criteria string to start from, for the relation "NML".
  void Run(const KesVar& context, std::string& strSelektion_Fr_Wh, std::string& strSelektionFormula,
           bool ReadOnly, std::string_view strSubset);

  // Reads the suite's options; called once, by the first InitForm.
  void Form_Load();
  // Hides a visible dialog and keeps it (Cancel True).
  void Form_Unload(bool& Cancel);

  // --- Criteria list
  // -----------------------------------------------------------------------------------

  // Enables the move buttons and loads the selected line into the pickers. A field or operator that
  // is no longer offered leaves its picker unselected.
  void SetListButtons();

  void btnNew_Click();
  void btnInsert_Click();
  void btnReplace_Click();
  void btnDelete_Click();
  void btnOr_Click();
  void btnPlus_Click();
  void btnMinus_Click();
  void btnFirst_Click();
  void btnPrev_Click();
  void btnNext_Click();
  void btnLast_Click();
  void cmdUp_Click();
  void cmdDown_Click();
  void ListCriteria_Click();
  void ListCriteria_DblClick();
  // Button 1 is the left one.
  void ListCriteria_MouseMove(int Button);
  // y is the height of the drop in the list, in the unit of ListCriteria.row_height.
  void ListCriteria_DragDrop(const Control& source, double x, double y);

  // --- Pickers
  // -------------------------------------------------------------------------------------------

  void cboField_Click();
  void cboOperator_Click();
  void cboValue_Click();
  // Sets KeyAscii to 0 for a key that the field does not take.
  void cboValue_KeyPress(int& KeyAscii);
  // The value box loses the focus; Cancel is never set.
  void cboValue_Validate(bool& Cancel);
  // Gives the focus to a control that is visible and enabled.
  void SetControlFocus(Control& control);
  // The key code if the key may stand in a number with the text so far, else 0.
  int OnlyNumbers(int KeyAscii, bool AllowDecimal, std::string_view Text) const;
  // The nickname with the variant tag in place of its leading "R", for the fields that every
  // invoice run has of its own; other nicknames upper-cased. Upper-cases the argument.
  std::string SetValueFormat(std::string& nickname) const;

  // --- Commit
  // --------------------------------------------------------------------------------------------

  // Turns the list into FROM/WHERE text and formula (module state) and hides the dialog. A list
  // that begins or ends with an OR line is refused with a message.
  void btnOk_Click();
  // The same, and copies both results.
  void btnOK2_Click(std::string& strSelektion_Fr_Wh, std::string& strSelektionFormula);
  void btnCancel_Click();

  // --- Models
  // ----------------------------------------------------------------------------------------------

  // Loads the selected model into the list. Raises NoCurrentRecord, and keeps the list, when the
  // model has been deleted meanwhile.
  void Model_DblClick();
  // Shows the properties of the selected model and enables the controls.
  void Model_Click();

  // Save the list as a model: into the selected one, or, with none selected and for "save as",
  // under a name that the user gives. A list that begins or ends with an OR line is refused with a
  // message. A text that another user has changed since it was loaded or saved here is overwritten
  // only when the user agrees.
  //
  // The actions on a model raise NoCurrentRecord when it has been deleted meanwhile, and
  // InvalidArgument when it is locked, as of now, and the user may not change locked models; saving
  // raises InvalidArgument for a name with an apostrophe or a control character. Nothing has
  // changed then, and the boxes show what the database holds.
  void btnSaveModelle_Click();
  void btnSaveModelleAs_Click();
  // Deletes the selected model, without asking. One that is gone already only leaves the list.
  void btnDeleteModelle_Click();
  // Make the selected model the standard of its class, lock it, or bind it to the user's access
  // level; unchecked, take that back. Locking and binding cost the model its standard mark. They do
  // nothing while the pointer is not the default: then the boxes are being set, not clicked.
  void chkStandard_Click();
  void Check1_Click();
  void chkAL_Click();

  // --- Criteria string
  // -----------------------------------------------------------------------------------

  // The list as a criteria string, one record per line; "" for an empty list. Raises
  // InvalidArgument for a line that would not be read back: a ";" in it, or an IN list that is cut.
  std::string GetWriteString(const KesVar& context) const;
  // Fills the list with the lines of a criteria string, read for a relation. A last record without
  // ";" counts too. Nothing is selected afterwards.
  void FillListCriteria(const KesVar& context, std::string_view criteria,
                        std::string_view relation);

  // The FROM/WHERE text of the lines as they are now, as a stored filter of them would be
  // translated: nothing is stored, and the results stay. "" for an empty list, for the relations
  // whose translation fills a temporary table, and for those whose stored filters have none.
  std::string counted_from_where() const;

  // --- What views and hosts read
  // -----------------------------------------------------------------------------

  const ComboBox& field_list() const override { return cboField; }
  const ComboBox& value_list() const override { return cboValue; }
  std::string caption() const override { return caption_; }
  bool is_visible() const override { return visible_; }
  void close_requested() override;
  const std::string& or_line() const override;
  RefusedLine refused_line() const override { return refused_; }

  // The relation code that the editor works with.
  const std::string& relation() const { return strRelation; }
  // The value part of the criterion being composed.
  const std::string& value_text() const { return strValue; }
  // 2 from the start of Run until its dialog has closed, else 0.
  std::int16_t start_state() const { return intStartState; }
  // The control that has the focus, or nullptr.
  const Control* focused() const { return focused_; }

 private:
  // What the suite's options allow.
  struct Options {
    bool b018 = false;
    bool b049 = false;
    bool b057 = false;
    bool change_models = false;
    std::string or_word;  // the localised word for OR
  };

  void connect_handlers();
  bool is_or_line(std::string_view line) const;
  // The relation code by which the lookups know the fields.
  const std::string& lookup_relation() const;
  // The dialog is shown for reading only: no handler changes the list or a model then.
  bool is_read_only_run() const { return blnReadOnly && intStartState != 0; }
  // The connection on which the selection was started. Raises ObjectNotSet when there is none.
  Connection& connection() const;

  // Criteria list
  void ShowFormula();
  bool IsCriterionComplete();
  bool is_date_entry(std::string_view value) const;
  // Why a value, and why a line whose value may stand, cannot be taken into the list.
  RefusedLine refused_value(std::string_view value) const;
  LineRefusal refusal_of(const std::string& line) const;
  // The line being composed as the list takes it; nothing, and refused_ says why, when it cannot.
  std::optional<ListEntry> composed_line();
  void AddOrLine();
  static constexpr std::int32_t kOrLineData = -2;
  static constexpr std::size_t kMostLines = std::numeric_limits<std::int16_t>::max();
  [[noreturn]] static void throw_too_many_lines();
  void insert_line(const ListEntry& line, int index);
  void select_new_line(int index);
  void move_selected_line(int target);
  void load_line(const std::string& line);

  // Pickers
  bool may_change_list_of_in() const;
  std::string converted_value();
  std::string converted_element();
  void FillOperatorList(ComboBox& combo, std::int16_t type);
  void fill_catalogue_values();
  // False when the field's join kind is unknown, which has been shown.
  bool fill_selektion_values();
  std::string value_query_tail(std::string_view main_table) const;
  std::int16_t selected_type();

  // Start-up
  void forget_relation();
  void bind_relation(std::string& relation_code);
  void fill_catalogue_fields(std::string& relation_code);
  void fill_selektion_fields();
  void fill_models();
  void select_start_model();
  std::string GetModelRelation() const;
  std::string GetStandardModelName();
  int standard_model_index();
  void load_start_selection(std::string_view subset);
  // Runs what loads a stored filter. Answers why its text cannot be shown, and the list is empty
  // then; nothing when it is loaded. Errors of the database and of the host pass.
  std::optional<std::string> why_not_loaded(const std::function<void()>& load);
  void show_modally();

  // Commit
  bool is_refused_by_or_line(std::int32_t flags);
  bool is_refused_by_unread_contract();
  void commit();
  std::string formula_text() const;

  // Loading and storing
  void LoadSelectionFromTable(std::string_view table, std::int32_t record);
  void LoadSelectionFromString(std::string_view criteria);
  void SaveSelectionToTable(std::string_view table, std::int32_t record);
  // A record as a line of the list, read for a relation. kOfferedField: it is shown under the name
  // of the field list, and "GETDATE()" stays. kModelField, kHostField: the names of fields that are
  // not offered are looked up, and a relative date shows as its bare offset; what the host hands in
  // is looked up with cursor and lock unspecified.
  enum NameSource { kOfferedField, kModelField, kHostField };
  ListEntry display_line(const KesVar& context, const std::string& relation,
                         std::string_view record, NameSource source) const;
  std::string field_name(const KesVar& context, const std::string& relation, const std::string& id,
                         NameSource source) const;
  ListEntry or_entry() const;
  void show_lines(const std::vector<ListEntry>& lines);
  std::string stored_record(const KesVar& context, const Relation& relation,
                            std::string_view line) const;
  // The list as a criteria string. kReadable: it will be read back as it is; kExecutable: nor can
  // what it holds leave its place in a statement, which is asked of all that the library stores.
  enum Check { kReadable, kExecutable };
  std::string criteria_string(const KesVar& context, Check check) const;

  // Models
  bool is_model_selected() const { return Model.index() != -1; }
  std::string selected_model() const;  // its MODELS.ID
  std::string stored_model() const;    // its MODELS.MODEL; raises NoCurrentRecord
  [[noreturn]] void throw_model_is_gone() const;
  std::string and_visible_models() const;  // " AND " and the condition on MODELS, or ""
  void SaveModel(bool overwrite);
  void check_all_fields_offered() const;
  bool overwrite_model(const std::string& criteria);
  bool may_overwrite() const;
  void refuse_locked_model() const;
  void insert_model(const std::string& name, const std::string& criteria);
  void change_model(const std::string& statement);
  void show_box(CheckBox& box, bool checked);
  void run_or_reset(CheckBox& box, const std::function<void()>& action);
  void SetStandardModel(bool clear);
  // What changing a property of the selected model needs afterwards.
  void show_changed_model();
  void RefreshModelState();
  void enable_controls();

  KesVar context_;
  std::string strRelation;   // the code under which the editor works
  std::string strParameter;  // the code as the caller gave it
  std::string strNickName;   // nickname of the chosen field
  std::string strValue;      // "()" is the empty IN list
  std::unique_ptr<Recordset> dbSelektion;
  std::shared_ptr<ModelSettings> model_settings_;  // made on first use
  // MODELS.MODEL, by MODELS.ID, as it was loaded or saved here last: what the user has seen.
  std::map<std::int32_t, std::string> seen_models_;
  // The contract's selection could not be loaded, and no other list has taken its place.
  bool contract_unread_ = false;
  Options options_;
  bool loaded_ = false;
  bool blnReadOnly = false;
  bool blnOracle = false;
  std::int16_t intStartState = 0;
  static constexpr const char* kCaption = "Selektion";
  std::string caption_ = kCaption;
  bool visible_ = false;
  const Control* focused_ = nullptr;
  RefusedLine refused_;  // of the last Insert, Replace or Plus
};

}  // namespace kestrova
