// One failure of an operation, and whether it reached the caller as it was raised.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "platform/error.h"

namespace kestrova::test {

// Runs the operation while the fake (a recording connection or a fake suite) lets its k-th call
// fail. Answers whether an error reached the caller; it must be the scripted one. All calls succeed
// again afterwards.
template <class ScriptedError, class Fake, class Operation>
bool failure_reaches_caller(Fake& fake, std::size_t k, const std::string& scripted,
                            const Operation& operation) {
  fake.fail_on_call(k);
  bool has_failed = false;
  try {
    operation();
  } catch (const ScriptedError& error) {
    has_failed = true;
    EXPECT_TRUE(
        std::string(error.what()).starts_with(scripted + " of call " + std::to_string(k) + ": "))
        << error.what();
  }
  fake.fail_on_call(0);
  return has_failed;
}

// host has a connection and a suite of these kinds (tests/engine/engine_host.h).
template <class Host, class Operation>
bool database_failure_reaches_caller(Host& host, std::size_t k, const Operation& operation) {
  return failure_reaches_caller<DatabaseError>(*host.connection, k, "scripted failure", operation);
}

template <class Host, class Operation>
bool service_failure_reaches_caller(Host& host, std::size_t k, const Operation& operation) {
  return failure_reaches_caller<InvalidArgument>(*host.suite, k, "scripted service failure",
                                                 operation);
}

}  // namespace kestrova::test
