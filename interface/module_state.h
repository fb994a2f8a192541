// What the library keeps for as long as it is loaded: the services that the host has installed, and
// the state that all its objects share. There is one of each per process, used on one thread.
#pragma once

#include <memory>
#include <string>

#include "interface/selection_form.h"
#include "platform/suite.h"
#include "platform/user_interface.h"
#include "platform/user_locale.h"

namespace kestrova {

// The services that only a host can give. A service that is absent raises ObjectNotSet when an
// operation needs it.
struct Host {
  std::shared_ptr<Suite> suite{};
  std::shared_ptr<UserInterface> user_interface{};
  std::shared_ptr<UserLocale> user_locale{};
};

// Installs the host's services and begins with empty module state. Call it before any other
// operation; a second call replaces the first.
void install_host(Host host);

struct ModuleState {
  // Copies of members of the caller context, filled when a selection starts.
  std::shared_ptr<Connection> dbado;
  std::string strLanguage;
  std::string strOderLine;
  std::string strNatWahrung;

  std::string strVerType;     // variant tag of the selection
  std::string strBlank;       // one blank, the grouping character of value lists
  std::string strDecimalSep;  // the user's decimal separator

  std::string strSelektion_Fr_Wh;   // FROM/WHERE text of the last commit
  std::string strSelektionFormula;  // its readable form
  std::string blnOK;                // whether the user confirmed, as the user's word for a boolean

  // Made on first use (see below) and kept.
  std::shared_ptr<SelectionForm> theSelectionForm;
  std::shared_ptr<LocTexts> theLocTexts;
};

ModuleState& module_state();

// The installed services. Raise ObjectNotSet when the host has not installed them.
Suite& suite();
UserInterface& user_interface();
const UserLocale& user_locale();

// The same for what works without one as well: nullptr when the host has not installed it.
UserInterface* installed_user_interface();

// The shared objects, made on first use. The editor needs no host to be made.
LocTexts& loc_texts();
SelectionForm& selection_form();

}  // namespace kestrova
