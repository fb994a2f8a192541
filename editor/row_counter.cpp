#include "editor/row_counter.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "editor/f_selection.h"
#include "engine/comm_sel.h"
#include "interface/module_state.h"
#include "platform/database.h"
#include "platform/error.h"
#include "relations/relation_codes.h"

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// What a user does not feel while typing.
constexpr auto kMostPerRow = 80ms;

// The mode in which a stored filter of the relation is translated. Nothing for those of which only
// a commit makes a text: in any mode, other records would be counted.
std::optional<std::string_view> stored_filter_mode(std::string_view code) {
  if (IsCatalogueRelation(code)) return "";
  if (code.starts_with("4ARB") || code.starts_with("4PLN")) return "4ARB";
  if (code == "1VN") return "WAREN";
  return std::nullopt;
}

class EditorRowCounter final : public RowCounter {
 public:
  explicit EditorRowCounter(const F_Selection& editor) : editor_(editor) {}

  RowCount begin() override {
    stop();
    rows_ = 0;
    connection_ = module_state().dbado;
    if (!connection_) return RowCount::kNone;
    return timed([&] {
      const std::string from_where = editor_.counted_from_where();
      if (from_where.empty()) return RowCount::kNone;
      found_ =
          connection_->open("SELECT 1" + from_where, CursorType::kForwardOnly, LockType::kReadOnly);
      return RowCount::kCounting;
    });
  }

  RowCount advance(std::chrono::milliseconds time) override {
    if (!found_) return RowCount::kNone;
    const Clock::time_point end = Clock::now() + time;
    return timed([&] {
      for (; !found_->eof(); found_->move_next()) {
        ++rows_;
        if (Clock::now() > end) {
          found_->move_next();
          return RowCount::kCounting;
        }
      }
      return RowCount::kAll;
    });
  }

  std::int64_t rows() const override { return rows_; }

  void stop() override { found_.reset(); }

 private:
  // A step under the time limit. Without a limit nothing is counted: it might keep the user
  // waiting.
  template <class Step>
  RowCount timed(Step step) {
    struct Limit {
      explicit Limit(Connection& its_connection) : connection(its_connection) {}
      ~Limit() { connection.set_time_limit(0ms); }
      Connection& connection;
    };
    if (!connection_->set_time_limit(kMostPerRow)) return RowCount::kNone;
    const Limit limit(*connection_);
    try {
      return step();
    } catch (const DatabaseError& error) {
      if (error.sqlstate() != "HYT00") throw;
      return RowCount::kMore;
    }
  }

  const F_Selection& editor_;
  std::shared_ptr<Connection> connection_;
  std::unique_ptr<Recordset> found_;
  std::int64_t rows_ = 0;
};

}  // namespace

std::shared_ptr<RowCounter> make_row_counter(const F_Selection& editor) {
  return std::make_shared<EditorRowCounter>(editor);
}

std::string F_Selection::counted_from_where() const {
  const bool fills_table = strParameter.starts_with("LEISTUNGS_BB") || strParameter == "VERLOHN";
  const auto mode = stored_filter_mode(strParameter);
  if (ListCriteria.count() == 0 || fills_table || !mode) return {};
  return Comm_Sel().D_SelectionFromStr(context_, strParameter, *mode, GetWriteString(context_),
                                       module_state().strVerType, context_.lngAccessLevel);
}

}  // namespace kestrova
