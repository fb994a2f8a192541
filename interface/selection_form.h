// What the engine reads of the selection editor. The editor implements it; the engine never looks
// at the editor itself.
#pragma once

#include <memory>

#include "platform/controls.h"

namespace kestrova {

class SelectionForm {
 public:
  virtual ~SelectionForm() = default;

  // The list of selectable fields: display name, and the field's identifier as item data.
  virtual const ComboBox& field_list() const = 0;

  // The list of values of the selected field.
  virtual const ComboBox& value_list() const = 0;

 protected:
  SelectionForm() = default;
};

// Makes the selection editor. Declared here for the lookups that need it and written in editor/,
// which knows how.
std::shared_ptr<SelectionForm> make_selection_form();

}  // namespace kestrova
