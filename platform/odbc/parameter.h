// A value on its way to the driver: as a parameter of a statement or as a column's new value.
#pragma once

#include <string>
#include <vector>

#include "platform/odbc/odbc_handle.h"
#include "platform/odbc/row_reader.h"
#include "platform/value.h"

namespace kestrova::odbc {

struct Parameter {
  SQLSMALLINT c_type = SQL_C_WCHAR;
  SQLSMALLINT sql_type = SQL_WVARCHAR;
  SQLULEN size = 1;        // characters, bytes or digits
  SQLSMALLINT digits = 0;  // behind the point, or of a second's fraction
  std::vector<std::byte> data;
  SQLLEN indicator = SQL_NULL_DATA;  // bytes of data, or that there is none

  // Binds it as the parameter of this number, counted from 1. It must stay where it is until the
  // statement has run.
  SQLRETURN bind(const StatementHandle& statement, std::size_t number);
};

// What is sent for a value of a column.
Parameter make_parameter(const Value& value, const ResultColumn& column);

}  // namespace kestrova::odbc
