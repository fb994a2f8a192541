// The control rules on the models themselves.
#include "tests/support/controls_contract.h"
#include "platform/text.h"

namespace kestrova::test {
namespace {

// The user acts on the models, and sees them.
class Models final : public ShownControls {
 public:
  void pick(EntryList& list, int index) override { list.pick(index); }
  void double_click(EntryList& list, int index) override {
    list.pick(index);
    list.double_click();
  }
  void click(Button& button) override { button.click(); }
  void click(CheckBox& box) override { box.click(); }
  void type(ComboBox& combo, std::string_view typed) override {
    if (!combo.reachable()) return;
    for (std::size_t i = 1; i <= text::length(typed); ++i) {
      int key = code_point(text::mid(typed, i, 1));
      if (combo.on_key_press) combo.on_key_press(key);
      if (key != 0) combo.set_text(combo.text() + utf8(key));
    }
  }
  void type_backspace(ComboBox& combo) override {
    int key = 8;
    if (combo.on_key_press) combo.on_key_press(key);
    if (key != 0) combo.set_text(text::left(combo.text(), text::length(combo.text()) - 1));
  }
  void leave(ComboBox& combo) override {
    bool cancel = false;
    if (combo.on_validate) combo.on_validate(cancel);
  }

  std::vector<std::string> texts(const EntryList& list) override {
    std::vector<std::string> result;
    for (const ListEntry& entry : list.entries()) result.push_back(entry.text);
    return result;
  }
  int index(const EntryList& list) override { return list.index(); }
  std::string text(const ComboBox& combo) override { return combo.text(); }
  std::string text(const TextBox& box) override { return box.text(); }
  bool is_checked(const CheckBox& box) override { return box.checked(); }
  bool is_enabled(const Control& control) override { return control.enabled(); }
  bool is_visible(const Control& control) override { return control.visible(); }

 private:
  // Characters of at most two bytes, which is what the suite types.
  static int code_point(std::string_view character) {
    const auto first = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) return first;
    return ((first & 0x1F) << 6) | (static_cast<unsigned char>(character[1]) & 0x3F);
  }
  static std::string utf8(int key) {
    if (key < 0x80) return {static_cast<char>(key)};
    return {static_cast<char>(0xC0 | (key >> 6)), static_cast<char>(0x80 | (key & 0x3F))};
  }
};

INSTANTIATE_TEST_SUITE_P(Model, ControlsContract,
                         testing::Values(ControlsAdapter{
                             "Model", [](PlainDialog&) { return std::make_unique<Models>(); }}),
                         controls_adapter_name);

}  // namespace
}  // namespace kestrova::test
