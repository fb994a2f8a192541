// FreeTDS speaks to SQL Server. Without a server: that the driver is there, and that what keeps it
// from a server is told clearly and in time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include "platform/odbc/odbc_connection.h"
#include "tests/platform/odbc/data_sources.h"

namespace kestrova::test {
namespace {

using std::chrono::seconds;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string source(const std::string& server, int port) {
  return "Driver=FreeTDS;Server=" + server + ";Port=" + std::to_string(port) +
         ";TDS_Version=7.4;Database=FOREST;UID=anna;PWD=geheim";
}

// The error of connecting, and how long that took.
struct Attempt {
  std::string error;
  std::chrono::steady_clock::duration time;
};

Attempt attempt(const std::string& connection_string) {
  OdbcOptions options;
  options.login_timeout = seconds(2);
  const auto begin = std::chrono::steady_clock::now();
  std::string error = database_error([&] { open_odbc(connection_string, options); });
  return {std::move(error), std::chrono::steady_clock::now() - begin};
}

// A server that takes connections and says nothing.
class SilentServer {
 public:
  SilentServer() : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    listening_ = ::bind(socket_, any, size) == 0 && ::listen(socket_, 5) == 0 &&
                 ::getsockname(socket_, any, &size) == 0;
    port_ = ntohs(address.sin_port);
  }
  ~SilentServer() { ::close(socket_); }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  bool listening() const { return listening_; }
  int port() const { return port_; }

 private:
  int socket_;
  bool listening_ = false;
  int port_ = 0;
};

TEST(FreeTds, AClosedPortIsRefused) {
  const Attempt result = attempt(source("127.0.0.1", 1));
  EXPECT_THAT(result.error, AllOf(StartsWith("08"), HasSubstr("Unable to connect"),
                                  HasSubstr("(08001, "), Not(HasSubstr("geheim"))));
  EXPECT_LT(result.time, seconds(5));
}

TEST(FreeTds, AHostThatDoesNotExistIsTold) {
  const Attempt result = attempt(source("no-such-host.invalid", 1433));
  EXPECT_THAT(result.error,
              AllOf(StartsWith("08"), HasSubstr("Unable to connect"), Not(HasSubstr("geheim"))));
  EXPECT_LT(result.time, seconds(30));  // the resolver's own time
}

TEST(FreeTds, AServerThatSaysNothingIsGivenUpWithinTheLoginTimeout) {
  const SilentServer server;
  ASSERT_TRUE(server.listening());
  const Attempt result = attempt(source("127.0.0.1", server.port()));
  EXPECT_THAT(result.error, AllOf(Not(StartsWith("no error")), Not(HasSubstr("geheim"))));
  EXPECT_GE(result.time, seconds(1));
  EXPECT_LT(result.time, seconds(10));
}

}  // namespace
}  // namespace kestrova::test
