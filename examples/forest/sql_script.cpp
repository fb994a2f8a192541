#include "examples/forest/sql_script.h"

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova {
namespace {

std::string_view without_carriage_return(std::string_view line) {
  return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

std::string_view first_line(std::string_view statement) {
  return statement.substr(0, statement.find('\n'));
}

}  // namespace

std::vector<ScriptStatement> split_script(std::string_view script) {
  std::vector<ScriptStatement> statements;
  ScriptStatement current;
  const auto finish = [&] {
    if (!current.text.empty()) statements.push_back(std::move(current));
    current = {};
  };
  int number = 0;
  for (const std::string_view piece : text::split(script, '\n')) {
    ++number;
    const std::string_view line = without_carriage_return(piece);
    const std::string_view content = text::trim(line);
    if (content == "GO") {
      finish();
      continue;
    }
    if (content.empty() || content.starts_with("--")) continue;
    if (current.text.empty()) {
      current.line = number;
    } else {
      current.text += '\n';
    }
    current.text += line;
    if (content.ends_with(';')) finish();
  }
  finish();
  return statements;
}

void run_script(Connection& connection, std::string_view name, std::string_view script) {
  for (const ScriptStatement& statement : split_script(script)) {
    try {
      connection.execute(statement.text);
    } catch (const DatabaseError& error) {
      throw DatabaseError(std::string(name) + ", line " + std::to_string(statement.line) + " (" +
                              std::string(first_line(statement.text)) + "): " + error.what(),
                          error.sqlstate(), error.native_code());
    }
  }
}

}  // namespace kestrova
