// The tables of catalogue.sql in memory, in the shape in which the services ask for them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/database.h"

namespace kestrova::standalone {

// Lets a map with text keys be searched without making a text.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view s) const noexcept {
    return std::hash<std::string_view>{}(s);
  }
};

template <class T>
using TextMap = std::unordered_map<std::string, T, TextHash, std::equal_to<>>;

// A table that a field needs beyond the base FROM.
struct FieldTable {
  std::string name;  // under which conditions refer to it, in upper case
  std::string join_text;
};

struct Field {
  std::string expression;
  std::string format;
  std::vector<FieldTable> tables;
};

// A field as a list offers it.
struct OfferedField {
  std::int32_t number;
  std::int32_t text_number;
};

struct TableKey {
  std::string base_from;
  std::unordered_map<std::int32_t, Field> fields;
  std::vector<OfferedField> offered;  // those with a display text, by number
};

// Field numbers of one relation by field identifier.
using FieldNumbers = std::unordered_map<std::int32_t, std::int32_t>;

struct Catalogue {
  TextMap<TableKey> table_keys;
  TextMap<std::vector<OfferedField>> field_lists;
  TextMap<FieldNumbers> exact_relations;
  std::vector<std::pair<std::string, FieldNumbers>> relation_prefixes;  // upper case, longest first
  TextMap<std::string> restrictions;                                    // by table in upper case
  TextMap<std::string> texts;
};

// Raises ItemNotFound for a field of a table key that there is not and for a table of a field that
// there is not, InvalidArgument for a join text that does not join its table and for two join texts
// of one table key that give different tables the same name: the second would never be joined.
Catalogue read_catalogue(Connection& connection);

// A value that is read when it is first asked for, and read again as long as reading has failed.
template <class T>
class ReadOnce {
 public:
  explicit ReadOnce(std::function<T()> read) : read_(std::move(read)) {}

  const T& get() const {
    if (!value_) value_.emplace(read_());
    return *value_;
  }

 private:
  std::function<T()> read_;
  mutable std::optional<T> value_;
};

// The one copy of the catalogue that the services of a suite share.
using SharedCatalogue = std::shared_ptr<const ReadOnce<Catalogue>>;

}  // namespace kestrova::standalone
