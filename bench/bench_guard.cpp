// What the guard costs one criterion: a text without any quote, bracket, parenthesis, comment mark
// or separator, as most criteria are, and texts with them.
#include <benchmark/benchmark.h>

#include <string_view>

#include "engine/criteria_guard.h"

namespace kestrova {
namespace {

void closed(benchmark::State& state, std::string_view text) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(text);
    benchmark::DoNotOptimize(find_open_text(text));
  }
}

BENCHMARK_CAPTURE(closed, plain, "LOGS.MENGE >= 3.5");
BENCHMARK_CAPTURE(closed, text, "HOLZART.HA = 'FI'");
BENCHMARK_CAPTURE(closed, list, "HOLZART.HA IN ('BU','EI','FI','KI')");
BENCHMARK_CAPTURE(closed, umlauts, "PERSONAL.NAME = 'Baumschule Grünwald'");

}  // namespace
}  // namespace kestrova
