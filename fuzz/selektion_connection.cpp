#include "fuzz/selektion_connection.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::fuzz {
namespace {

struct Column {
  std::string_view name;
  Value (*value)(const Field&);
};

Value text_or_null(std::string_view text) {
  return text.empty() ? Value() : Value(std::string(text));
}

constexpr std::string_view kMain = "LAGER";

// clang-format off
const Column kColumns[] = {
    {"ID_SELEKTION", [](const Field& f) { return Value(f.id); }},
    {"NAME_OF_FIELD", [](const Field& f) { return text_or_null(f.name); }},
    {"TABLE_NAME", [](const Field&) { return text_or_null(kMain); }},
    {"TABLE_NAME_II", [](const Field& f) { return text_or_null(f.join.empty() ? "" : "HOLZART"); }},
    {"TABLE_NAME_III", [](const Field& f) { return text_or_null(f.join == "TRIPLE" ? "GRUPPE" : ""); }},
    {"SQLSELECT", [](const Field& f) { return text_or_null(f.join); }},
    {"SQLVALUE", [](const Field& f) { return text_or_null(f.expression); }},
    {"CONDITION", [](const Field& f) { return text_or_null(f.join.empty() ? "" : "LAGER.ID_HA = HOLZART.ID"); }},
    {"CONDITIONII", [](const Field& f) { return text_or_null(f.join == "TRIPLE" ? "HOLZART.ID_GR = GRUPPE.ID" : ""); }},
};
// clang-format on

class FieldRows final : public Recordset {
 public:
  explicit FieldRows(std::vector<const Field*> fields) : fields_(std::move(fields)) {}

  bool eof() const override { return at_ >= fields_.size(); }
  void move_first() override { at_ = 0; }
  void move_next() override {
    current();
    ++at_;
  }
  void find(std::string_view) override { throw BadCriterion("Nobody searches here."); }
  std::size_t column_count() const override { return std::size(kColumns); }
  std::string column_name(std::size_t position) const override {
    return std::string(kColumns[position].name);
  }
  Value value(std::string_view name) const override { return column(name).value(current()); }
  Value value(std::size_t position) const override { return kColumns[position].value(current()); }
  FieldType type(std::string_view) const override { return FieldType::kVarWChar; }
  FieldType type(std::size_t) const override { return FieldType::kVarWChar; }
  void set_value(std::string_view, const Value&) override { throw DatabaseError("read-only"); }
  void update() override { throw DatabaseError("read-only"); }
  void close() override {}

 private:
  const Field& current() const {
    if (eof()) throw NoCurrentRecord("The row set stands at its end.");
    return *fields_[at_];
  }
  static const Column& column(std::string_view name) {
    for (const Column& column : kColumns) {
      if (column.name == name) return column;
    }
    throw ItemNotFound("There is no column " + std::string(name));
  }

  std::vector<const Field*> fields_;
  std::size_t at_ = 0;
};

// No rows, and one column of the type.
class EmptyRows final : public Recordset {
 public:
  explicit EmptyRows(FieldType type) : type_(type) {}

  bool eof() const override { return true; }
  void move_first() override {}
  void move_next() override { throw NoCurrentRecord("There are no rows."); }
  void find(std::string_view) override {}
  std::size_t column_count() const override { return 1; }
  std::string column_name(std::size_t) const override { return "FIELD"; }
  Value value(std::string_view) const override { throw NoCurrentRecord("There are no rows."); }
  Value value(std::size_t) const override { throw NoCurrentRecord("There are no rows."); }
  FieldType type(std::string_view) const override { return type_; }
  FieldType type(std::size_t) const override { return type_; }
  void set_value(std::string_view, const Value&) override { throw DatabaseError("read-only"); }
  void update() override { throw DatabaseError("read-only"); }
  void close() override {}

 private:
  FieldType type_;
};

// What a query for the type of a column looks like.
std::string type_query(const Field& field) {
  const std::size_t dot = field.expression.find('.');
  if (dot == std::string_view::npos) {
    return "SELECT TOP 0 " + std::string(field.name) + " FROM " + std::string(kMain);
  }
  return "SELECT TOP 0 " + std::string(field.expression.substr(dot + 1)) + " FROM HOLZART";
}

class SelektionConnection final : public Connection {
 public:
  std::unique_ptr<Recordset> open(std::string_view source, CursorType, LockType) override {
    if (source.starts_with("SELECT TOP 0 ")) return empty_rows(source);
    constexpr std::string_view wanted = "ID_SELEKTION = ";
    std::vector<const Field*> found;
    for (std::size_t at = source.find(wanted); at != std::string_view::npos;
         at = source.find(wanted)) {
      source.remove_prefix(at + wanted.size());
      const std::string_view number = source.substr(0, source.find(' '));
      if (const Field* const known = field(text::to_int16(number))) found.push_back(known);
    }
    return std::make_unique<FieldRows>(std::move(found));
  }

  std::int64_t execute(std::string_view) override {
    throw DatabaseError("Translating a filter executes nothing.");
  }
  ConnectionKind kind() const override { return ConnectionKind::kSqlServer; }

 private:
  static std::unique_ptr<Recordset> empty_rows(std::string_view source) {
    static const auto types = [] {
      std::vector<std::pair<std::string, FieldType>> all;
      for (const Field& known : kFields) all.emplace_back(type_query(known), known.type);
      return all;
    }();
    for (const auto& [query, type] : types) {
      if (query == source) return std::make_unique<EmptyRows>(type);
    }
    throw DatabaseError("There is no such column: " + std::string(source));
  }
};

}  // namespace

const Field* field(int id) {
  const auto* const found = std::find_if(std::begin(kFields), std::end(kFields),
                                         [id](const Field& f) { return f.id == id; });
  return found == std::end(kFields) ? nullptr : found;
}

std::shared_ptr<Connection> make_selektion_connection() {
  return std::make_shared<SelektionConnection>();
}

}  // namespace kestrova::fuzz
