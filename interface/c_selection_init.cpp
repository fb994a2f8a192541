#include "interface/c_selection_init.h"

#include "editor/f_selection.h"
#include "engine/criterion.h"
#include "interface/module_state.h"

namespace kestrova {

void SelectionFacade::c_Selection_Init(const KesVar& KesVar, std::string_view Parameter_dll,
                                       std::string_view StrVer_Type_dll,
                                       std::string& strSelektion_Fr_Wh_dll,
                                       std::string& strSelektionFormula_dll) {
  ModuleState& state = module_state();
  state.dbado = KesVar.dbado;
  state.strOderLine = KesVar.strOderLine;
  state.strLanguage = KesVar.strLanguage;
  state.strNatWahrung = KesVar.strNatWahrung;
  state.strVerType = StrVer_Type_dll;
  state.strBlank = " ";
  state.strDecimalSep = user_locale().decimal_separator();
  state.strSelektion_Fr_Wh = strSelektion_Fr_Wh_dll;
  state.strSelektionFormula = strSelektionFormula_dll;
  std::string relation(Parameter_dll);
  selection_editor().InitForm(KesVar, relation);
}

std::string SelectionFacade::c_Selection_Init_Parameter() { return selection_editor().relation(); }

void SelectionFacade::c_form_Selection(const KesVar& KesVar, std::string& strSelektion_Fr_Wh_dll,
                                       std::string& strSelektionFormula_dll, bool ReadOnly) {
  selection_editor().Run(KesVar, strSelektion_Fr_Wh_dll, strSelektionFormula_dll, ReadOnly, "");
}

void SelectionFacade::c_form_SelectionNML(const KesVar& KesVar, std::string& strSelektion_Fr_Wh_dll,
                                          std::string& strSelektionFormula_dll,
                                          std::string_view strSubset, bool& blnOK_dll,
                                          bool ReadOnly) {
  selection_editor().Run(KesVar, strSelektion_Fr_Wh_dll, strSelektionFormula_dll, ReadOnly,
                         strSubset);
  blnOK_dll = WasOKClick();
}

void SelectionFacade::c_Selection_Model_DblClick(std::string_view strModel_dll) {
  F_Selection& editor = selection_editor();
  editor.Model.set_text(strModel_dll);
  editor.Model_DblClick();
}

void SelectionFacade::OK_Click(std::string& strSelektion_Fr_Wh_dll,
                               std::string& strSelektionFormula_dll) {
  module_state().strSelektion_Fr_Wh = strSelektion_Fr_Wh_dll;
  module_state().strSelektionFormula = strSelektionFormula_dll;
  selection_editor().btnOK2_Click(strSelektion_Fr_Wh_dll, strSelektionFormula_dll);
}

std::string SelectionFacade::GetWriteString(const KesVar& KesVar) {
  return selection_editor().GetWriteString(KesVar);
}

void SelectionFacade::FillListCriteria(const KesVar& KesVar, std::string_view strSubset_dll,
                                       std::string_view Parameter) {
  selection_editor().FillListCriteria(KesVar, strSubset_dll, Parameter);
}

// The flag is kept as the user's word for a boolean.
bool SelectionFacade::WasOKClick() { return is_true_word(module_state().blnOK); }

}  // namespace kestrova
