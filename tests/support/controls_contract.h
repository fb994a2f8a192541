// The control rules of platform/controls.h as a test suite, for the models and for every view of
// them: what the user does goes through the view, and what the test reads is what the view shows.
//
//   INSTANTIATE_TEST_SUITE_P(Model, ControlsContract,
//                            testing::Values(ControlsAdapter{"Model", &show_models}),
//                            controls_adapter_name);
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/selection_dialog.h"

namespace kestrova::test {

// The controls of the dialog without an editor.
class PlainDialog final : public SelectionDialog {
 public:
  std::string caption() const override { return caption_text; }
  bool is_visible() const override { return visible; }
  void close_requested() override { visible = false; }
  const std::string& or_line() const override { return or_text; }
  RefusedLine refused_line() const override { return refused; }

  std::string caption_text = "Selektion";
  std::string or_text = "=== ODER ===";
  bool visible = true;
  RefusedLine refused;
};

// A view of a PlainDialog, with a user before it.
class ShownControls {
 public:
  virtual ~ShownControls() = default;

  // The user's actions.
  virtual void pick(EntryList& list, int index) = 0;
  virtual void double_click(EntryList& list, int index) = 0;
  virtual void click(Button& button) = 0;
  virtual void click(CheckBox& box) = 0;
  // Puts the focus into the box and types behind its text.
  virtual void type(ComboBox& combo, std::string_view text) = 0;
  virtual void type_backspace(ComboBox& combo) = 0;
  // Moves the focus to another control.
  virtual void leave(ComboBox& combo) = 0;

  // What is shown.
  virtual std::vector<std::string> texts(const EntryList& list) = 0;
  virtual int index(const EntryList& list) = 0;
  virtual std::string text(const ComboBox& combo) = 0;
  virtual std::string text(const TextBox& box) = 0;
  virtual bool is_checked(const CheckBox& box) = 0;
  virtual bool is_enabled(const Control& control) = 0;
  virtual bool is_visible(const Control& control) = 0;
};

struct ControlsAdapter {
  std::string name;  // letters and digits
  std::function<std::unique_ptr<ShownControls>(PlainDialog&)> show;
};

void PrintTo(const ControlsAdapter& adapter, std::ostream* out);
std::string controls_adapter_name(const testing::TestParamInfo<ControlsAdapter>& info);

class ControlsContract : public testing::TestWithParam<ControlsAdapter> {
 protected:
  ControlsContract();

  PlainDialog dialog_;
  std::unique_ptr<ShownControls> view_;
};

}  // namespace kestrova::test
