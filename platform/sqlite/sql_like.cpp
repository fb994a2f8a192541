#include "platform/sqlite/sql_like.h"

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

using Characters = std::vector<std::string>;

// The characters of a text; capitals as folded asks.
Characters characters(std::string_view text, bool folded) {
  const std::string upper = folded ? text::upper(text) : std::string(text);
  std::string_view rest = upper;
  Characters result;
  result.reserve(rest.size());
  while (!rest.empty()) {
    const std::string_view first = text::left(rest, 1);
    result.emplace_back(first);
    rest.remove_prefix(first.size());
  }
  return result;
}

std::string_view without_trailing_blanks(std::string_view s) {
  return s.substr(0, s.find_last_not_of(' ') + 1);
}

bool is_digit(const std::string& c) { return c.size() == 1 && c[0] >= '0' && c[0] <= '9'; }

// Of an upper-case character. Beside the basic letters these are Latin-1, Latin Extended-A, Greek
// and Cyrillic, which have small and capital letters.
bool is_letter(const std::string& c) {
  return (c.size() == 1 && c[0] >= 'A' && c[0] <= 'Z') || c == "ß" || lower(c) != c;
}

// One element of a pattern.
struct Element {
  enum Kind { kCharacter, kAnyCharacter, kAnyText, kSet } kind = kCharacter;
  std::string character;  // upper case, as all in a pattern
  bool negated = false;
  std::vector<std::pair<std::string, std::string>> ranges;

  bool accepts(const std::string& c) const {
    if (kind == kCharacter) return c == character;
    if (kind != kSet) return true;
    const bool in = std::any_of(ranges.begin(), ranges.end(), [&](const auto& range) {
      return c == range.first ||
             (compare_texts(range.first, c) <= 0 && compare_texts(c, range.second) <= 0);
    });
    return in != negated;
  }
};

// Reads a pattern into its elements; nothing when it can match no text: it has a set that is not
// closed, or ends with the escape character.
class PatternReader {
 public:
  PatternReader(const Characters& pattern, std::string_view escape)
      : pattern_(pattern), escape_(escape) {}

  std::optional<std::vector<Element>> run() {
    std::vector<Element> result;
    for (at_ = 0; at_ < pattern_.size(); ++at_) {
      Element element;
      if (is_escape()) {
        if (++at_ == pattern_.size()) return std::nullopt;
      } else if (pattern_[at_] == "%") {
        element.kind = Element::kAnyText;
      } else if (pattern_[at_] == "_") {
        element.kind = Element::kAnyCharacter;
      } else if (pattern_[at_] == "[") {
        element.kind = Element::kSet;
        if (!read_set(element)) return std::nullopt;
      }
      if (element.kind == Element::kCharacter) element.character = pattern_[at_];
      result.push_back(std::move(element));
    }
    return result;
  }

 private:
  bool is_escape() const { return !escape_.empty() && pattern_[at_] == escape_; }

  // From "[" to "]".
  bool read_set(Element& set) {
    if (++at_ < pattern_.size() && pattern_[at_] == "^") {
      set.negated = true;
      ++at_;
    }
    while (at_ < pattern_.size() && pattern_[at_] != "]") {
      if (is_escape() && ++at_ == pattern_.size()) return false;
      const std::string& first = pattern_[at_++];
      const bool range =
          at_ + 1 < pattern_.size() && pattern_[at_] == "-" && pattern_[at_ + 1] != "]";
      if (range) ++at_;
      if (range && is_escape() && ++at_ == pattern_.size()) return false;
      const std::string& last = range ? pattern_[at_++] : first;
      if (range) require_known_order(first, last);
      set.ranges.emplace_back(first, last);
    }
    if (at_ == pattern_.size()) return false;
    if (set.ranges.empty()) {
      throw DatabaseError("The empty set '[]' in a LIKE pattern is not supported.", "42000", 102);
    }
    return true;
  }

  // Only digits and letters have the places among each other that they have on the server.
  static void require_known_order(const std::string& first, const std::string& last) {
    const bool known = (is_digit(first) && is_digit(last)) || (is_letter(first) && is_letter(last));
    if (known) return;
    throw DatabaseError("The range '" + first + "-" + last +
                            "' in a LIKE pattern is not supported: a range goes from a digit to a "
                            "digit or from a letter to a letter.",
                        "42000", 102);
  }

  const Characters& pattern_;
  std::string escape_;
  std::size_t at_ = 0;
};

bool matches(const Characters& text, const std::vector<Element>& pattern, bool overlook_blanks) {
  // Where the last "%" was, to try it with one more character.
  std::size_t star = pattern.size();
  std::size_t star_text = 0;
  std::size_t t = 0;
  std::size_t p = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p].kind == Element::kAnyText) {
      star = p++;
      star_text = t;
    } else if (p < pattern.size() && pattern[p].accepts(text[t])) {
      ++p;
      ++t;
    } else if (star < pattern.size()) {
      p = star + 1;
      t = ++star_text;
    } else {
      // Only trailing blanks may be left over.
      return overlook_blanks && p == pattern.size() &&
             std::all_of(text.begin() + static_cast<std::ptrdiff_t>(t), text.end(),
                         [](const std::string& c) { return c == " "; });
    }
  }
  while (p < pattern.size() && pattern[p].kind == Element::kAnyText) ++p;
  return p == pattern.size();
}

std::map<std::string, std::string> make_small_letters() {
  std::map<std::string, std::string> result;
  for (unsigned code = 0x80; code < 0x530; ++code) {
    if (code == 0x3C2) continue;  // the final sigma shares its capital with the ordinary one
    const std::string small = {static_cast<char>(0xC0 | (code >> 6)),
                               static_cast<char>(0x80 | (code & 0x3F))};
    const std::string capital = text::upper(small);
    if (capital != small) result.emplace(capital, small);
  }
  return result;
}

// The letter that a capital with an accent sorts beside, for Latin-1 and Latin Extended-A, from the
// code point C0 on; a blank where there is none. The sharp s sorts as two of them.
constexpr std::string_view kBaseLetters =
    "AAAAAAACEEEEIIIIDNOOOOO OUUUUYTSAAAAAAACEEEEIIIIDNOOOOO OUUUUYTY"
    "AAAAAACCCCCCCCDDDDEEEEEEEEEEGGGGGGGGHHHHIIIIIIIIIIIIJJKKKLLLLLLL"
    "LLLNNNNNNNNNOOOOOOOORRRRRRSSSSSSSSTTTTTTUUUUUUUUUUUUWWYYYZZZZZZS";
static_assert(kBaseLetters.size() == 0x180 - 0xC0);
constexpr std::size_t kSharpS = 0xDF - 0xC0;
static_assert(kBaseLetters[kSharpS] == 'S');

// An upper-case text with its accents taken off.
std::string without_accents(std::string_view upper) {
  std::string result;
  for (std::size_t i = 0; i < upper.size(); ++i) {
    const auto lead = static_cast<unsigned char>(upper[i]);
    if (lead >= 0xC3 && lead <= 0xC5 && i + 1 < upper.size()) {
      const auto next = static_cast<unsigned char>(upper[i + 1]);
      const std::size_t at = (lead - 0xC3U) * 0x40U + (next & 0x3FU);
      if ((next & 0xC0U) == 0x80U && kBaseLetters[at] != ' ') {
        result.append(at == kSharpS ? 2 : 1, kBaseLetters[at]);
        ++i;
        continue;
      }
    }
    result += upper[i];
  }
  return result;
}

char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

int compare_texts(std::string_view a, std::string_view b) {
  a = without_trailing_blanks(a);
  b = without_trailing_blanks(b);
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const auto x = static_cast<unsigned char>(capital(a[i]));
    const auto y = static_cast<unsigned char>(capital(b[i]));
    if (x >= 0x80 || y >= 0x80) {
      // What was equal so far is basic Latin, so that a whole character begins here in both.
      const std::string rest_a = text::upper(a.substr(i));
      const std::string rest_b = text::upper(b.substr(i));
      const int letters = without_accents(rest_a).compare(without_accents(rest_b));
      return letters != 0 ? letters : rest_a.compare(rest_b);
    }
    if (x != y) return x < y ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

bool matches_pattern(std::string_view text, std::string_view pattern, std::string_view escape,
                     bool overlook_blanks) {
  const Characters letters = characters(pattern, true);
  const auto elements = PatternReader(letters, text::upper(escape)).run();
  return elements && matches(characters(text, true), *elements, overlook_blanks);
}

std::size_t position_of(std::string_view needle, std::string_view text) {
  if (needle.empty()) return 0;
  const std::string haystack = text::upper(text);
  const std::size_t at = haystack.find(text::upper(needle));
  return at == std::string::npos ? 0 : text::length(std::string_view(haystack).substr(0, at)) + 1;
}

std::string replaced(std::string_view text, std::string_view what, std::string_view with) {
  const Characters original = characters(text, false);
  const Characters folded = characters(text, true);
  const Characters wanted = characters(what, true);
  if (wanted.empty()) return std::string(text);
  std::string result;
  for (std::size_t i = 0; i < original.size();) {
    if (i + wanted.size() <= folded.size() &&
        std::equal(wanted.begin(), wanted.end(), folded.begin() + static_cast<std::ptrdiff_t>(i))) {
      result += with;
      i += wanted.size();
    } else {
      result += original[i++];
    }
  }
  return result;
}

std::string lower(std::string_view text) {
  static const std::map<std::string, std::string> kSmallLetters = make_small_letters();
  std::string result;
  for (const std::string& character : characters(text, false)) {
    const char first = character.front();
    const auto small = kSmallLetters.find(character);
    if (first >= 'A' && first <= 'Z') {
      result += static_cast<char>(first - 'A' + 'a');
    } else {
      result += small == kSmallLetters.end() ? character : small->second;
    }
  }
  return result;
}

}  // namespace kestrova::sql
