// The program on a sample database of its own for every test suite.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/sqlite/sqlite_connection.h"
#include "tests/tools/run_program.h"

namespace kestrova::tool {

using nlohmann::json;

class Program : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    scratch_ = std::make_unique<ScratchFolder>();
    const ProgramResult made = run_program(
        {"demo-db", database(), "--lots", "60", "--seed", "7", "--today", "2025-03-14"});
    ASSERT_EQ(made.exit_code, 0) << made.err;
    ASSERT_EQ(made.out, "Made the sample database '" + database() + "' with 60 lots.\n");
  }
  static void TearDownTestSuite() { scratch_.reset(); }

  static std::string file(const std::string& name) { return scratch_->file(name).string(); }
  static std::string database() { return file("forest.db"); }

  // The program on the sample database.
  static ProgramResult on_database(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--db", database()});
    return run_program(arguments);
  }

  // A copy of it that the batch has changed.
  static std::string changed_database(const std::string& name, const std::string& batch) {
    const std::string path = file(name);
    std::filesystem::copy_file(database(), path);
    open_sqlite(path)->execute(batch);
    return path;
  }

  static json json_of(std::vector<std::string> arguments, int exit_code = 0) {
    arguments.emplace_back("--json");
    const ProgramResult result = on_database(std::move(arguments));
    EXPECT_EQ(result.exit_code, exit_code);
    EXPECT_EQ(result.err, "");
    return json::parse(result.out);
  }

  // What plain SQL, written by hand, says.
  static std::int32_t count_of(const std::string& sql) {
    return open_sqlite(database(), {.read_only = true})
        ->open("SELECT COUNT(*) FROM " + sql, CursorType::kForwardOnly, LockType::kReadOnly)
        ->value(0)
        .integer();
  }

  // The one line that a refused command leaves behind, without its beginning.
  static std::string error_line(const ProgramResult& result) {
    const std::string begin = "kestrova-sel: error: ";
    EXPECT_EQ(result.err.substr(0, begin.size()), begin);
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1);
    return result.err.size() < begin.size() + 1
               ? result.err
               : result.err.substr(begin.size(), result.err.size() - begin.size() - 1);
  }

 private:
  static inline std::unique_ptr<ScratchFolder> scratch_;
};

}  // namespace kestrova::tool
