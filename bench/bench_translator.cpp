// The library's own work in translating a stored filter: the suite's services and the connection
// answer from memory with next to no work of their own.
//
// bench/check_limits.py reads the output: time per criterion, and that it does not grow with the
// number of criteria.
#include <benchmark/benchmark.h>

#include <map>
#include <string>

#include "bench/fixed_suite.h"
#include "engine/comm_sel.h"
#include "interface/module_state.h"

namespace kestrova {
namespace {

// A row set of equal rows: the field of the catalogue, or the column whose type is asked for.
class FixedRows final : public Recordset {
 public:
  explicit FixedRows(std::size_t count) : left_(count) {}
  bool eof() const override { return left_ == 0; }
  void move_first() override {}
  void move_next() override { --left_; }
  void find(std::string_view) override {}
  std::size_t column_count() const override { return 0; }
  std::string column_name(std::size_t) const override { return {}; }
  Value value(std::string_view name) const override {
    static const std::map<std::string_view, Value> kRow = {
        {"SQLSELECT", Value()}, {"TABLE_NAME", "WARENKATALOG"}, {"NAME_OF_FIELD", "MENGE"},
        {"SQLVALUE", Value()},  {"TABLE_NAME_II", Value()},     {"TABLE_NAME_III", Value()},
        {"CONDITION", Value()}, {"CONDITIONII", Value()}};
    return kRow.at(name);
  }
  Value value(std::size_t) const override { return {}; }
  FieldType type(std::string_view) const override { return FieldType::kDouble; }
  FieldType type(std::size_t) const override { return FieldType::kDouble; }
  void set_value(std::string_view, const Value&) override {}
  void update() override {}
  void close() override {}

 private:
  std::size_t left_;
};

class FixedConnection final : public Connection {
 public:
  explicit FixedConnection(std::size_t rows) : rows_(rows) {}
  std::unique_ptr<Recordset> open(std::string_view, CursorType, LockType) override {
    return std::make_unique<FixedRows>(rows_);
  }
  std::int64_t execute(std::string_view) override { return 0; }
  ConnectionKind kind() const override { return ConnectionKind::kSqlServer; }

 private:
  std::size_t rows_;
};

std::string criteria_string(std::int64_t criteria) {
  std::string result;
  for (std::int64_t i = 0; i < criteria; ++i) {
    result += std::to_string(i % 300 + 1) + " >= " + std::to_string(i) + ";";
  }
  return result;
}

void translate(benchmark::State& state, std::string_view relation, std::string_view mode) {
  install_host({.suite = std::make_shared<FixedSuite>()});
  KesVar context;
  context.strOderLine = "=== ODER ===";
  context.dbado = std::make_shared<FixedConnection>(static_cast<std::size_t>(state.range(0)));
  const std::string criteria = criteria_string(state.range(0));
  const Comm_Sel comm_sel;
  for (auto _ : state) {
    benchmark::DoNotOptimize(comm_sel.D_SelectionFromStr(context, relation, mode, criteria, "", 0));
  }
  state.counters["per_criterion"] = benchmark::Counter(
      static_cast<double>(state.range(0)),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void catalogue_relation(benchmark::State& state) { translate(state, "1WL", ""); }
void selektion_relation(benchmark::State& state) { translate(state, "1VN", "WAREN"); }

BENCHMARK(catalogue_relation)->Arg(5)->Arg(50)->Arg(500)->Arg(5000);
BENCHMARK(selektion_relation)->Arg(5)->Arg(50)->Arg(500)->Arg(5000);

}  // namespace
}  // namespace kestrova
