// The list of calls that a fake was asked, in order and readable. Several fakes may write into one
// list, so that a test sees the order across the database, the services and the user.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace kestrova::test {

using CallLog = std::shared_ptr<std::vector<std::string>>;

inline CallLog make_call_log() { return std::make_shared<std::vector<std::string>>(); }

}  // namespace kestrova::test
