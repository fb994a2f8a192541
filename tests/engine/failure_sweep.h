// Every database call and every service call of an operation fails once: the error reaches the
// caller as it was raised, nothing that the operation opened stays open, and the next call works.
//
// Prepared is a fresh host (engine_host.h) whose run() is the operation and answers its result as
// text.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "platform/error.h"
#include "tests/support/scripted_failure.h"

namespace kestrova::test {

template <class Prepared>
void expect_every_database_failure_to_reach_the_caller() {
  Prepared whole;
  const std::size_t held = whole.connection->open_recordsets();
  const std::size_t before = whole.connection->calls_made();
  const std::string result = whole.run();
  ASSERT_EQ(whole.connection->open_recordsets(), held);
  const std::size_t calls = whole.connection->calls_made();
  ASSERT_GT(calls, before);

  for (std::size_t k = before + 1; k <= calls; ++k) {
    SCOPED_TRACE("database call " + std::to_string(k));
    Prepared host;
    EXPECT_TRUE(database_failure_reaches_caller(host, k, [&] { host.run(); }));
    EXPECT_EQ(host.connection->open_recordsets(), held);
    EXPECT_EQ(host.suite->live_services(), 0U);
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    EXPECT_EQ(host.run(), result);
  }
  for (std::size_t k = before + 1; k <= calls; ++k) {
    SCOPED_TRACE("connection lost from call " + std::to_string(k));
    Prepared host;
    host.connection->fail_from_call(k);
    EXPECT_THROW(host.run(), DatabaseError);
    EXPECT_EQ(host.connection->open_recordsets(), held);
  }
}

template <class Prepared>
void expect_every_service_failure_to_reach_the_caller() {
  Prepared whole;
  const std::size_t held = whole.connection->open_recordsets();
  const std::string result = whole.run();
  const std::size_t calls = whole.suite->calls_made();
  ASSERT_GT(calls, 0U);

  for (std::size_t k = 1; k <= calls; ++k) {
    SCOPED_TRACE("service call " + std::to_string(k));
    Prepared host;
    EXPECT_TRUE(service_failure_reaches_caller(host, k, [&] { host.run(); }));
    EXPECT_EQ(host.connection->open_recordsets(), held);
    EXPECT_EQ(host.suite->live_services(), 0U);
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    EXPECT_EQ(host.run(), result);
  }
}

}  // namespace kestrova::test
