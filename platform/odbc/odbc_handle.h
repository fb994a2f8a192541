// The ODBC interface, and its handles as C++ objects.
#pragma once

#ifdef _WIN32
#define NOMINMAX
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <cstdint>
#include <utility>

namespace kestrova::odbc {

template <SQLSMALLINT Type>
class Handle {
 public:
  Handle() = default;
  explicit Handle(SQLHANDLE handle) : handle_(handle) {}
  ~Handle() { reset(); }
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  SQLHANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }
  void reset() {
    if (handle_ != nullptr) SQLFreeHandle(Type, std::exchange(handle_, nullptr));
  }

 private:
  SQLHANDLE handle_ = nullptr;
};

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

// A number as the pointer that the attribute functions take.
inline SQLPOINTER attribute_value(std::uintptr_t value) {
  return reinterpret_cast<SQLPOINTER>(value);
}

// ODBC's characters are 16 bits wide, by another name on each system.
static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
inline SQLWCHAR* wide(char16_t* text) { return reinterpret_cast<SQLWCHAR*>(text); }
inline SQLCHAR* narrow(char* text) { return reinterpret_cast<SQLCHAR*>(text); }

}  // namespace kestrova::odbc
