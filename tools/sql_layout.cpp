#include "tools/sql_layout.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "tools/sql_pieces.h"

namespace kestrova::tool {
namespace {

using Kind = SqlPiece::Kind;

// Words that begin a line, how deep it is indented, and what they must be followed by.
struct LineStart {
  std::string_view word;
  std::size_t depth;
  std::string_view next{};
};

// clang-format off
constexpr std::array kLineStarts = {
    LineStart{"SELECT", 0}, LineStart{"FROM", 0}, LineStart{"WHERE", 0}, LineStart{"UNION", 0},
    LineStart{"INSERT", 0}, LineStart{"GROUP", 0, "BY"}, LineStart{"ORDER", 0, "BY"},
    LineStart{"INNER", 1}, LineStart{"LEFT", 1, "JOIN"}, LineStart{"LEFT", 1, "OUTER"},
    LineStart{"RIGHT", 1, "JOIN"}, LineStart{"RIGHT", 1, "OUTER"}, LineStart{"FULL", 1},
    LineStart{"CROSS", 1}, LineStart{"JOIN", 1}, LineStart{"AND", 1}, LineStart{"OR", 1},
};
constexpr std::array<std::string_view, 6> kBeforeJoin = {"INNER", "LEFT", "RIGHT", "FULL", "CROSS", "OUTER"};
// clang-format on

constexpr std::size_t kCriteriaDepth = 2;

class Layout {
 public:
  Layout(std::string_view sql, std::string_view indent) : indent_(indent) { read(sql); }

  std::string text() {
    for (std::size_t i = 0; i < pieces_.size(); ++i) add(i);
    return std::move(out_);
  }

 private:
  struct Piece {
    SqlPiece sql;
    bool blank_before;
  };

  void read(std::string_view sql);
  void add(std::size_t i);
  void add_nested(std::size_t i);
  void add_in_line(const Piece& piece);
  void begin_line(std::size_t depth);
  std::optional<std::size_t> line_depth(std::size_t i) const;
  bool is_word(std::size_t i, std::string_view word) const {
    return i < pieces_.size() && pieces_[i].sql.is_word(word);
  }
  bool has_several_conditions(std::size_t begin) const;
  bool follows_join_word(std::size_t i) const;
  void note_between(const SqlPiece& piece);

  std::string_view indent_;
  std::vector<Piece> pieces_;  // without blanks
  std::size_t criteria_begin_ = SIZE_MAX;
  std::size_t criteria_end_ = SIZE_MAX;
  std::string out_;
  bool line_is_empty_ = true;
  std::size_t nesting_ = 0;   // parentheses and CASE that stay in one piece
  bool in_criteria_ = false;  // inside the parentheses of the criteria
  bool between_ = false;      // the next AND belongs to BETWEEN
};

// Reads the pieces and finds the condition in parentheses that ends the text.
void Layout::read(std::string_view sql) {
  bool blank_before = false;
  for (const SqlPiece& piece : split_sql(sql)) {
    if (piece.kind != Kind::kBlanks) pieces_.push_back({piece, blank_before});
    blank_before = piece.kind == Kind::kBlanks;
  }
  if (pieces_.empty() || !pieces_.back().sql.is_symbol(')')) return;
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i + 1 < pieces_.size(); ++i) {
    if (pieces_[i].sql.is_symbol('(')) open.push_back(i);
    if (pieces_[i].sql.is_symbol(')') && !open.empty()) open.pop_back();
  }
  if (open.size() != 1 || open.front() == 0) return;
  const bool is_condition = is_word(open.front() - 1, "WHERE") || is_word(open.front() - 1, "AND");
  if (is_condition && has_several_conditions(open.front())) {
    criteria_begin_ = open.front();
    criteria_end_ = pieces_.size() - 1;
  }
}

// Whether the parentheses that begin at a piece and end the text hold an AND or OR of their own.
bool Layout::has_several_conditions(std::size_t begin) const {
  int depth = 0;
  for (std::size_t i = begin; i < pieces_.size(); ++i) {
    if (pieces_[i].sql.is_symbol('(')) ++depth;
    if (pieces_[i].sql.is_symbol(')')) --depth;
    if (depth == 1 && (is_word(i, "AND") || is_word(i, "OR"))) return true;
  }
  return false;
}

bool Layout::follows_join_word(std::size_t i) const {
  return i > 0 && std::any_of(kBeforeJoin.begin(), kBeforeJoin.end(),
                              [&](std::string_view word) { return is_word(i - 1, word); });
}

std::optional<std::size_t> Layout::line_depth(std::size_t i) const {
  const auto start = std::find_if(kLineStarts.begin(), kLineStarts.end(), [&](const LineStart& s) {
    return is_word(i, s.word) && (s.next.empty() || is_word(i + 1, s.next));
  });
  if (start == kLineStarts.end()) return std::nullopt;
  if (start->word == "JOIN" && follows_join_word(i)) return std::nullopt;
  if (start->word == "AND" && between_) return std::nullopt;
  return in_criteria_ ? kCriteriaDepth : start->depth;
}

void Layout::begin_line(std::size_t depth) {
  if (!out_.empty()) out_ += '\n';
  out_ += indent_;
  out_.append(depth * 2, ' ');
  line_is_empty_ = true;
}

void Layout::add_in_line(const Piece& piece) {
  if (out_.empty()) out_ += indent_;
  if (!line_is_empty_ && piece.blank_before) out_ += ' ';
  out_ += piece.sql.text;
  line_is_empty_ = false;
}

void Layout::note_between(const SqlPiece& piece) {
  if (piece.is_word("BETWEEN")) between_ = true;
  if (piece.is_word("AND")) between_ = false;
}

void Layout::add_nested(std::size_t i) {
  const SqlPiece& piece = pieces_[i].sql;
  if (piece.is_symbol('(') || piece.is_word("CASE")) ++nesting_;
  if (nesting_ > 0 && (piece.is_symbol(')') || piece.is_word("END"))) --nesting_;
  add_in_line(pieces_[i]);
}

void Layout::add(std::size_t i) {
  if (i == criteria_begin_) {
    add_in_line(pieces_[i]);
    in_criteria_ = true;
    begin_line(kCriteriaDepth);
    return;
  }
  if (i == criteria_end_) {
    in_criteria_ = false;
    begin_line(1);
    add_in_line(pieces_[i]);
    return;
  }
  if (nesting_ == 0) {
    if (const std::optional<std::size_t> depth = line_depth(i); depth && !line_is_empty_) {
      begin_line(*depth);
    }
    note_between(pieces_[i].sql);
  }
  add_nested(i);
}

}  // namespace

std::string lay_out_sql(std::string_view sql, std::string_view indent) {
  return Layout(sql, indent).text();
}

}  // namespace kestrova::tool
