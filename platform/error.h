// The one error hierarchy of the library. Every failure that reaches a host is a kestrova::Error.
//
// number() carries the value that hosts of such components already know and test for, so that an
// error handler written against the component interface keeps working.
#pragma once

#include <stdexcept>
#include <string>

namespace kestrova {

// Base of all errors: a message for people and a number for programs.
class Error : public std::runtime_error {
 public:
  Error(int number, const std::string& message) : std::runtime_error(message), number_(number) {}
  int number() const noexcept { return number_; }

 private:
  int number_;
};

// The database refused or lost a statement. sqlstate() is the five-character SQLSTATE ("42S02" for
// a missing table; "HY000" where the database names none), native_code() the database's own number.
class DatabaseError : public Error {
 public:
  static constexpr int kNumber = -2147217900;  // 0x80040E14: error in a command
  DatabaseError(const std::string& message, std::string sqlstate = "HY000", int native_code = 0)
      : Error(kNumber, message), sqlstate_(std::move(sqlstate)), native_code_(native_code) {}
  const std::string& sqlstate() const noexcept { return sqlstate_; }
  int native_code() const noexcept { return native_code_; }

 private:
  std::string sqlstate_;
  int native_code_;
};

// One class per number, so that a handler can catch the case it means.
template <int Number>
class NumberedError : public Error {
 public:
  static constexpr int kNumber = Number;
  explicit NumberedError(const std::string& message) : Error(Number, message) {}
};

using InvalidArgument = NumberedError<5>;     // a value that an operation cannot work with
using Overflow = NumberedError<6>;            // a number outside the range of its type
using TypeMismatch = NumberedError<13>;       // a text that is not the number or date asked for
using ObjectNotSet = NumberedError<91>;       // a connection or service that the host has not set
using InvalidUseOfNull = NumberedError<94>;   // NULL where a text or number is needed
using BadCriterion = NumberedError<3001>;     // a search criterion that cannot be read
using NoCurrentRecord = NumberedError<3021>;  // a row set read at its end
using ItemNotFound = NumberedError<3265>;     // a column, entry or field that does not exist

}  // namespace kestrova
