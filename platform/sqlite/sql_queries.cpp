// Queries: FROM, SELECT lists, grouping, ordering and unions.
#include <algorithm>
#include <set>

#include "platform/error.h"
#include "platform/sqlite/sql_lexer.h"
#include "platform/sqlite/sql_scope_guard.h"
#include "platform/sqlite/sql_translator.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

// The embedded database takes at most 500 members in one UNION; longer ones are nested.
constexpr std::size_t kUnionBlock = 400;

// "a, b, c".
template <class Items, class Write>
std::string joined(const Items& items, Write write) {
  std::string result;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) result += ", ";
    result += write(i);
  }
  return result;
}

bool is_outer_join(const FromItem& item) {
  if (!item.left) return false;
  return item.join == JoinKind::kRight || item.join == JoinKind::kFull ||
         is_outer_join(*item.left) || is_outer_join(*item.right);
}

}  // namespace

std::string item_name(std::size_t position) {
  std::string name = "u";
  name += std::to_string(position);
  return quoted_name(name);
}

void Translator::fail(const std::string& message, std::size_t offset, int native_code,
                      const std::string& sqlstate) const {
  const std::size_t position = text::length(batch_.substr(0, offset)) + 1;
  throw DatabaseError(message + " (position " + std::to_string(position) + ")", sqlstate,
                      native_code);
}

const Table& Translator::table(const TableName& name) {
  const Table* found = schema_.find(name.name);
  if (!found) throw DatabaseError("Invalid object name '" + name.name + "'.", "42S02", 208);
  return *found;
}

TranslatedQuery Translator::query(const Query& query, bool with_row_number) {
  WrittenQuery written = write_query(query, Naming::kFree, with_row_number, true);
  TranslatedQuery result;
  result.sql = std::move(written.sql);
  for (std::size_t i = 0; i < written.items.size(); ++i) {
    result.columns.push_back({written.names[i], written.items[i].type,
                              written.row_table ? written.items[i].column : ""});
  }
  if (written.row_table) result.row_table = *written.row_table;
  return result;
}

Translator::WrittenQuery Translator::write_query(const Query& query, Naming naming,
                                                 bool with_row_number, bool top_level) {
  if (!query.order_by.empty() && !top_level && query.members.size() == 1) {
    const auto* select = std::get_if<Select>(&query.members[0].body);
    if (select && !select->top) {
      fail(
          "The ORDER BY clause is invalid in derived tables and subqueries unless TOP is "
          "specified.",
          query.offset, 1033);
    }
  }
  std::vector<Block> blocks;
  for (const Member& member : query.members) {
    if (const auto* select = std::get_if<Select>(&member.body)) {
      static const std::vector<OrderItem> kNone;
      blocks.push_back(write_block(*select, query.members.size() == 1 ? query.order_by : kNone));
    } else {
      WrittenQuery inner =
          write_query(*std::get<QueryPtr>(member.body), Naming::kNamed, false, false);
      Block block;
      for (std::size_t i = 0; i < inner.items.size(); ++i) {
        Fragment item;
        item.sql = item_name(i);
        item.type = inner.items[i].type;
        item.collated = item.type.is_text();
        block.items.push_back(item);
      }
      block.names = inner.names;
      block.single_row = inner.single_row;
      block.tail = " FROM (" + inner.sql + ")";
      blocks.push_back(std::move(block));
    }
  }

  WrittenQuery result;
  result.names = blocks[0].names;
  const bool single = blocks.size() == 1;
  if (single) {
    Block& block = blocks[0];
    const std::string order = write_order(query.order_by, block, true);
    std::string extra;
    if (with_row_number && block.scope && block.scope->sources.size() == 1 &&
        block.scope->sources[0].table && !block.distinct && !block.scope->grouped) {
      result.row_table = block.scope->sources[0].table;
      extra = quoted_name(block.scope->sources[0].name) + "._rowid_";
    }
    result.sql = put_together(block, naming, extra) + order;
    if (block.top) result.sql += " LIMIT " + std::to_string(*block.top);
    result.single_row = block.single_row || (block.top && *block.top <= 1);
  } else {
    result.sql = write_union(query, blocks, naming);
    result.sql += write_order(query.order_by, blocks[0], false);
  }
  for (const Fragment& item : blocks[0].items) {
    Fragment output;
    output.type = item.type;
    output.column = item.column;
    result.items.push_back(std::move(output));
  }
  return result;
}

Translator::Block Translator::write_block(const Select& select,
                                          const std::vector<OrderItem>& order_by) {
  if (select.into) fail("INTO is not allowed here.", select.into->offset, 156);
  Block block;
  block.scope = std::make_unique<Scope>();
  const ScopeGuard guard(scope_, *block.scope);
  block.distinct = select.distinct;
  block.top = select.top;

  for (const auto& item : select.from) {
    const bool first = block.tail.empty();
    scope_->first_visible = scope_->sources.size();
    std::string from = write_from(*item);
    // A comma binds less than a join; for inner and left joins the difference does not show.
    if (!first && is_outer_join(*item)) from = "(" + from + ")";
    block.tail += (first ? " FROM " : ", ") + from;
  }
  scope_->first_visible = 0;
  if (select.where) block.tail += " WHERE " + condition(*select.where);

  bool grouped = !select.group_by.empty() || select.having;
  for (const SelectItem& item : select.items)
    grouped = grouped || (item.expr && has_aggregate(*item.expr));
  for (const OrderItem& item : order_by) grouped = grouped || has_aggregate(*item.expr);
  std::string group;
  for (const ExprPtr& key : select.group_by) {
    const Fragment written = value(*key);
    if (written.number_literal || written.text_literal) {
      fail(
          "Each GROUP BY expression must contain at least one column that is not an outer "
          "reference.",
          key->offset, 164);
    }
    block.scope->group_keys.push_back(written.sql);
    group += (group.empty() ? " GROUP BY " : ", ") + collated(written);
  }
  scope_->grouped = grouped;
  scope_->phase = Phase::kGroups;
  block.tail += group;
  if (select.having) block.tail += " HAVING " + item_condition(*select.having);
  for (const SelectItem& item : select.items) add_items(block, item);
  block.single_row = grouped && select.group_by.empty();
  if (select.from.empty()) block.single_row = true;
  return block;
}

void Translator::add_items(Block& block, const SelectItem& item) {
  if (item.expr) {
    block.items.push_back(item_value(*item.expr));
    std::string name = item.alias;
    if (name.empty() && item.expr->kind == ExprKind::kColumn) name = item.expr->text;
    block.names.push_back(name);
    return;
  }
  const std::string wanted = text::upper(item.star_qualifier);
  bool found = false;
  for (const Source& source : scope_->sources) {
    if (!wanted.empty() && source.upper_name != wanted) continue;
    found = true;
    for (const SourceColumn& source_column : source.columns) {
      Fragment fragment;
      fragment.sql = quoted_name(source.name) + "." + quoted_name(source_column.name);
      fragment.type = source_column.type;
      fragment.collated = true;
      if (source_column.of_table) fragment.column = source_column.name;
      if (scope_->grouped && std::find(scope_->group_keys.begin(), scope_->group_keys.end(),
                                       fragment.sql) == scope_->group_keys.end()) {
        scope_->ungrouped.push_back(source_column.name);
        check_grouped(item.offset);
      }
      block.items.push_back(std::move(fragment));
      block.names.push_back(source_column.name);
    }
  }
  if (found) return;
  if (wanted.empty()) fail("Must specify table to select from.", item.offset, 263);
  fail("The column prefix '" + item.star_qualifier +
           "' does not match with a table name or alias name.",
       item.offset, 107);
}

void Translator::check_names(const std::vector<std::string>& names, const std::string& object) {
  std::set<std::string> seen;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i].empty()) {
      throw DatabaseError("No column name was specified for column " + std::to_string(i + 1) +
                              " of '" + object + "'.",
                          "42000", 8155);
    }
    if (!seen.insert(text::upper(names[i])).second) {
      throw DatabaseError(
          "The column '" + names[i] + "' was specified multiple times for '" + object + "'.",
          "42000", 8156);
    }
  }
}

std::string Translator::put_together(const Block& block, Naming naming,
                                     const std::string& extra_item) {
  std::string result = block.distinct ? "SELECT DISTINCT " : "SELECT ";
  result += joined(block.items, [&](std::size_t i) {
    std::string item = collated(block.items[i]);
    if (naming == Naming::kNamed) item += " AS " + item_name(i);
    return item;
  });
  if (!extra_item.empty()) result += ", " + extra_item;
  return result + block.tail;
}

std::string Translator::write_order(const std::vector<OrderItem>& order_by, Block& block,
                                    bool single) {
  if (order_by.empty()) return {};
  std::string result = " ORDER BY ";
  std::optional<ScopeGuard> guard;
  if (block.scope) guard.emplace(scope_, *block.scope);
  std::set<std::string> seen;
  for (std::size_t i = 0; i < order_by.size(); ++i) {
    const std::string term = order_term(order_by[i], block, single);
    if (!seen.insert(term).second) {
      fail("A column has been specified more than once in the order by list.",
           order_by[i].expr->offset, 169);
    }
    result += (i > 0 ? ", " : "") + term + (order_by[i].descending ? " DESC" : "");
  }
  return result;
}

std::string Translator::order_term(const OrderItem& item, Block& block, bool single) {
  const Expr& expr = *item.expr;
  if (expr.kind == ExprKind::kInteger) {
    const auto position = text::to_integer(expr.text);
    if (!position || *position < 1 || static_cast<std::size_t>(*position) > block.items.size()) {
      fail("The ORDER BY position number " + expr.text +
               " is out of range of the number of items in the select list.",
           expr.offset, 108);
    }
    return std::to_string(*position);
  }
  if (expr.kind == ExprKind::kColumn && expr.qualifier.empty()) {
    const std::string wanted = text::upper(expr.text);
    std::size_t found = block.names.size();
    for (std::size_t i = 0; i < block.names.size(); ++i) {
      if (text::upper(block.names[i]) != wanted) continue;
      if (found < block.names.size() && block.items[found].sql != block.items[i].sql) {
        fail("Ambiguous column name '" + expr.text + "'.", expr.offset, 209);
      }
      found = std::min(found, i);
    }
    if (found < block.names.size()) return std::to_string(found + 1);
  }
  if (!single) {
    fail(
        "ORDER BY items must appear in the select list if the statement contains a UNION operator.",
        expr.offset, 104);
  }
  const Fragment written = item_value(expr);
  if (written.number_literal || written.text_literal || expr.kind == ExprKind::kNull) {
    fail("A constant expression was encountered in the ORDER BY list.", expr.offset, 408);
  }
  for (std::size_t i = 0; i < block.items.size(); ++i) {
    if (block.items[i].sql == written.sql) return std::to_string(i + 1);
  }
  if (block.distinct) {
    fail("ORDER BY items must appear in the select list if SELECT DISTINCT is specified.",
         expr.offset, 145);
  }
  return collated(written);
}

std::string Translator::write_union(const Query& query, std::vector<Block>& blocks, Naming naming) {
  std::vector<SqlType> types;
  for (const Fragment& item : blocks[0].items) types.push_back(item.type);
  for (const Block& block : blocks) {
    if (block.items.size() != types.size()) {
      fail(
          "All queries combined using a UNION operator must have an equal number of expressions in "
          "their target lists.",
          query.offset, 205);
    }
    for (std::size_t i = 0; i < types.size(); ++i) {
      types[i] = common_type(types[i], block.items[i].type);
    }
  }
  std::vector<std::string> members;
  std::size_t last_distinct = 0;
  for (std::size_t m = 0; m < blocks.size(); ++m) {
    for (std::size_t i = 0; i < types.size(); ++i) {
      blocks[m].items[i] = convert(std::move(blocks[m].items[i]), types[i], query.offset);
      blocks[m].items[i].type = types[i];
      blocks[m].items[i].column.clear();
    }
    std::string sql = put_together(blocks[m], m == 0 ? naming : Naming::kFree, "");
    if (blocks[m].top)
      sql = "SELECT * FROM (" + sql + " LIMIT " + std::to_string(*blocks[m].top) + ")";
    members.push_back(std::move(sql));
    if (m > 0 && !query.members[m].all) last_distinct = m;
  }
  // The last plain UNION makes everything before it distinct; only what follows keeps its doubles.
  const auto combine = [](const std::vector<std::string>& parts, std::size_t begin,
                          std::size_t end) {
    std::string result;
    for (std::size_t i = begin; i < end; ++i) result += (i > begin ? " UNION ALL " : "") + parts[i];
    return result;
  };
  const auto nested = [&](std::vector<std::string> parts) {
    while (parts.size() > kUnionBlock) {
      std::vector<std::string> outer;
      for (std::size_t i = 0; i < parts.size(); i += kUnionBlock) {
        // The limit keeps the embedded database from dissolving the nesting again.
        outer.push_back("SELECT * FROM (" +
                        combine(parts, i, std::min(i + kUnionBlock, parts.size())) + " LIMIT -1)");
      }
      parts = std::move(outer);
    }
    return combine(parts, 0, parts.size());
  };
  const auto split =
      members.begin() + static_cast<std::ptrdiff_t>(last_distinct == 0 ? 0 : last_distinct + 1);
  // Not its own UNION: that writes every row into one tree, and texts that are equal but of another
  // length break it.
  std::string distinct_part;
  if (last_distinct > 0) {
    distinct_part = "SELECT DISTINCT * FROM (" + nested({members.begin(), split}) + ")";
  }
  if (split == members.end()) return distinct_part;
  std::vector<std::string> rest(split, members.end());
  if (!distinct_part.empty()) {
    rest.insert(rest.begin(), "SELECT * FROM (" + distinct_part + " LIMIT -1)");
  }
  return nested(std::move(rest));
}

std::string Translator::write_from(const FromItem& item) {
  if (item.left) return write_join(item);
  Source source;
  std::string sql;
  if (item.query) {
    source.name = item.alias;
    // A derived table does not see the tables beside it.
    Scope* const beside = scope_;
    scope_ = scope_->outer;
    WrittenQuery inner = write_query(*item.query, Naming::kNamed, false, false);
    scope_ = beside;
    check_names(inner.names, item.alias);
    std::string columns;
    for (std::size_t i = 0; i < inner.names.size(); ++i) {
      source.columns.push_back(
          {inner.names[i], text::upper(inner.names[i]), inner.items[i].type, false});
      columns += (i > 0 ? ", " : "") + item_name(i) + " AS " + quoted_name(inner.names[i]);
    }
    sql = "(SELECT " + columns + " FROM (" + inner.sql + "))";
  } else {
    const Table& found = table(item.table);
    source.name = item.alias.empty() ? found.name : item.alias;
    source.table = &found;
    for (const Column& c : found.columns) {
      source.columns.push_back({c.name, text::upper(c.name), c.type, true});
    }
    sql = found.sql_name();
  }
  sql += " AS " + quoted_name(source.name);
  add_source(std::move(source), item.offset);
  return sql;
}

void Translator::add_source(Source source, std::size_t offset) {
  source.upper_name = text::upper(source.name);
  for (const Source& other : scope_->sources) {
    if (other.upper_name == source.upper_name) {
      fail("The objects \"" + source.name + "\" and \"" + other.name +
               "\" in the FROM clause have the same exposed names. Use correlation names to "
               "distinguish them.",
           offset, 1013);
    }
  }
  scope_->sources.push_back(std::move(source));
}

std::string Translator::write_join(const FromItem& item) {
  // The condition of a join sees the tables of the join only.
  const std::size_t outer_first = scope_->first_visible;
  const std::size_t first = scope_->sources.size();
  std::string sql = write_from(*item.left);
  constexpr const char* kJoins[] = {" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN ", " FULL JOIN ",
                                    " INNER JOIN "};
  sql += kJoins[static_cast<std::size_t>(item.join)];
  const std::string right = write_from(*item.right);
  sql += item.right->left ? "(" + right + ")" : right;
  if (item.on) {
    scope_->first_visible = first;
    sql += " ON " + condition(*item.on);
    scope_->first_visible = outer_first;
  }
  return sql;
}

bool Translator::has_aggregate(const Expr& expr) {
  static const std::set<std::string, std::less<>> kAggregates = {"COUNT", "COUNT_BIG", "SUM",
                                                                 "MIN",   "MAX",       "AVG"};
  if (expr.kind == ExprKind::kFunction && kAggregates.contains(expr.text)) return true;
  return std::any_of(expr.parts.begin(), expr.parts.end(),
                     [](const ExprPtr& part) { return has_aggregate(*part); });
}

}  // namespace kestrova::sql
