// Sees, and stops, every statement that would change something: asked by the embedded database
// itself, before it runs a statement of any connection.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova::test {

class WriteWatch {
 public:
  // There is one, because the database knows one hook for new connections. Connections that are
  // opened after the first call are watched.
  static WriteWatch& instance();

  // A change that a case may make: "UPDATE MODELS.NAME", "INSERT MODELS", "DELETE MODELS"; tables
  // of the connection's own begin with "#".
  using Allowed = std::function<bool(std::string_view change)>;

  // From now on changes that are not allowed are refused and remembered.
  void begin(Allowed allowed);
  // What was refused since begin. Everything is allowed again.
  std::vector<std::string> end();
  // The changes that were allowed since begin.
  const std::vector<std::string>& allowed_changes() const { return allowed_changes_; }

  // Whether the statement may go on.
  bool asks(const std::string& change);

 private:
  WriteWatch();

  bool watching_ = false;
  Allowed allowed_;
  std::vector<std::string> allowed_changes_;
  std::vector<std::string> refused_;
};

}  // namespace kestrova::test
