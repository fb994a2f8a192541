// Counts the records that the lines of the selection dialog select, a little at a time, for a view
// that shows the number. It changes nothing.
#pragma once

#include <chrono>
#include <cstdint>

namespace kestrova {

enum class RowCount {
  kNone,      // the lines cannot be counted
  kCounting,  // not done yet
  kAll,       // rows() is all of them
  kMore,      // there are at least rows(), but going on would take too long
};

class RowCounter {
 public:
  virtual ~RowCounter() = default;

  // Begins anew with the lines as they are now. They cannot be counted when there are none, when
  // counting would change something, or when the database cannot break off a call that takes too
  // long. Raises the error of a line that the database refuses.
  virtual RowCount begin() = 0;

  // Counts on for about this long. Raises DatabaseError.
  virtual RowCount advance(std::chrono::milliseconds time) = 0;

  // Counted so far.
  virtual std::int64_t rows() const = 0;

  // Breaks off and frees the rows. Whoever uses the connection for something else calls it first.
  virtual void stop() = 0;

 protected:
  RowCounter() = default;
};

}  // namespace kestrova
