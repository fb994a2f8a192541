// A host that drives selections: module state is empty until it starts one. Fields of "SONST" stand
// in SELEKTION (see sonst_fields), those of "NML" and "VERLOHN" are named by the suite.
#pragma once

#include <memory>
#include <string>

#include "interface/c_selection_init.h"
#include "tests/editor/run_host.h"

namespace kestrova::test {

struct FacadeHost : RunHost {
  explicit FacadeHost(FakeLocale::Language language = FakeLocale::Language::kGerman) {
    install_host({suite, user, std::make_shared<FakeLocale>(language)});
    selection_editor();
    editor = std::dynamic_pointer_cast<F_Selection>(module_state().theSelectionForm);
    suite->answers().texts[3441] = "ODER";
    for (const OfferedField& field : sonst_fields()) {
      know_lookups(field.row);
      const int id = field.row.id;
      connection->answer(
          "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(id),
          {{"ID_STRING", FieldType::kInteger}}, {{100 + id}});
      suite->answers().texts[100 + id] = field.custom_text.empty() ? field.text : field.custom_text;
    }
    answer_fields("SONST", sonst_fields());
    answer_values("SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"BU", "FI"});
    answer_values(plain_query("ANZAHL"), {1, 2});
    answer_values(plain_query("DATUM"), {});
    answer_models("SONST", {{3, "Alt"}, {4, "Neu"}});
    answer_criteria(3, "");
    answer_criteria(4, "10 = 'FI';=== ODER ===;11 >= 5;");
    offer("LOG", {{"Holzart", 5}, {"Datum", 6}, {"Menge", 7}});
    offer("VERLOHN", {{"Holzart", 5}, {"Datum", 6}, {"Menge", 7}});
    suite->answers().field_formats = {{6, "dd.mm.yyyy"}, {7, "0.00"}};
    answer_values(
        "SELECT DISTINCT EXPR(LOG,5) FROM <LOG,0,><LOG,5,R7> WHERE FHP_IMPORT.ERRORTEXT IS NULL "
        "AND FHP_IMPORT.ID_FHP_IMPORT IS NULL ORDER BY 1",
        {"BU", "FI"});
    for (const char* relation : {"NML", "VERLOHN", "HIZBB_SELEKTION_RECHNUNG"}) {
      answer_models(relation);
    }
    forget();
  }

  // Starts a selection. The two texts are what the host holds so far.
  void init(const std::string& relation = "SONST") {
    facade.c_Selection_Init(context, relation, "R7", held.text, held.formula);
    forget();
  }

  // What the user does in the dialog when it is shown next; the dialog closes afterwards.
  void expect_dialog(std::function<void()> action = [] {}) {
    user->expect_modal(editor->caption(), [action = std::move(action)](ModalDialog& dialog) {
      action();
      if (dialog.is_visible()) dialog.close_requested();
    });
  }

  void show(bool read_only = false) {
    facade.c_form_Selection(context, held.text, held.formula, read_only);
  }

  void show_nml(std::string_view subset, bool& ok, bool read_only = false) {
    facade.c_form_SelectionNML(context, held.text, held.formula, subset, ok, read_only);
  }

  SelectionFacade facade;
  Results held;
};

}  // namespace kestrova::test
