// Every database call of an action of the editor fails once.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tests/editor/editor_host.h"
#include "tests/support/scripted_failure.h"

namespace kestrova::test {

// Errors of the field change are trapped while a line is shown; all others reach the caller.
enum class ShowsALine { kNo, kYes };

// Lets every database call of an action fail once. The pointer is the default one then, nothing
// that the action opened stays open, and the next line can be composed and inserted.
template <class Prepare, class Action>
void expect_failures_to_be_survived(const Prepare& prepare, const Action& action,
                                    ShowsALine shows_a_line = ShowsALine::kNo) {
  std::size_t calls = 0;
  std::size_t trapped = 0;
  {
    EditorHost host;
    prepare(host);
    host.forget();
    action(*host.editor);
    calls = host.connection->calls_made();
  }
  ASSERT_GT(calls, 0U);
  for (std::size_t k = 1; k <= calls; ++k) {
    SCOPED_TRACE("database call " + std::to_string(k));
    EditorHost host;
    prepare(host);
    host.forget();
    const std::size_t held = host.connection->open_recordsets();
    const std::size_t services = host.suite->live_services();
    if (!database_failure_reaches_caller(host, k, [&] { action(*host.editor); })) ++trapped;
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    EXPECT_EQ(host.connection->open_recordsets(), held);
    EXPECT_EQ(host.suite->live_services(), services);
    host.editor->btnNew_Click();
    host.compose("Holzart", "=", "FI");
    host.editor->btnInsert_Click();
    EXPECT_EQ(host.lines(), (std::vector<std::string>{"Holzart = 'FI'"}));
    EXPECT_EQ(host.editor->Formula.text(), "Holzart = 'FI'");
  }
  if (shows_a_line == ShowsALine::kYes) {
    EXPECT_GT(trapped, 0U);
    EXPECT_LT(trapped, calls);
  } else {
    EXPECT_EQ(trapped, 0U);
  }
}

}  // namespace kestrova::test
