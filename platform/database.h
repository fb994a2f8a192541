// The database port: what the library needs of the host's open connection, and nothing else.
//
// It is shaped like the row-set interface that hosts of such components already have, so that an
// adapter to it is thin. Rules that every adapter keeps (tests/support/database_contract.h checks
// each of them):
//
//  - Several row sets of one connection may be open at once, and statements may be executed while
//    they are. An adapter to a database that refuses this reads a result whole before it answers.
//  - Temporary tables (#name) live as long as the connection.
//  - A row set is positioned on its first row when it is opened, or at its end when it has no row.
//  - Column names are compared without regard to case; of several columns of one name the first
//    counts. Positions count from 0.
//  - Every failure is a kestrova::Error; after one, the connection and the other row sets still
//  work.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/value.h"

namespace kestrova {

// How a row set is walked; the values are the provider's. An adapter may give more than was asked.
enum class CursorType : int {
  kUnspecified = -1,
  kForwardOnly = 0,
  kKeyset = 1,
  kDynamic = 2,
  kStatic = 3
};

// Whether a row set can be written; the values are the provider's.
enum class LockType : int { kUnspecified = -1, kReadOnly = 1, kPessimistic = 2, kOptimistic = 3 };

// Column type codes; the values are the provider's.
enum class FieldType : std::int16_t {
  kEmpty = 0,
  kSmallInt = 2,
  kInteger = 3,
  kSingle = 4,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kBstr = 8,
  kBoolean = 11,
  kVariant = 12,
  kDecimal = 14,
  kTinyInt = 16,
  kUnsignedTinyInt = 17,
  kUnsignedSmallInt = 18,
  kUnsignedInt = 19,
  kBigInt = 20,
  kUnsignedBigInt = 21,
  kGuid = 72,
  kBinary = 128,
  kChar = 129,
  kWChar = 130,
  kNumeric = 131,
  kDBDate = 133,
  kDBTime = 134,
  kDBTimeStamp = 135,
  kVarNumeric = 139,
  kVarChar = 200,
  kLongVarChar = 201,
  kVarWChar = 202,
  kLongVarWChar = 203,
  kVarBinary = 204,
  kLongVarBinary = 205,
};

// Which database answers on the connection; decides between SQL forms such as ISNULL and NVL.
enum class ConnectionKind { kSqlServer, kOracle, kOther };

// The rows that a query returned. Closed by close() or by its destructor; every operation but
// close() on a closed row set raises ObjectNotSet. Must not outlive its connection.
class Recordset {
 public:
  virtual ~Recordset() = default;
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  // True when there is no current row: behind the last row, or no rows at all.
  virtual bool eof() const = 0;

  // To the first row (to the end of an empty row set). On a forward-only row set that has already
  // been moved the adapter runs the query again.
  virtual void move_first() = 0;

  // To the next row. At the end it raises NoCurrentRecord.
  virtual void move_next() = 0;

  // To the first row, from the current one on, that meets the criterion; to the end when none does
  // (at the end it stays there). The criterion is NAME = 'text' or NAME = number, where the text
  // holds no apostrophe; anything else raises BadCriterion and leaves the position as it was. A
  // column that does not exist raises ItemNotFound. Texts are compared without regard to case and
  // trailing blanks, as the server's "=" does; a NULL meets no criterion.
  virtual void find(std::string_view criterion) = 0;

  // Number of columns, and the name of one. Raises ItemNotFound for a position that does not exist.
  virtual std::size_t column_count() const = 0;
  virtual std::string column_name(std::size_t position) const = 0;

  // A column of the current row. Raises NoCurrentRecord at the end and ItemNotFound for a column
  // that does not exist.
  virtual Value value(std::string_view name) const = 0;
  virtual Value value(std::size_t position) const = 0;

  // The type code of a column; also answered when there are no rows. Raises ItemNotFound.
  virtual FieldType type(std::string_view name) const = 0;
  virtual FieldType type(std::size_t position) const = 0;

  // Changes a column of the current row in memory; update() writes the row, and only that one row.
  // Leaving the row without update() discards the change. Both raise DatabaseError on a row set
  // that was opened read-only or whose rows cannot be told apart.
  virtual void set_value(std::string_view name, const Value& value) = 0;
  virtual void update() = 0;

  // Frees the rows. Closing twice is allowed.
  virtual void close() = 0;

 protected:
  Recordset() = default;
};

class Connection {
 public:
  virtual ~Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Opens the rows of a query: of one SELECT, and nothing else. A source without any blank is the
  // plain name of a table and means all of its rows. Anything that the server might read as more
  // raises DatabaseError (42000) and is not sent: a batch, a change, SELECT ... INTO, a procedure's
  // call (platform/single_select.h, in every adapter). What fills a temporary table is for
  // execute(). Raises DatabaseError when the database refuses the text.
  virtual std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                          LockType lock) = 0;

  // Runs one statement, or a batch of statements joined by CR LF; returns the number of rows that
  // its last INSERT, UPDATE or DELETE changed, or 0. Raises DatabaseError; statements of the batch
  // before the failing one stay done, as on the server, but a batch that cannot be read at all runs
  // nothing.
  virtual std::int64_t execute(std::string_view batch) = 0;

  virtual ConnectionKind kind() const = 0;

  // The longest that the database may work from now on for one statement, or for one row of a
  // query; zero, as at the beginning, for no limit. What takes longer is broken off with a
  // DatabaseError of SQLSTATE "HYT00"; a row set is at its end then. False, and nothing changes,
  // when the database cannot break off within milliseconds.
  virtual bool set_time_limit(std::chrono::milliseconds /*limit*/) { return false; }

 protected:
  Connection() = default;
};

// A search criterion of Recordset::find, read. Shared by the adapters so that they agree on it.
struct FindCriterion {
  std::string column;
  std::string operand;     // the text between the apostrophes, or the number as it stands
  bool is_number = false;  // compare as numbers instead of texts
};

// Raises BadCriterion.
FindCriterion parse_find_criterion(std::string_view criterion);

// Whether a column value meets the criterion.
bool meets(const FindCriterion& criterion, const Value& value);

}  // namespace kestrova
