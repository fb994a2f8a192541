// A user's session with a database: the connection, the suite's services on it and the caller
// context, made from the options of the command line.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interface/selection_form.h"
#include "platform/kes_var.h"
#include "platform/suite.h"
#include "platform/user_interface.h"
#include "tools/options.h"
#include "tools/values.h"

namespace kestrova::tool {

// The lists of an editor, as far as the library asks which field and value are selected in them.
class SelectedField : public SelectionForm {
 public:
  const ComboBox& field_list() const override { return fields_; }
  const ComboBox& value_list() const override { return values_; }

  // Selects the field, and in its value list the entry for no value or none.
  void select(std::int16_t id, bool null_value);

 private:
  ComboBox fields_{"cboField", ComboBox::Style::kDropDownList};
  ComboBox values_{"cboValue", ComboBox::Style::kFreeText};
};

struct Session {
  KesVar context;
  ValueFormat format;
  std::shared_ptr<SelectedField> lists{};

  Connection& connection() const { return connection_of(context); }

  // One value of a query that answers exactly one row.
  Value single_value(std::string_view sql) const;
};

// Opens the database, read-only; it is a file of the embedded database or "odbc:" and a connection
// string, and installs the host's services. Raises UsageError without a database or for a kind of
// database that the program does not know, DatabaseError when it cannot be opened or is none of the
// suite.
Session open_session(const GlobalOptions& options);

// The same for a command that drives the selection editor, in front of the user who is given. The
// session has no lists of its own then.
Session open_editor_session(const GlobalOptions& options, bool read_only,
                            std::shared_ptr<UserInterface> user);

// 's' with its apostrophes doubled and between apostrophes.
std::string sql_literal(std::string_view s);

}  // namespace kestrova::tool
