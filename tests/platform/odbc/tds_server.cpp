#include "tests/platform/odbc/tds_server.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace kestrova::test {
namespace {

// The kinds of packets.
constexpr unsigned char kBatch = 0x01;
constexpr unsigned char kProcedure = 0x03;
constexpr unsigned char kReply = 0x04;
constexpr unsigned char kLogin = 0x10;
constexpr unsigned char kBeforeLogin = 0x12;

void put(std::string& bytes, std::uint64_t number, int size) {
  for (int i = 0; i < size; ++i) bytes += static_cast<char>((number >> (8 * i)) & 0xFFU);
}

// Texts are UTF-16; those of the tests are ASCII.
void put_units(std::string& bytes, std::string_view text) {
  for (const char c : text) {
    bytes += c;
    bytes += '\0';
  }
}

void put_short_text(std::string& bytes, std::string_view text) {
  put(bytes, text.size(), 1);
  put_units(bytes, text);
}

bool read_bytes(int connection, char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t got = ::recv(connection, bytes, count, 0);
    if (got <= 0) return false;
    bytes += got;
    count -= static_cast<std::size_t>(got);
  }
  return true;
}

struct Message {
  unsigned char kind = 0;
  std::string body;
};

// A message in all its packets; false when the connection has ended.
bool read_message(int connection, Message& message) {
  message.body.clear();
  for (;;) {
    unsigned char head[8];
    if (!read_bytes(connection, reinterpret_cast<char*>(head), sizeof head)) return false;
    message.kind = head[0];
    const std::size_t length = std::size_t{head[2]} * 256U + head[3];
    std::string part(length - sizeof head, '\0');
    if (!read_bytes(connection, part.data(), part.size())) return false;
    message.body += part;
    if ((head[1] & 1U) != 0) return true;
  }
}

void send_reply(int connection, const std::string& body) {
  constexpr std::size_t kMost = 4096 - 8;
  for (std::size_t at = 0; at == 0 || at < body.size(); at += kMost) {
    const std::string part = body.substr(at, kMost);
    const std::size_t length = part.size() + 8;
    std::string packet;
    packet += static_cast<char>(kReply);
    packet += static_cast<char>(at + kMost >= body.size() ? 1 : 0);
    packet += static_cast<char>(length / 256);
    packet += static_cast<char>(length % 256);
    packet += std::string("\0\0\1\0", 4) + part;
    if (::send(connection, packet.data(), packet.size(), MSG_NOSIGNAL) < 0) return;
  }
}

// "No encryption": the options version and encryption, each with its place, and their values.
std::string before_login_reply() {
  return std::string("\x00\x00\x0B\x00\x06\x01\x00\x11\x00\x01\xFF", 11) +
         std::string("\x10\x00\x10\x00\x00\x00", 6) + "\x02";
}

// A batch begins with headers, which begin with their length.
std::string text_of_batch(const std::string& body) {
  const std::size_t head = static_cast<unsigned char>(body.at(0));
  std::string text;
  for (std::size_t i = head; i < body.size(); i += 2) text += body[i];
  return text;
}

std::string without_zeros(std::string body) {
  std::erase(body, '\0');
  return body;
}

}  // namespace

TdsReply& TdsReply::columns(const std::vector<std::string>& names, bool with_text) {
  bytes_ += '\x81';
  put(bytes_, names.size() + (with_text ? 1 : 0), 2);
  for (const std::string& name : names) {
    put(bytes_, 0, 4);  // user type
    put(bytes_, 0, 2);  // flags
    bytes_ += '\x38';   // int
    put_short_text(bytes_, name);
  }
  if (with_text) {
    put(bytes_, 0, 4);
    put(bytes_, 1, 2);         // NULL is allowed
    bytes_ += "\xE7\xFF\xFF";  // nvarchar(max)
    bytes_ += std::string("\x09\x04\xD0\x00\x34", 5);
    put_short_text(bytes_, "TEXT");
  }
  return *this;
}

TdsReply& TdsReply::row(const std::vector<std::int32_t>& values) {
  bytes_ += '\xD1';
  for (const std::int32_t value : values) put(bytes_, static_cast<std::uint32_t>(value), 4);
  return *this;
}

TdsReply& TdsReply::row(const std::vector<std::int32_t>& values, std::string_view text) {
  row(values);
  put(bytes_, text.size() * 2, 8);
  put(bytes_, text.size() * 2, 4);
  put_units(bytes_, text);
  put(bytes_, 0, 4);
  return *this;
}

TdsReply& TdsReply::message(unsigned char token, std::int32_t number, unsigned char severity,
                            std::string_view text) {
  std::string body;
  put(body, static_cast<std::uint32_t>(number), 4);
  put(body, 1, 1);
  put(body, severity, 1);
  put(body, text.size(), 2);
  put_units(body, text);
  put_short_text(body, "SERVER");
  put_short_text(body, "");
  put(body, 1, 4);
  bytes_ += static_cast<char>(token);
  put(bytes_, body.size(), 2);
  bytes_ += body;
  return *this;
}

TdsReply& TdsReply::end(std::uint16_t status, std::uint64_t rows) {
  bytes_ += '\xFD';
  put(bytes_, status, 2);
  put(bytes_, 0xC1, 2);  // SELECT
  put(bytes_, rows, 8);
  return *this;
}

TdsReply& TdsReply::login_done() {
  std::string body("\x01\x74\x00\x00\x04", 5);
  put_short_text(body, "Microsoft SQL Server");
  body += std::string("\x10\x00\x10\x00", 4);
  bytes_ += '\xAD';
  put(bytes_, body.size(), 2);
  bytes_ += body;
  return end(0, 0);
}

TdsServer::TdsServer(Script script)
    : script_(std::move(script)), listening_(::socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listening_, any, size) != 0 || ::listen(listening_, 5) != 0 ||
      ::getsockname(listening_, any, &size) != 0) {
    throw std::runtime_error("The server cannot listen.");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { serve(); });
}

TdsServer::~TdsServer() {
  stopping_ = true;
  thread_.join();
  ::close(listening_);
}

std::string TdsServer::connection_string() const {
  return "Driver=FreeTDS;Server=127.0.0.1;Port=" + std::to_string(port_) +
         ";TDS_Version=7.4;UID=anna;PWD=geheim";
}

void TdsServer::serve() {
  while (!stopping_) {
    pollfd waiting{listening_, POLLIN, 0};
    if (::poll(&waiting, 1, 20) <= 0) continue;
    const int connection = ::accept(listening_, nullptr, nullptr);
    if (connection < 0) continue;
    talk(connection);
    ::close(connection);
  }
}

void TdsServer::talk(int connection) {
  Message message;
  while (read_message(connection, message)) {
    if (message.kind == kBeforeLogin) {
      send_reply(connection, before_login_reply());
    } else if (message.kind == kLogin) {
      send_reply(connection, script_("login").bytes());
    } else if (message.kind == kBatch) {
      send_reply(connection, script_(text_of_batch(message.body)).bytes());
    } else if (message.kind == kProcedure) {
      send_reply(connection, script_("rpc " + without_zeros(message.body)).bytes());
    } else {
      send_reply(connection, TdsReply().done(0).bytes());
    }
  }
}

}  // namespace kestrova::test
