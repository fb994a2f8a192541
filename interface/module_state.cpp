#include "interface/module_state.h"

#include <utility>

#include "platform/error.h"

namespace kestrova {
namespace {

// The state goes before the host, at the end as well as when a host is replaced: objects of the
// state may use the services while they are released.
struct Module {
  Host host;
  ModuleState state;
};

Module& module() {
  static Module instance;
  return instance;
}

template <class T>
T& installed(const std::shared_ptr<T>& service, const char* name) {
  if (!service) throw ObjectNotSet(std::string("The host has installed no ") + name + ".");
  return *service;
}

}  // namespace

void install_host(Host new_host) {
  module().state = {};
  module().host = std::move(new_host);
}

ModuleState& module_state() { return module().state; }

Suite& suite() { return installed(module().host.suite, "suite services"); }
UserInterface& user_interface() {
  return installed(module().host.user_interface, "user interface");
}
const UserLocale& user_locale() { return installed(module().host.user_locale, "user locale"); }

UserInterface* installed_user_interface() { return module().host.user_interface.get(); }

LocTexts& loc_texts() {
  auto& texts = module_state().theLocTexts;
  if (!texts) texts = suite().loc_texts();
  return installed(texts, "text service");
}

SelectionForm& selection_form() {
  auto& form = module_state().theSelectionForm;
  if (!form) form = make_selection_form();
  return *form;
}

}  // namespace kestrova
