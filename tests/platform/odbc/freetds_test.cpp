// FreeTDS speaks to SQL Server. Without a server: that the driver is there, that what keeps it from
// a server is told clearly and in time, and that errors of a server arrive, wherever in a result.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <string>

#include "platform/odbc/odbc_connection.h"
#include "tests/platform/odbc/data_sources.h"
#include "tests/platform/odbc/tds_server.h"

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

// --- A server that breaks off

// "SELECT n [TEXT]" answers n rows, with a long text if asked for; then what the parameter says.
TdsReply rows_of(const std::string& query) {
  TdsReply reply;
  const bool with_text = query.find("TEXT") != std::string::npos;
  reply.columns({"ID"}, with_text);
  const int count = std::stoi(query.substr(std::string("SELECT ").size()));
  for (int i = 1; i <= count; ++i) with_text ? reply.row({i}, "abc") : reply.row({i});
  return reply;
}

using Script = TdsServer::Script;

Script server_that_ends_with(const std::function<TdsReply&(TdsReply&)>& end) {
  return [end](const std::string& text) {
    TdsReply reply;
    if (text == "login") return reply.login_done();
    if (!text.starts_with("SELECT ")) return reply.done(0);
    reply = rows_of(text);
    return end(reply);
  };
}

TEST(FreeTds, AnErrorInAResultIsRaisedWhereverItStands) {
  const TdsServer server(server_that_ends_with([](TdsReply& reply) -> TdsReply& {
    return reply.error(8134, "Divide by zero error encountered.").failed();
  }));
  const auto connection = open_odbc(server.connection_string());
  for (const std::string kind : {"", " TEXT"}) {
    for (const int rows : {0, 1, 536, 999, 1000, 1001, 2000, 2500}) {
      const std::string query = "SELECT " + std::to_string(rows) + kind;
      EXPECT_EQ(database_error([&] { column_of(*connection, query); }),
                "22012 [FreeTDS][SQL Server]Divide by zero error encountered. (22012, 8134) "
                "[statement 1: " +
                    query + "]");
    }
  }
}

TEST(FreeTds, AnErrorBehindAResultIsRaised) {
  const TdsServer server(server_that_ends_with([](TdsReply& reply) -> TdsReply& {
    return reply.done_with_more(3).error(8134, "Divide by zero error encountered.").failed();
  }));
  const auto connection = open_odbc(server.connection_string());
  EXPECT_THAT(database_error([&] { connection->execute("SELECT 3"); }), StartsWith("22012 "));
}

TEST(FreeTds, AWarningInAResultIsNone) {
  const TdsServer server(server_that_ends_with([](TdsReply& reply) -> TdsReply& {
    return reply.info(8153, "Null value is eliminated by an aggregate.").done(3);
  }));
  const auto connection = open_odbc(server.connection_string());
  EXPECT_EQ(column_of(*connection, "SELECT 3"), (Row{1, 2, 3}));
  EXPECT_EQ(column_of(*connection, "SELECT 3 TEXT"), (Row{1, 2, 3}));
}

TEST(FreeTds, OverflowsHaveTheStandardState) {
  for (const int number : {8115, 220}) {
    const TdsServer server(server_that_ends_with([number](TdsReply& reply) -> TdsReply& {
      return reply.error(number, "Arithmetic overflow error.").failed();
    }));
    const auto connection = open_odbc(server.connection_string());
    EXPECT_THAT(database_error([&] { column_of(*connection, "SELECT 3"); }), StartsWith("22003 "))
        << number;
  }
}

TEST(FreeTds, ARefusedLoginHasTheStandardState) {
  const TdsServer server([](const std::string&) {
    return TdsReply().error(18456, "Login failed for user 'anna'.").failed();
  });
  EXPECT_THAT(attempt(server.connection_string()).error,
              AllOf(StartsWith("28000 "), HasSubstr("Login failed for user 'anna'."),
                    Not(HasSubstr("geheim"))));
}

// --- Writing a row

// A table T with a key ID and a text; what an UPDATE of it answers is for the test to say.
class WrittenTable {
 public:
  explicit WrittenTable(std::uint64_t rows_written) : rows_written_(rows_written) {}

  TdsReply answer(const std::string& text) {
    const auto asks = [&text](std::string_view part) { return text.find(part) != text.npos; };
    TdsReply reply;
    if (text == "login") return reply.login_done();
    if (asks("sp_pkeys")) return reply.columns({"A", "B", "C"}, true).row({1, 1, 1}, "ID").done(1);
    if (asks("UPDATE ")) {
      ++updates;
      EXPECT_TRUE(
          asks("UPDATE [T] SET [TEXT] = @P1 WHERE [ID] = @P2 AND (SELECT COUNT(*) FROM [T] "
               "WHERE [ID] = @P3) = 1"))
          << text;
      return reply.done(rows_written_);
    }
    if (asks("SELECT COUNT(*)")) return reply.columns({"N"}).row({1}).done(1);
    if (asks("SELECT ")) return reply.columns({"ID"}, true).row({1}, "neu").done(1);
    return reply.done(0);
  }

  std::atomic<int> updates = 0;

 private:
  std::uint64_t rows_written_;
};

std::string update_through(WrittenTable& table) {
  const TdsServer server([&table](const std::string& text) { return table.answer(text); });
  const auto connection = open_odbc(server.connection_string());
  return database_error([&] {
    const auto rows = connection->open("SELECT * FROM T WHERE ID = 1", CursorType::kKeyset,
                                       LockType::kOptimistic);
    rows->set_value("TEXT", "neu");
    rows->update();
    EXPECT_EQ(rows->value("TEXT"), Value("neu"));
  });
}

TEST(FreeTds, ARowIsWrittenByTheKeyOfTheTableThatTheQueryNames) {
  WrittenTable table(1);
  EXPECT_EQ(update_through(table), "no error");
  EXPECT_EQ(table.updates, 1);
}

TEST(FreeTds, AnUpdateThatWritesNotExactlyOneRowIsAnError) {
  WrittenTable none(0);
  EXPECT_EQ(update_through(none),
            "01001 The row has been changed in the meantime; nothing was written.");
  WrittenTable two(2);
  EXPECT_EQ(update_through(two),
            "HY000 The database has changed 2 rows instead of the current one.");
}

}  // namespace
}  // namespace kestrova::test
