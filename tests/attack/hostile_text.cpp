#include "tests/attack/hostile_text.h"

#include <cstddef>
#include <map>
#include <span>

namespace kestrova::test {
namespace {

using std::string_view_literals::operator""sv;

// One way to write a symbol; "{name}" in it is a symbol again.
struct Production {
  std::string_view symbol;
  std::string_view text;
};

// clang-format off
constexpr Production kGrammar[] = {
    {"criterion", "{sign} {value}"},
    {"criterion", "{sign} {value}"},
    {"criterion", "{sign}{value}"},
    {"criterion", "{sign} {classic}"},
    {"criterion", "{sign} {classic}"},
    {"criterion", "{sign} {classic}"},
    {"criterion", "{sign} {classic}"},
    {"criterion", "{sign} '{plain}'"},
    {"criterion", "{sign} {inside}"},
    {"criterion", "{sign} {inside}"},
    {"criterion", "LIKE '%{plain}%'"},
    {"criterion", "IN ('{plain}','{plain}')"},
    {"criterion", "LIKE {pattern}"},
    {"criterion", "LIKE {value}"},
    {"criterion", "IN ({list})"},
    {"criterion", "IN ({list}) "},
    {"criterion", "IN ({list}{escape}"},
    {"criterion", "IN ({list}) {tail}"},
    {"criterion", "IN ({list}"},
    {"criterion", "{sign} {sign} {value}"},
    {"criterion", "{sign} "},
    {"criterion", "{value}"},

    {"sign", "="}, {"sign", "="}, {"sign", "="}, {"sign", ">"}, {"sign", "<"}, {"sign", ">="}, {"sign", "<="}, {"sign", "<>"},

    {"value", "'{word}'"},
    {"value", "'{word}{escape}"},
    {"value", "'{word}{escape}"},
    {"value", "'{word}{tail}"},
    {"value", "'{word}' {tail}"},
    {"value", "{number}"},
    {"value", "{number}{escape}"},
    {"value", "{number} {tail}"},
    {"value", "{date}"},
    {"value", "{inside}"},
    {"value", "{empty}"},
    {"value", "{quotes}"},

    // What stays between the parentheses, however odd it is.
    {"inside", "'{word}' OR '1'='1'"},
    {"inside", "'{plain}' OR '1'='1'"},
    {"inside", "'{plain}' OR 1=1 AND ('1'='1')"},
    {"inside", "{number} OR 1=1"},
    {"inside", "{number} OR (1=1)"},
    {"inside", "(SELECT MAX({column}) FROM {table})"},
    {"inside", "({number}) OR ID IN (SELECT {column} FROM {table})"},
    {"inside", "'{word}' + '{word}'"},
    {"inside", "CASE WHEN 1=1 THEN {number} ELSE {number} END"},
    {"inside", "[{word}]"},
    {"inside", "\"{word}\""},
    {"inside", "ISNULL({number},{number})"},
    {"inside", "'{word}' COLLATE Latin1_General_CI_AS"},
    {"inside", "N'{word}'"},
    {"inside", "'{word};{word}'"},
    {"inside", "'{operator}'"},
    {"inside", "'{word} {operator} {word}'"},

    // What everybody tries, complete to the last quote.
    {"classic", "'{plain}'"},
    {"classic", "'{plain}' OR '1'='1'"},
    {"classic", "'{plain}' OR ID IN (SELECT {column} FROM {table})"},
    {"classic", "'{plain}') OR ('1'='1'"},
    {"classic", "'{plain}') OR '1'='1' OR ('1'='2'"},
    {"classic", "'{plain}') UNION SELECT {column} FROM {table} WHERE ('1'='1'"},
    {"classic", "'{plain}') UNION SELECT {column} FROM {table} --"},
    {"classic", "'{plain}') {statement} SELECT ('1'"},
    {"classic", "'{plain}') {statement} --"},
    {"classic", "'{plain}' OR 1=1 --"},
    {"classic", "{plain}) OR (1=1"},
    {"classic", "{plain}) UNION SELECT {column} FROM {table} WHERE (1=1"},
    {"classic", "{plain}) {statement} SELECT (1"},

    {"plain", "1"}, {"plain", "0"}, {"plain", "17"}, {"plain", "1.5"}, {"plain", "20250301"},

    {"empty", "Null"}, {"empty", "NULL"}, {"empty", "'null'"}, {"empty", "''"}, {"empty", " "}, {"empty", "''''"},

    // What is to lead out of them, once a quote is closed or there was none.
    {"escape", "'{close}{tail}"},
    {"escape", "{close}{tail}"},
    {"escape", "') OR ('1'='1'"},
    {"escape", "') OR ('1'='1"},
    {"escape", ") OR (1=1"},
    {"escape", ") OR 1=1"},
    {"escape", "') UNION SELECT {column} FROM {table} WHERE ('1'='1'"},
    {"escape", ") UNION SELECT {column} FROM {table} WHERE (1=1"},
    {"escape", ") UNION ALL SELECT {column} FROM {table} --"},
    {"escape", "') {statement} SELECT ('1'"},
    {"escape", ") {statement} SELECT (1"},
    {"escape", "') {statement} --"},
    {"escape", ") {statement} --"},
    {"escape", ") {statement} IF (1=1"},
    {"escape", "') OR 1=1 /*"},
    {"escape", ") --"},
    {"escape", "') ORDER BY (ID"},

    {"close", ")"}, {"close", "))"}, {"close", ")]"}, {"close", "\")"}, {"close", "')"}, {"close", ""}, {"close", " ) "}, {"close", ")\n"},

    {"tail", " OR '1'='1"},
    {"tail", " OR '1'='1'"},
    {"tail", " OR 1=1"},
    {"tail", " OR 1=1 --"},
    {"tail", " --"},
    {"tail", "--{word}"},
    {"tail", " /*"},
    {"tail", " /* {word} */"},
    {"tail", "*/ OR /*"},
    {"tail", " - - 1"},
    {"tail", " OR (1=1"},
    {"tail", " OR 1=1)"},
    {"tail", " ) OR ( 1=1"},
    {"tail", ";{statement}"},
    {"tail", "; {statement} --"},
    {"tail", ";{field} = {value}"},
    {"tail", ";=== ODER ===;{field} = {value}"},
    {"tail", "=== ODER ==="},
    {"tail", " UNION SELECT {column} FROM {table}"},
    {"tail", " {statement}"},
    {"tail", " AND 1=0"},
    {"tail", " AND {field} LIKE {pattern}"},
    {"tail", " {operator} {value}"},
    {"tail", "{quotes}"},

    {"statement", "DELETE FROM {table}"},
    {"statement", "DELETE FROM MODELS"},
    {"statement", "DROP TABLE {table}"},
    {"statement", "TRUNCATE TABLE {table}"},
    {"statement", "UPDATE MODELS SET NAME = ''"},
    {"statement", "UPDATE PERSONAL SET ID_ACCESS_LEVELS = 2"},
    {"statement", "INSERT INTO MODELS (NAME,RELATION,STANDARD) VALUES ('x','1VM',1)"},
    {"statement", "SELECT * INTO STOLEN FROM {table}"},
    {"statement", "SELECT * INTO #STOLEN FROM {table}"},
    {"statement", "CREATE TABLE STOLEN (ID int)"},
    {"statement", "EXEC xp_cmdshell 'dir'"},
    {"statement", "EXEC('DELETE FROM MODELS')"},
    {"statement", "BEGIN TRANSACTION"},
    {"statement", "IF 1=1 DELETE FROM MODELS"},
    {"statement", "SET IDENTITY_INSERT MODELS ON"},
    {"statement", "WAITFOR DELAY '0:0:9'"},
    {"statement", "SHUTDOWN"},

    {"table", "MODELS"}, {"table", "PERSONAL"}, {"table", "LOGS"}, {"table", "USERS"}, {"table", "sqlite_master"}, {"table", "SELEKTION"},
    {"column", "-ID"}, {"column", "ID"}, {"column", "-1"}, {"column", "NAME"}, {"column", "*"}, {"column", "ID,NAME"},

    {"pattern", "'%'"}, {"pattern", "'[A-Z]%'"}, {"pattern", "'[^a]_'"}, {"pattern", "'%[[]%'"}, {"pattern", "'[')%'"}, {"pattern", "'%' ESCAPE '\\'"},
    {"pattern", "'%{word}%'"}, {"pattern", "'[{word}"}, {"pattern", "'%{escape}"}, {"pattern", "[{word}]"},

    {"list", "'{word}','{word}'"},
    {"list", "'{word}', '{word} ({word})'"},
    {"list", "'{word} ({word})','{word}'"},
    {"list", "{number},{number}"},
    {"list", "'{word})','{word}'"},
    {"list", "'{word}'',','{word}'"},
    {"list", ",'{word}',,"},
    {"list", "{date},{date}"},
    {"list", "GETDATE()-12345"},
    {"list", "SELECT {column} FROM {table}"},
    {"list", "'{word}'"},
    {"list", "{number}"},
    {"list", ""},

    {"number", "0"}, {"number", "1"}, {"number", "-1"}, {"number", "17"}, {"number", "1.5"}, {"number", "1,5"}, {"number", "1e3"}, {"number", "1E+308"},
    {"number", "9e999"}, {"number", "0x1F"}, {"number", "$5"}, {"number", "99999999999999999999"}, {"number", "1.2.3"}, {"number", "+1"}, {"number", "- 1"},
    {"number", "--1"}, {"number", "1/0"},

    {"date", "GETDATE()"}, {"date", "GETDATE()-30"}, {"date", "GETDATE() + 1.5"}, {"date", "GETDATE())"}, {"date", "(GETDATE()"}, {"date", "GETDATE()-"},
    {"date", "GETDATE() --"}, {"date", "'01.02.2025'"}, {"date", "'2025-02-01'"}, {"date", "'01.02.2025"}, {"date", "+5"}, {"date", "-30"},
    {"date", "01.02.2025"}, {"date", "-30) OR (1=1"}, {"date", "{d '2025-02-01'}"},

    {"operator", "="}, {"operator", "LIKE"}, {"operator", "IN"}, {"operator", "IN ("}, {"operator", "<>"}, {"operator", "BETWEEN 1 AND"}, {"operator", "IS NOT NULL"},

    {"quotes", "'"}, {"quotes", "''"}, {"quotes", "'''"}, {"quotes", "''''"}, {"quotes", "'x''y'"}, {"quotes", "\""}, {"quotes", "\"x"}, {"quotes", "["},
    {"quotes", "]"}, {"quotes", "[x]]"}, {"quotes", "[x]]y]"}, {"quotes", "`x`"}, {"quotes", "\xEF\xBC\x87"}, {"quotes", "\xE2\x80\x99"}, {"quotes", "\xCA\xBC"},

    {"word", "x"}, {"word", "FI"}, {"word", "O''Brien"}, {"word", "O'Brien"}, {"word", "Huber; S\xC3\xB6hne"}, {"word", "Eder (T\xC3\xB6lz)"}, {"word", "a\\"},
    {"word", ""}, {"word", " "}, {"word", "--"}, {"word", "/*"}, {"word", "*/"}, {"word", "("}, {"word", ")"}, {"word", "[a]"}, {"word", "]"}, {"word", "\""},
    {"word", "=== ODER ==="}, {"word", "{operator}"}, {"word", "{x}"}, {"word", "?"}, {"word", "@x"}, {"word", "%"}, {"word", "\xC3\x84"}, {"word", "\xEF\xBC\x87"},
    {"word", "{word}{word}"}, {"word", "{word} {word}"},

    {"suffix", "20 OR 1=1"}, {"suffix", "20 OR 1=1 --"}, {"suffix", "17) OR (1=1"}, {"suffix", "17 {statement}"}, {"suffix", "17;{statement}"}, {"suffix", "17'{tail}"},
    {"suffix", "17{tail}"}, {"suffix", "{number}"}, {"suffix", "{escape}"}, {"suffix", "17 UNION SELECT {column} FROM {table}"}, {"suffix", "(SELECT 17)"}, {"suffix", "17/*"},
    {"suffix", "1 7"}, {"suffix", "x"}, {"suffix", "ID"}, {"suffix", "PERSONAL_ID"}, {"suffix", "'17'"}, {"suffix", "17 "}, {"suffix", "-17"}, {"suffix", "1e1"},

    {"name", "{word}"}, {"name", "{word} {word}"}, {"name", "x'{tail}"}, {"name", "x' OR NAME <> '"}, {"name", "x' OR '1'='1"}, {"name", "x',0,0,0,0,0){statement}--"},
    {"name", "x','1VM',1,1,1,1)--"}, {"name", "x' UNION SELECT MODEL FROM MODELS --"}, {"name", "x' {statement} --"}, {"name", "{quotes}"}, {"name", "{escape}"}, {"name", "Ohne Abfuhr"},
};

// What no keyboard has, and what ends, hides or turns texts somewhere on the way.
constexpr std::string_view kUnusual[] = {
    "\0"sv, "\x01", "\t", "\n", "\r", "\r\n", "\x1A", "\x1B[2J", "\x7F", "\xC2\x80", "\xC2\x85", "\xC2\x9B", "\xC2\xA0", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAE",
    "\xEF\xBB\xBF", "\xE2\x80\x8B", "\xFF", "\xC3", "\xC0\xA7", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xEF\xBC\x87", "\xEF\xBC\x9B", "\xF0\x9F\x8C\xB2",
};

// What a slip of the finger puts in.
constexpr std::string_view kSlips[] = {"'", "''", "\"", "(", ")", "[", "]", ";", "-", "--", "/", "*", "/*", "*/", "\\", " ", ",", "=", "<", ">", "%", "x", "0"};
// clang-format on

constexpr int kDeepest = 8;

// The ways to write each symbol; its productions stand together.
const std::map<std::string_view, std::span<const Production>>& symbols() {
  static const auto all = [] {
    std::map<std::string_view, std::span<const Production>> result;
    for (const Production& production : kGrammar) {
      auto& ways = result.try_emplace(production.symbol, &production, 0U).first->second;
      ways = {ways.data(), ways.size() + 1};
    }
    return result;
  }();
  return all;
}

void write(Dice& dice, std::string_view text, std::string_view field, int depth,
           std::string& result);

void write_symbol(Dice& dice, std::string_view symbol, std::string_view field, int depth,
                  std::string& result) {
  const auto ways = symbols().find(symbol);
  if (symbol == "field") {
    result += field;
  } else if (ways == symbols().end()) {  // braces that stand for themselves
    (result += '{').append(symbol) += '}';
  } else if (depth < kDeepest) {
    write(dice, ways->second[dice.below(ways->second.size())].text, field, depth + 1, result);
  }
}

void write(Dice& dice, std::string_view text, std::string_view field, int depth,
           std::string& result) {
  for (;;) {
    const std::size_t open = text.find('{');
    result += text.substr(0, open);
    if (open == std::string_view::npos) return;
    const std::size_t close = text.find('}', open);
    write_symbol(dice, text.substr(open + 1, close - open - 1), field, depth, result);
    text.remove_prefix(close + 1);
  }
}

void slip(Dice& dice, std::string& text) {
  const std::size_t at = dice.below(text.size() + 1);
  switch (dice.below(4)) {
    case 0:
      text.insert(at, dice.of(kSlips));
      break;
    case 1:
      text.insert(at, dice.of(kUnusual));
      break;
    case 2:
      text.erase(at, 1);
      break;
    default:
      text.insert(at, text.substr(dice.below(text.size() + 1), 1 + dice.below(6)));
      break;
  }
}

std::string hostile(Dice& dice, std::string_view symbol, std::string_view field) {
  std::string text;
  write_symbol(dice, symbol, field, 0, text);
  while (dice.one_in(6)) slip(dice, text);
  if (dice.one_in(2000)) {
    const std::string piece = text + " ";
    while (text.size() < 20'000) text += piece;
  }
  return text;
}

}  // namespace

std::string hostile_criterion(Dice& dice, std::string_view field) {
  return " " + hostile(dice, "criterion", field);
}

std::vector<std::string> hostile_criteria(Dice& dice, std::string_view field,
                                          std::string_view or_line) {
  std::vector<std::string> criteria = {hostile_criterion(dice, field)};
  if (dice.one_in(8)) {
    const std::size_t cut = dice.below(criteria[0].size() + 1);
    criteria.push_back(" = " + criteria[0].substr(cut));
    criteria[0].resize(cut);
    if (dice.one_in(3)) criteria.insert(criteria.begin() + 1, std::string(or_line));
  }
  while (dice.one_in(5)) {
    if (dice.one_in(2)) criteria.emplace_back(or_line);
    criteria.push_back(hostile_criterion(dice, field));
  }
  return criteria;
}

std::string hostile_name(Dice& dice) { return hostile(dice, "name", "NAME"); }

std::string hostile_suffix(Dice& dice) { return hostile(dice, "suffix", "ID"); }

}  // namespace kestrova::test
