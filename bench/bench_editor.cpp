// The editor at its limits: committing many lines, lists up to the most lines that one may have,
// and a value list over a million lots.
//
//   bench_editor commit | lists | values
//
// Prints the figures and fails when one is over its limit. commit and lists time the library alone:
// the suite's services and the connection answer from memory. values reads the sample database.
// Processor time, which other programs on the machine do not add to; the best of several runs.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "bench/fixed_suite.h"
#include "editor/f_selection.h"
#include "examples/forest/forest_generator.h"
#include "interface/c_selection_init.h"
#include "interface/module_state.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"

namespace kestrova {
namespace {

constexpr double kNever = 1e9;

double seconds(const std::function<void()>& work) {
  const std::clock_t begin = std::clock();
  work();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

bool within(const char* what, double value, double limit, const char* unit) {
  std::printf("%-58s %10.3f %s (limit %g)\n", what, value, unit, limit);
  return value <= limit;
}

class SilentUser final : public UserInterface {
 public:
  MessageResult show_message(const Message&) override { return MessageResult::kOk; }
  std::optional<std::string> ask_text(std::string_view, std::string_view) override { return {}; }
  PointerShape pointer() const override { return PointerShape::kDefault; }
  void set_pointer(PointerShape) override {}
  void show_modal(ModalDialog&) override {}
};

// A row set of one column.
class FixedAnswer : public Recordset {
 public:
  void move_first() override {}
  void find(std::string_view) override {}
  std::size_t column_count() const override { return 1; }
  std::string column_name(std::size_t) const override { return {}; }
  Value value(std::string_view) const override { return value(std::size_t{0}); }
  Value value(std::size_t) const override { return 1; }
  FieldType type(std::string_view) const override { return FieldType::kInteger; }
  FieldType type(std::size_t) const override { return FieldType::kInteger; }
  void set_value(std::string_view, const Value&) override {}
  void update() override {}
  void close() override {}
};

// One row that answers every question of the editor's start, or none.
class StartRow final : public FixedAnswer {
 public:
  explicit StartRow(bool has_row) : has_row_(has_row) {}
  bool eof() const override { return !has_row_; }
  void move_next() override { has_row_ = false; }

 private:
  bool has_row_;
};

// Knows the options; has no models and no values.
class EmptyConnection final : public Connection {
 public:
  std::unique_ptr<Recordset> open(std::string_view sql, CursorType, LockType) override {
    return std::make_unique<StartRow>(sql.starts_with("SELECT ISNULL("));
  }
  std::int64_t execute(std::string_view) override { return 0; }
  ConnectionKind kind() const override { return ConnectionKind::kSqlServer; }
};

// An editor on the relation, bound by InitForm.
class Bench {
 public:
  Bench(std::shared_ptr<Suite> suite, std::shared_ptr<Connection> connection,
        std::string relation) {
    install_host({.suite = std::move(suite),
                  .user_interface = std::make_shared<SilentUser>(),
                  .user_locale = std::make_shared<SettingsUserLocale>("DE", "DMY")});
    KesVar context;
    context.dbado = std::move(connection);
    context.strLanguage = "DE";
    context.strOderLine = "=== ODER ===";
    context.strDateOrder = "DMY";
    context.strAccessLevelList = "SELECT ID FROM ACCESS_LEVELS";
    std::string from_where;
    std::string formula;
    SelectionFacade().c_Selection_Init(context, relation, "", from_where, formula);
  }

  F_Selection& editor() { return selection_editor(); }

  // Puts the list together as a stored selection does, without the pickers.
  void fill(int lines) {
    ListBox& list = editor().ListCriteria;
    list.clear();
    for (int i = 0; i < lines; ++i) {
      const int field = i % kFixedFields + 1;
      list.add("Field " + std::to_string(field) + " >= " + std::to_string(i));
      list.set_item_data(list.new_index(), field);
    }
  }
};

// --- Committing

bool commit() {
  constexpr int kLines = 5000;
  constexpr double kLimit = 50;
  constexpr int kRuns = 7;
  Bench bench(std::make_shared<FixedSuite>(), std::make_shared<EmptyConnection>(), "1WL");
  bench.fill(kLines);
  double best = kNever;
  for (int run = 0; run < kRuns; ++run) {
    best = std::min(best, 1000 * seconds([&] { bench.editor().btnOk_Click(); }));
  }
  const std::string& text = module_state().strSelektion_Fr_Wh;
  const bool complete = std::count(text.begin(), text.end(), '>') == kLines;
  return within("commit of 5,000 lines", best, kLimit, "ms") && complete;
}

// --- Long lists

constexpr int kSomeLines = 4096;
constexpr int kMostLines = 32766;  // a full list, of one more, refuses moves

// The time of the work for the most lines, next to that for some, per line.
bool stays_linear(const char* what, const std::function<double(int lines)>& work,
                  double most_growth = 2) {
  constexpr int kRuns = 3;
  double some = kNever;
  double most = kNever;
  for (int run = 0; run < kRuns; ++run) {
    some = std::min(some, work(kSomeLines) / kSomeLines);
    most = std::min(most, work(kMostLines) / kMostLines);
  }
  std::printf("%-58s %10.3f us per line of %d, %.3f of %d\n", what, 1e6 * some, kSomeLines,
              1e6 * most, kMostLines);
  return std::max(some, most) < kNever / kMostLines &&
         within("  growth per line", most / some, most_growth, "times");
}

bool lists() {
  Bench bench(std::make_shared<FixedSuite>(), std::make_shared<EmptyConnection>(), "1WL");
  F_Selection& editor = bench.editor();
  const auto compose = [&editor] {
    editor.cboField.set_index(0);
    editor.cboValue.set_text("7");
    editor.cboValue_Click();
  };

  // Every insertion loads the new line into the pickers, from where the next one is taken.
  const auto inserted = [&](int lines) {
    editor.ListCriteria.clear();
    compose();
    const double time = seconds([&] {
      for (int i = 0; i < lines; ++i) editor.btnInsert_Click();
    });
    return editor.ListCriteria.count() == lines ? time : kNever;
  };
  const auto inserted_on_top = [&](int lines) {
    editor.ListCriteria.clear();
    compose();
    const double time = seconds([&] {
      for (int i = 0; i < lines; ++i) {
        editor.btnInsert_Click();
        editor.ListCriteria.set_index(-1);
        compose();
      }
    });
    return editor.ListCriteria.count() == lines ? time : kNever;
  };
  // The line must have arrived.
  const auto moved = [&](int lines, int from, int to, void (F_Selection::*move)()) {
    bench.fill(lines);
    const std::string line = editor.ListCriteria.entry_text(from);
    editor.ListCriteria.set_index(from);
    const double time = seconds([&] {
      for (int i = 1; i < lines; ++i) (editor.*move)();
    });
    return editor.ListCriteria.entry_text(to) == line ? time : kNever;
  };
  const auto moved_up = [&](int lines) {
    return moved(lines, lines - 1, 0, &F_Selection::cmdUp_Click);
  };
  const auto moved_down = [&](int lines) {
    return moved(lines, 0, lines - 1, &F_Selection::cmdDown_Click);
  };
  const auto committed = [&](int lines) {
    bench.fill(lines);
    return seconds([&] { editor.btnOk_Click(); });
  };
  bool ok = stays_linear("inserting behind the selected line", inserted);
  // Each insertion makes room in the list, which takes time in proportion to its lines.
  ok = stays_linear("inserting on top", inserted_on_top, kMostLines / kSomeLines) && ok;
  ok = stays_linear("moving the last line to the top", moved_up) && ok;
  ok = stays_linear("moving the first line to the end", moved_down) && ok;
  ok = stays_linear("committing", committed) && ok;
  return ok;
}

// --- Values of a million lots

// What the work adds to the memory that the program holds, at its highest, in MB.
class FurtherMemory {
 public:
  FurtherMemory() {
    std::ofstream("/proc/self/clear_refs") << "5";  // forgets the highest so far
    before_ = highest();
  }
  double now() const { return highest() - before_; }

 private:
  static double highest() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
    }
    std::puts("the highest memory use cannot be read");
    std::exit(1);
  }
  double before_;
};

// The values of a query, none of them kept: what is held then, the editor holds.
class CountedRows final : public FixedAnswer {
 public:
  explicit CountedRows(int rows) : left_(rows) {}
  using FixedAnswer::value;
  bool eof() const override { return left_ == 0; }
  void move_next() override { --left_; }
  Value value(std::size_t) const override {
    return "a value of some length that a lot may have " + std::to_string(left_);
  }

 private:
  int left_;
};

constexpr int kLots = 1'000'000;

class ManyValuesConnection final : public Connection {
 public:
  int values = 0;  // of every query from now on

  std::unique_ptr<Recordset> open(std::string_view sql, CursorType, LockType) override {
    if (sql.starts_with("SELECT DISTINCT ")) return std::make_unique<CountedRows>(values);
    return std::make_unique<StartRow>(sql.starts_with("SELECT ISNULL("));
  }
  std::int64_t execute(std::string_view) override { return 0; }
  ConnectionKind kind() const override { return ConnectionKind::kSqlServer; }
};

constexpr int kMostShown = 100;

// The list holds the last of the values, as many as are shown.
bool shows_the_last(const F_Selection& editor) {
  return within("  values shown", editor.cboValue.count(), kMostShown, "") &&
         editor.cboValue.count() == kMostShown;
}

bool holds_what_it_shows() {
  constexpr double kLimit = 1;  // a million values take 80 and more
  const auto connection = std::make_shared<ManyValuesConnection>();
  Bench bench(std::make_shared<FixedSuite>(), connection, "1WL");
  connection->values = 2 * kMostShown;
  bench.editor().cboField.set_index(0);  // whatever is made once
  connection->values = kLots;
  const FurtherMemory memory;
  bench.editor().cboField.set_index(1);
  return within("memory for a query of 1,000,000 values", memory.now(), kLimit, "MB") &&
         shows_the_last(bench.editor());
}

bool values_of_the_sample() {
  constexpr double kLimit = 2;
  const std::shared_ptr<Connection> connection = open_sqlite(":memory:");
  build_forest_database(*connection, {.lots = kLots});
  Bench bench(make_standalone_suite(connection, std::make_shared<SettingsUserLocale>("DE", "DMY")),
              connection, "1LV");
  F_Selection& editor = bench.editor();
  bool ok = true;
  for (const char* field : {"Losnummer", "Menge (fm)", "Einschlagsdatum", "Holzart"}) {
    const double time = seconds([&] { editor.cboField.set_text(field); });
    const std::string what = std::string("values of ") + field + " over 1,000,000 lots";
    ok = within(what.c_str(), time, kLimit, "s") && ok;
    ok = within("  values shown", editor.cboValue.count(), kMostShown, "") && ok;
    ok = editor.cboValue.count() > 0 && ok;
  }
  return ok;
}

bool values() {
  const bool memory = holds_what_it_shows();
  return values_of_the_sample() && memory;
}

}  // namespace
}  // namespace kestrova

int main(int argc, char** argv) {
  const std::string what = argc == 2 ? argv[1] : "";
  if (what == "commit") return kestrova::commit() ? 0 : 1;
  if (what == "lists") return kestrova::lists() ? 0 : 1;
  if (what == "values") return kestrova::values() ? 0 : 1;
  std::puts("usage: bench_editor commit|lists|values");
  return 2;
}
