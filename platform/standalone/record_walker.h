// The records of a text between separators.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/suite.h"

namespace kestrova::standalone {

// Remembers where the records of the text that it was last asked about begin, so that a walk over
// all of them takes linear time.
//
// The text is known by its place and size, not by its content, which would have to be read for each
// record. TokenCount reads the text anew each time; TokenAt relies on what was read while place,
// size and separator are the same. So a text that has changed, or another one at the same place,
// is asked for its TokenCount first.
class RecordWalker : public StrTokens {
 public:
  // Both raise InvalidArgument for an empty separator.
  std::int32_t TokenCount(std::string_view text, std::string_view separator) override;
  std::string_view TokenAt(std::string_view text, std::string_view separator,
                           std::int32_t index) override;

 private:
  void bind(std::string_view text, std::string_view separator);
  bool is_bound_to(std::string_view text, std::string_view separator) const;
  std::size_t count() const { return begins_.size() - 1; }

  std::string_view text_;
  std::string separator_;
  // Where each record begins, and one more: where a further record would begin.
  std::vector<std::size_t> begins_ = {0};
};

}  // namespace kestrova::standalone
