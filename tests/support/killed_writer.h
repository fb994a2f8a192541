// A program that is killed while it writes to an embedded database.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <string>

#include "platform/sqlite/sqlite_connection.h"

namespace kestrova::test {

// Changes the file in a transaction that a kill breaks off, so that pages of it lie in the file and
// what they held before in its journal.
inline void break_off_writing(const std::string& file) {
  const pid_t writer = fork();
  if (writer == 0) {
    const auto connection = open_sqlite(file);
    connection->execute("BEGIN TRAN CREATE TABLE HALF_WRITTEN (T ntext)");
    // More than the cache takes.
    const std::string megabyte(1'000'000, 'x');
    for (int i = 0; i < 8; ++i) {
      connection->execute("INSERT INTO HALF_WRITTEN VALUES ('" + megabyte + "')");
    }
    raise(SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(writer, &status, 0), writer);
  ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  ASSERT_NE(std::ifstream(file + "-journal", std::ios::binary).get(), 0) << "the journal is in use";
}

}  // namespace kestrova::test
