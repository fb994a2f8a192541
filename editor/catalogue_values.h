// The values that a list shows of a catalogue relation: of more than 100 the last 100, except for
// the relation "BB", which shows all. Never holds more than it shows.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <utility>

namespace kestrova {

class CatalogueValues {
 public:
  explicit CatalogueValues(std::string_view relation) : shows_all_(relation == "BB") {}

  void add(std::string value) {
    entries_.push_back(std::move(value));
    if (entries_.size() > kMost && !shows_all_) entries_.pop_front();
  }

  const std::deque<std::string>& entries() const { return entries_; }

 private:
  static constexpr std::size_t kMost = 100;
  bool shows_all_;
  std::deque<std::string> entries_;
};

}  // namespace kestrova
