// The facade through which a host drives a selection: start it, show the editor or fill and commit
// its list without a window, and fetch the results.
//
// The class holds no state: everything lives in the module state and in the one editor, which the
// first method that needs it makes. Begin with c_Selection_Init, which every selection starts with
// and which may be called again for the next one; before it, there is no relation, no OR line and
// no connection: the dialog raises ObjectNotSet, and OK_Click commits an empty list. The host must
// be installed (interface/module_state.h).
//
// Everything happens within the call, on the host's user-interface thread; the editor is modal.
// Errors of the database and of the suite's services reach the host as errors of the method.
#pragma once

#include <string>
#include <string_view>

#include "platform/kes_var.h"

namespace kestrova {

class SelectionFacade {
 public:
  // Starts a selection: Parameter_dll is the relation code, StrVer_Type_dll the variant tag, and
  // the two texts become the results until the next commit. Fills the field list and the model list
  // and loads a model, the user's standard model before the first one. Nothing is shown.
  void c_Selection_Init(const KesVar& KesVar, std::string_view Parameter_dll,
                        std::string_view StrVer_Type_dll, std::string& strSelektion_Fr_Wh_dll,
                        std::string& strSelektionFormula_dll);

  // The relation code that the editor works with: several codes share one. "" before the start.
  std::string c_Selection_Init_Parameter();

  // Shows the editor until the user closes it. The two texts come back as the last commit left
  // them: the FROM/WHERE text to append to a SELECT, and its readable form. ReadOnly: the user may
  // look but commit nothing; lines can still be moved.
  void c_form_Selection(const KesVar& KesVar, std::string& strSelektion_Fr_Wh_dll,
                        std::string& strSelektionFormula_dll, bool ReadOnly);

  // The same, with a criteria string to start from (for the relation "NML"); blnOK_dll tells
  // whether the user confirmed.
  void c_form_SelectionNML(const KesVar& KesVar, std::string& strSelektion_Fr_Wh_dll,
                           std::string& strSelektionFormula_dll, std::string_view strSubset,
                           bool& blnOK_dll, bool ReadOnly);

  // Loads the model with that name. Raises InvalidArgument when the relation has no such model.
  void c_Selection_Model_DblClick(std::string_view strModel_dll);

  // Commits the list without a window. A list that begins or ends with an OR line is refused with a
  // message; both texts then come back as they were given.
  void OK_Click(std::string& strSelektion_Fr_Wh_dll, std::string& strSelektionFormula_dll);

  // The editor's list as a criteria string, for the host to store; "" for an empty list.
  std::string GetWriteString(const KesVar& KesVar);

  // Replaces the editor's list by the criteria string, read for the relation Parameter. Raises the
  // errors of the lookups for a field that does not exist; the list then stays as it was.
  void FillListCriteria(const KesVar& KesVar, std::string_view strSubset_dll,
                        std::string_view Parameter);

  // Whether the last run of the dialog, or an OK_Click since, was committed. Starting a selection
  // and an OK_Click that is refused leave the answer as it was: without a window, compare the
  // texts.
  bool WasOKClick();
};

// The system's own name of the class; a method of that name cannot be in a class of that name.
using c_Selection_Init = SelectionFacade;

}  // namespace kestrova
