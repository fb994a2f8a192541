// A file that other programs use at the same time, or that one of them has left half written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/error.h"
#include "platform/sqlite/sqlite_connection.h"
#include "tests/platform/sqlite/sqlite_fixture.h"
#include "tests/support/killed_writer.h"

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using test::break_off_writing;
using test::column_of;
using test::database_error;
using test::TemporaryFile;
using testing::ElementsAre;
using Clock = std::chrono::steady_clock;

constexpr auto kHeld = 300ms;  // how long another program holds its lock
constexpr const char* kLocked = "40001 The database is locked by another program.";

class SharedFile : public testing::Test {
 protected:
  SharedFile() {
    connect({.create = true})
        ->execute(
            "CREATE TABLE T (ID int NOT NULL PRIMARY KEY, N nvarchar(20))"
            " INSERT INTO T VALUES (1, 'eins'), (2, 'zwei')");
    mine_ = connect();
    other_ = connect();
  }
  std::shared_ptr<Connection> connect(SqliteOptions options = {}) {
    return open_sqlite(file_.name(), std::move(options));
  }

  // What happens while the other program writes, and how long it takes.
  Clock::duration while_other_writes(const std::function<void()>& action) {
    other_->execute("BEGIN TRAN UPDATE T SET N = 'other' WHERE ID = 2");
    std::thread end([this] {
      std::this_thread::sleep_for(kHeld);
      other_->execute("COMMIT");
    });
    const Clock::time_point begin = Clock::now();
    try {
      action();
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
    const Clock::duration time = Clock::now() - begin;
    end.join();
    return time;
  }

  TemporaryFile file_;
  std::shared_ptr<Connection> mine_;
  std::shared_ptr<Connection> other_;
};

// --- Locks

TEST_F(SharedFile, AStatementWaitsForAnotherProgramsTransaction) {
  EXPECT_GE(while_other_writes(
                [&] { EXPECT_EQ(mine_->execute("UPDATE T SET N = 'mine' WHERE ID = 1"), 1); }),
            kHeld - 50ms);
  EXPECT_THAT(column_of(*mine_, "SELECT N FROM T"), ElementsAre("mine", "other"));
  EXPECT_THAT(column_of(*other_, "SELECT N FROM T"), ElementsAre("mine", "other"));
}

TEST_F(SharedFile, ABatchThatReadsBeforeItWritesWaits) {
  EXPECT_GE(while_other_writes([&] {
              EXPECT_EQ(mine_->execute("SELECT N FROM T IF OBJECT_ID('T') IS NOT NULL "
                                       "INSERT INTO T SELECT MAX(ID) + 1, MIN(N) FROM T"),
                        1);
            }),
            kHeld - 50ms);
  EXPECT_THAT(column_of(*mine_, "SELECT N FROM T ORDER BY ID"),
              ElementsAre("eins", "other", "eins"));
}

TEST_F(SharedFile, ATransactionThatReadsBeforeItWritesWaits) {
  EXPECT_GE(while_other_writes([&] {
              mine_->execute("BEGIN TRAN");
              EXPECT_THAT(column_of(*mine_, "SELECT N FROM T"), ElementsAre("eins", "other"));
              EXPECT_EQ(mine_->execute("UPDATE T SET N = N + '!'"), 2);
              mine_->execute("COMMIT");
            }),
            kHeld - 50ms);
  EXPECT_THAT(column_of(*other_, "SELECT N FROM T"), ElementsAre("eins!", "other!"));
}

TEST_F(SharedFile, ARowSetWaitsBeforeItWrites) {
  const auto unread =
      mine_->open("SELECT ID FROM T", CursorType::kForwardOnly, LockType::kReadOnly);
  const auto rows = mine_->open("SELECT * FROM T", CursorType::kForwardOnly, LockType::kOptimistic);
  rows->set_value("N", "mine");
  // Open row sets read, and the other program could not commit before they end.
  EXPECT_THAT(column_of(*mine_, "SELECT ID FROM T"), ElementsAre("1", "2"));
  rows->update();
  EXPECT_GE(while_other_writes([&] {
              rows->set_value("N", "again");
              rows->update();
            }),
            kHeld - 50ms);
  EXPECT_THAT(column_of(*other_, "SELECT N FROM T"), ElementsAre("again", "other"));
}

TEST_F(SharedFile, ReadingGoesOnBesideAWriter) {
  other_->execute("BEGIN TRAN UPDATE T SET N = 'other'");
  EXPECT_THAT(column_of(*mine_, "SELECT N FROM T"), ElementsAre("eins", "zwei"));
  mine_->execute("SELECT * INTO #T FROM T UPDATE #T SET N = 'own'");
  EXPECT_THAT(column_of(*mine_, "SELECT N FROM #T"), ElementsAre("own", "own"));
}

// The whole wait, once: nothing is done, nothing stays open, and the next statement works.
TEST_F(SharedFile, WhatStaysLockedIsAnErrorThatLeavesNothingOpen) {
  other_->execute("BEGIN TRAN UPDATE T SET N = 'other'");
  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(database_error([&] { mine_->execute("UPDATE T SET N = 'mine'"); }), kLocked);
  EXPECT_GE(Clock::now() - begin, 4900ms);
  other_->execute("ROLLBACK");
  EXPECT_EQ(mine_->execute("UPDATE T SET N = 'mine'"), 2);
  EXPECT_THAT(column_of(*other_, "SELECT N FROM T"), ElementsAre("mine", "mine"));
}

TEST_F(SharedFile, ACommitThatAReaderKeepsOutIsUndone) {
  auto reader = other_->open("SELECT ID FROM T", CursorType::kForwardOnly, LockType::kReadOnly);
  EXPECT_EQ(database_error([&] { mine_->execute("UPDATE T SET N = 'mine'"); }), kLocked);
  reader.reset();
  EXPECT_THAT(column_of(*mine_, "SELECT N FROM T"), ElementsAre("eins", "zwei"));
  EXPECT_EQ(mine_->execute("UPDATE T SET N = 'later' WHERE ID = 1"), 1);
  EXPECT_THAT(column_of(*other_, "SELECT N FROM T"), ElementsAre("later", "zwei"));
}

TEST_F(SharedFile, UnderATimeLimitTheWaitIsAsShort) {
  other_->execute("BEGIN TRAN UPDATE T SET N = 'other'");
  ASSERT_TRUE(mine_->set_time_limit(50ms));
  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(database_error([&] { mine_->execute("UPDATE T SET N = 'mine'"); }), kLocked);
  EXPECT_LT(Clock::now() - begin, 2s);
}

TEST_F(SharedFile, ATransactionThatDoesNotBeginIsNone) {
  other_->execute("BEGIN TRAN UPDATE T SET N = 'other'");
  ASSERT_TRUE(mine_->set_time_limit(50ms));
  EXPECT_EQ(database_error([&] { mine_->execute("BEGIN TRAN"); }),
            std::string(kLocked) + " [statement 1: BEGIN TRAN]");
  other_->execute("COMMIT");
  mine_->execute("BEGIN TRAN UPDATE T SET N = 'mine'");
  EXPECT_THAT(column_of(*other_, "SELECT N FROM T"), ElementsAre("other", "other"));
  mine_->execute("ROLLBACK");
  EXPECT_THAT(column_of(*mine_, "SELECT N FROM T"), ElementsAre("other", "other"));
}

TEST_F(SharedFile, WaitingIsNotCountedAsWorkOfTheStatement) {
  ASSERT_TRUE(mine_->set_time_limit(2s));
  while_other_writes([&] { mine_->execute("UPDATE T SET N = 'mine' WHERE ID = 1"); });
  EXPECT_THAT(column_of(*mine_, "SELECT N FROM T"), ElementsAre("mine", "other"));
}

// --- What a killed program leaves

TEST_F(SharedFile, AReaderUndoesWhatAKilledProgramLeft) {
  ASSERT_NO_FATAL_FAILURE(break_off_writing(file_.name()));
  const auto reader = connect({.read_only = true});
  EXPECT_FALSE(std::filesystem::exists(file_.name() + "-journal"));
  EXPECT_THAT(column_of(*reader, "SELECT N FROM T"), ElementsAre("eins", "zwei"));
  EXPECT_EQ(database_error([&] { column_of(*reader, "HALF_WRITTEN"); }),
            "42S02 Invalid object name 'HALF_WRITTEN'. [statement 1: SELECT * FROM HALF_WRITTEN]");
  EXPECT_EQ(database_error([&] { reader->execute("DELETE FROM T"); }),
            "25006 attempt to write a readonly database. [statement 1: DELETE FROM T]");
}

TEST_F(SharedFile, AWriterUndoesWhatAKilledProgramLeft) {
  ASSERT_NO_FATAL_FAILURE(break_off_writing(file_.name()));
  EXPECT_EQ(connect()->execute("UPDATE T SET N = 'mine'"), 2);
  EXPECT_FALSE(std::filesystem::exists(file_.name() + "-journal"));
}

// Acts as a user who owns no file, where the tests run as one who may do everything.
class WithoutRights {
 public:
  WithoutRights() {
    if (geteuid() == 0) changed_ = seteuid(65'534) == 0;
  }
  ~WithoutRights() {
    if (!changed_) return;
    EXPECT_EQ(seteuid(0), 0);
  }
  WithoutRights(const WithoutRights&) = delete;
  WithoutRights& operator=(const WithoutRights&) = delete;

 private:
  bool changed_ = false;
};

TEST_F(SharedFile, WhoMayNotWriteIsToldWhatTheFileNeeds) {
  namespace fs = std::filesystem;
  ASSERT_NO_FATAL_FAILURE(break_off_writing(file_.name()));
  const fs::perms readable = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
  fs::permissions(file_.name(), readable);
  fs::permissions(file_.name() + "-journal", readable);
  const WithoutRights without_rights;
  EXPECT_EQ(database_error([&] { connect({.read_only = true}); }),
            "25006 A program was broken off while it wrote to the database: before it can be read, "
            "it must be opened once with the right to write.");
}

}  // namespace
}  // namespace kestrova
