// How many cases are run, and which: from the environment, so that a failing case can be run alone
// and a long run can be shared out.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

namespace kestrova::test {

struct Settings {
  std::uint64_t seed = 1;
  std::uint64_t first = 0;
  std::uint64_t count = 0;

  // KESTROVA_ATTACK_SEED, KESTROVA_ATTACK_FIRST and KESTROVA_ATTACK_CASES.
  static Settings from_environment(std::uint64_t usual_count) {
    const auto number = [](const char* name, std::uint64_t usual) {
      const char* const value = std::getenv(name);
      return value ? std::strtoull(value, nullptr, 10) : usual;
    };
    return {number("KESTROVA_ATTACK_SEED", 1), number("KESTROVA_ATTACK_FIRST", 0),
            number("KESTROVA_ATTACK_CASES", usual_count)};
  }

  std::uint64_t end() const { return first + count; }

  // The environment that runs one case again.
  std::string again(std::uint64_t number) const {
    return "KESTROVA_ATTACK_SEED=" + std::to_string(seed) +
           " KESTROVA_ATTACK_FIRST=" + std::to_string(number) + " KESTROVA_ATTACK_CASES=1";
  }
};

}  // namespace kestrova::test
