// Random choices that are the same with every compiler and library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrova::test {

class Dice {
 public:
  // Every pair of seed and case throws its own numbers, so that one case can be thrown alone.
  Dice(std::uint64_t seed, std::uint64_t case_number)
      : state_(seed * 0x9E3779B97F4A7C15U ^ (case_number + 1) * 0xD1342543DE82EF95U) {}

  std::uint64_t next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15U;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
  }

  // A number from 0 to count - 1.
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }
  bool one_in(std::size_t count) { return below(count) == 0; }

  template <class T, std::size_t Size>
  const T& of(const T (&choices)[Size]) {
    return choices[below(Size)];
  }

 private:
  std::uint64_t state_;
};

}  // namespace kestrova::test
