// The order of texts is one: equal are those of the same letters, and no three of them contradict.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "platform/sqlite/sql_like.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

int sign(int number) { return (number > 0) - (number < 0); }

std::vector<std::string> random_words(std::size_t count) {
  const std::vector<std::string> letters = {"a", "A", "ä", "s", "S", "ß", "t", "z", " ", "1", "Æ"};
  std::mt19937 random(3);
  std::uniform_int_distribution<std::size_t> letter(0, letters.size() - 1);
  std::uniform_int_distribution<int> length(0, 4);
  std::vector<std::string> words;
  while (words.size() < count) {
    std::string word;
    for (int i = length(random); i > 0; --i) word += letters[letter(random)];
    words.push_back(word);
  }
  return words;
}

std::string letters_of(std::string word) {
  word.erase(word.find_last_not_of(' ') + 1);
  return text::upper(word);
}

TEST(TextOrder, IsOne) {
  const std::vector<std::string> words = random_words(120);
  for (const std::string& a : words) {
    for (const std::string& b : words) {
      const int ab = sign(compare_texts(a, b));
      ASSERT_EQ(ab, -sign(compare_texts(b, a))) << a << '|' << b;
      ASSERT_EQ(ab == 0, letters_of(a) == letters_of(b)) << a << '|' << b;
      for (const std::string& c : words) {
        const int bc = sign(compare_texts(b, c));
        if (ab > 0 || bc > 0) continue;
        ASSERT_EQ(sign(compare_texts(a, c)), ab == 0 ? bc : -1) << a << '|' << b << '|' << c;
      }
    }
  }
}

}  // namespace
}  // namespace kestrova::sql
