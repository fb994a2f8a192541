#include "platform/standalone/record_walker.h"

#include <algorithm>

#include "platform/error.h"

namespace kestrova::standalone {

std::int32_t RecordWalker::TokenCount(std::string_view text, std::string_view separator) {
  bind(text, separator);
  return static_cast<std::int32_t>(count());
}

std::string_view RecordWalker::TokenAt(std::string_view text, std::string_view separator,
                                       std::int32_t index) {
  if (!is_bound_to(text, separator)) bind(text, separator);
  if (index < 0 || static_cast<std::size_t>(index) >= count()) {
    throw InvalidArgument("There is no record " + std::to_string(index) + " among " +
                          std::to_string(count()) + ".");
  }
  const std::size_t begin = begins_[static_cast<std::size_t>(index)];
  const std::size_t next = begins_[static_cast<std::size_t>(index) + 1];
  return text.substr(begin, next - separator_.size() - begin);
}

void RecordWalker::bind(std::string_view text, std::string_view separator) {
  if (separator.empty()) throw InvalidArgument("Records need a separator between them.");
  text_ = text;
  separator_ = separator;
  begins_.assign(1, 0);
  while (begins_.back() < text.size()) {
    const std::size_t end = std::min(text.find(separator, begins_.back()), text.size());
    begins_.push_back(end + separator.size());
  }
}

bool RecordWalker::is_bound_to(std::string_view text, std::string_view separator) const {
  return text.data() == text_.data() && text.size() == text_.size() && separator == separator_;
}

}  // namespace kestrova::standalone
