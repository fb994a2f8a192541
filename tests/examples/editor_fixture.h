// The selection editor on the sample forestry database, as a host runs it without a window: the
// standalone suite, a scripted user, real rows.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "editor/f_selection.h"
#include "tests/examples/forest_fixture.h"
#include "tests/support/fake_user_interface.h"

namespace kestrova::test {

class ForestEditor : public ::testing::Test {
 protected:
  // Tests that change rows bring a database of their own.
  explicit ForestEditor(std::shared_ptr<Connection> database = forest());
  ~ForestEditor() override;

  Connection& db() { return *database_; }

  // InitForm for the user. The start model, if there is one, is loaded.
  void open(std::string relation);

  // What the user does.
  void pick(ComboBox& combo, std::string_view text);
  void type_value(std::string_view text);
  // Composes a criterion of a picked value, and inserts it behind the selected line.
  void add_picked(std::string_view field, std::string_view op, std::string_view value);
  // The same with a typed value.
  void add_typed(std::string_view field, std::string_view op, std::string_view value);
  // An IN list of picked values.
  void add_list(std::string_view field, const std::vector<std::string>& values);
  void add_or() { editor().btnOr.click(); }

  // Run: shows the dialog, in which the user does something and then presses OK. The FROM/WHERE
  // text and the formula of the commit.
  struct Result {
    std::string from_where;
    std::string formula;
  };
  Result run(const std::function<void()>& actions, std::string_view subset = "");
  // The list as it stands, committed.
  Result ok() {
    return run([] {});
  }

  F_Selection& editor() { return *editor_; }
  ScriptedUserInterface& ui() { return *ui_; }
  KesVar& user() { return user_; }

  std::vector<std::string> lines();
  // The first column of a query, in order.
  std::vector<std::string> column(const std::string& sql);

 private:
  std::shared_ptr<Connection> database_;
  std::shared_ptr<F_Selection> editor_;
  std::shared_ptr<ScriptedUserInterface> ui_;
  KesVar user_;
};

// The texts of a list, and its identifiers.
std::vector<std::string> texts_of(const EntryList& list);
std::vector<int> numbers_of(const EntryList& list);

}  // namespace kestrova::test
