#include "interface/module_state.h"

#include <utility>

#include "platform/error.h"

namespace kestrova {
namespace {

Host& host() {
  static Host instance;
  return instance;
}

template <class T>
T& installed(const std::shared_ptr<T>& service, const char* name) {
  if (!service) throw ObjectNotSet(std::string("The host has installed no ") + name + ".");
  return *service;
}

}  // namespace

void install_host(Host new_host) {
  host() = std::move(new_host);
  module_state() = {};
}

ModuleState& module_state() {
  static ModuleState instance;
  return instance;
}

Suite& suite() { return installed(host().suite, "suite services"); }
UserInterface& user_interface() { return installed(host().user_interface, "user interface"); }
const UserLocale& user_locale() { return installed(host().user_locale, "user locale"); }

LocTexts& loc_texts() {
  auto& texts = module_state().theLocTexts;
  if (!texts) texts = suite().loc_texts();
  return installed(texts, "text service");
}

SelectionForm& selection_form() {
  auto& form = module_state().theSelectionForm;
  if (!form && host().make_selection_form) form = host().make_selection_form();
  return installed(form, "selection editor");
}

}  // namespace kestrova
