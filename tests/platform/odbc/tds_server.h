// A server that speaks as much of SQL Server's protocol (TDS 7.4) as a driver needs to connect, run
// a text and read rows. It knows no SQL: what it answers is a script. So it can be told to break
// off in the middle of a result, which no database does when it is asked to.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kestrova::test {

// An answer, put together from the protocol's tokens.
class TdsReply {
 public:
  // Columns with int values, and behind them, if asked for, one of type nvarchar(max).
  TdsReply& columns(const std::vector<std::string>& names, bool with_text = false);
  TdsReply& row(const std::vector<std::int32_t>& values);
  TdsReply& row(const std::vector<std::int32_t>& values, std::string_view text);
  TdsReply& error(std::int32_t number, std::string_view text) {
    return message(0xAA, number, 16, text);
  }
  TdsReply& info(std::int32_t number, std::string_view text) {
    return message(0xAB, number, 0, text);
  }
  // The end of a result, or of all.
  TdsReply& done(std::uint64_t rows) { return end(0x10, rows); }
  TdsReply& done_with_more(std::uint64_t rows) { return end(0x11, rows); }
  TdsReply& failed() { return end(0x02, 0); }
  TdsReply& login_done();

  const std::string& bytes() const { return bytes_; }

 private:
  TdsReply& message(unsigned char token, std::int32_t number, unsigned char severity,
                    std::string_view text);
  TdsReply& end(std::uint16_t status, std::uint64_t rows);
  std::string bytes_;
};

// Listens on a port of the loopback device until it is destroyed.
class TdsServer {
 public:
  // What a text is answered with; called on the server's thread. A login is asked for as "login", a
  // procedure as "rpc" and all that its message holds, in which names and texts can be found.
  using Script = std::function<TdsReply(const std::string& text)>;

  explicit TdsServer(Script script);
  ~TdsServer();
  TdsServer(const TdsServer&) = delete;
  TdsServer& operator=(const TdsServer&) = delete;

  // For FreeTDS.
  std::string connection_string() const;

 private:
  void serve();
  void talk(int connection);

  Script script_;
  int listening_ = -1;
  int port_ = 0;
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

}  // namespace kestrova::test
