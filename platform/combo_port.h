// A list control as far as a filler needs one: the six operations that every combo box offers,
// whatever toolkit it belongs to.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/controls.h"

namespace kestrova {

class ComboPort {
 public:
  virtual ~ComboPort() = default;
  virtual void Clear() = 0;
  virtual void AddItem(std::string_view text) = 0;
  // Index of the entry added last.
  virtual int NewIndex() const = 0;
  // The 32-bit number stored with an entry.
  virtual std::int32_t ItemData(int index) const = 0;
  virtual void SetItemData(int index, std::int32_t data) = 0;
  virtual int ListCount() const = 0;
  // Selected entry, -1 for none.
  virtual int ListIndex() const = 0;
  virtual void SetListIndex(int index) = 0;
};

// The library's own list controls behind the port. Refers to the list.
class EntryListPort final : public ComboPort {
 public:
  explicit EntryListPort(EntryList& list) : list_(list) {}
  void Clear() override { list_.clear(); }
  void AddItem(std::string_view text) override { list_.add(text); }
  int NewIndex() const override { return list_.new_index(); }
  std::int32_t ItemData(int index) const override { return list_.item_data(index); }
  void SetItemData(int index, std::int32_t data) override { list_.set_item_data(index, data); }
  int ListCount() const override { return list_.count(); }
  int ListIndex() const override { return list_.index(); }
  void SetListIndex(int index) override { list_.set_index(index); }

 private:
  EntryList& list_;
};

}  // namespace kestrova
