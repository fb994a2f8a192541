#include "platform/standalone/table_access.h"

#include <algorithm>

#include "platform/error.h"
#include "platform/standalone/conditions.h"
#include "platform/text.h"

namespace kestrova::standalone {
namespace {

constexpr std::string_view kReverse = "_REVERS";

const TableKey& find_table_key(const Catalogue& catalogue, std::string_view table_key) {
  const auto found = catalogue.table_keys.find(table_key);
  if (found == catalogue.table_keys.end()) {
    throw ItemNotFound("There is no table key '" + std::string(table_key) + "'.");
  }
  return found->second;
}

const Field& find_field(const Catalogue& catalogue, std::string_view table_key,
                        std::int32_t number) {
  const TableKey& key = find_table_key(catalogue, table_key);
  const auto found = key.fields.find(number);
  if (found == key.fields.end()) {
    throw ItemNotFound("The table key '" + std::string(table_key) + "' has no field " +
                       std::to_string(number) + ": the field is not offered.");
  }
  return found->second;
}

bool is_blank(std::string_view text) { return text::trim(text).empty(); }

}  // namespace

void CatalogueTableAccess::FillFieldList(std::string_view list_key, EntryList& list,
                                         const KesVar& context, std::int32_t) {
  std::vector<ListEntry> entries;
  if (const auto* fields = offered_fields(list_key)) {
    for (const OfferedField& field : *fields) {
      entries.push_back({texts_->GetText(field.text_number, context), field.number});
    }
  }
  list.clear();
  for (const ListEntry& entry : entries) {
    list.add(entry.text);
    list.set_item_data(list.new_index(), entry.item_data);
  }
}

const std::vector<OfferedField>* CatalogueTableAccess::offered_fields(
    std::string_view list_key) const {
  const Catalogue& catalogue = catalogue_->get();
  const auto fields = catalogue.field_lists.find(list_key);
  if (fields != catalogue.field_lists.end()) return &fields->second;
  const auto key = catalogue.table_keys.find(list_key);
  return key == catalogue.table_keys.end() ? nullptr : &key->second.offered;
}

std::int32_t CatalogueTableAccess::MapFieldId(std::string_view relation, std::int32_t field_id) {
  for (const FieldNumbers* numbers : known_relation(relation).numbers) {
    const auto found = numbers->find(field_id);
    if (found != numbers->end()) return found->second;
  }
  return 0;
}

const CatalogueTableAccess::KnownRelation& CatalogueTableAccess::known_relation(
    std::string_view relation) {
  const Catalogue& catalogue = catalogue_->get();
  if (relation_ && relation_->relation == relation) return *relation_;
  KnownRelation& known = relation_.emplace(KnownRelation{std::string(relation), {}});
  const auto exact = catalogue.exact_relations.find(relation);
  if (exact != catalogue.exact_relations.end()) known.numbers.push_back(&exact->second);
  if (relation.ends_with(kReverse)) return known;
  const std::string upper_relation = text::upper(relation);
  for (const auto& [prefix, numbers] : catalogue.relation_prefixes) {
    if (upper_relation.starts_with(prefix)) known.numbers.push_back(&numbers);
  }
  return known;
}

std::string CatalogueTableAccess::AddFieldTables(std::string_view table_key,
                                                 std::int32_t field_number,
                                                 std::string_view from_text, std::string_view,
                                                 const KesVar&) {
  if (table_key.empty()) return std::string(from_text);
  const Catalogue& catalogue = catalogue_->get();
  const TableKey& key = find_table_key(catalogue, table_key);
  const std::string_view start = is_blank(from_text) ? std::string_view(key.base_from) : from_text;
  if (field_number == 0) return std::string(start);
  const Field& field = find_field(catalogue, table_key, field_number);
  if (field.tables.empty()) return std::string(start);
  known_from(start);
  for (const FieldTable& table : field.tables) {
    if (!from_.names.contains(table.name)) append_to_known_from(" " + table.join_text, table.name);
  }
  return from_.text;
}

const CatalogueTableAccess::KnownFrom& CatalogueTableAccess::known_from(
    std::string_view from_text) {
  if (from_.text == from_text) return from_;
  from_ = {std::string(from_text), {}};
  for (FromTable& table : tables_in(from_text)) from_.names.insert(std::move(table.name));
  return from_;
}

void CatalogueTableAccess::append_to_known_from(std::string_view addition,
                                                const std::string& name) {
  from_.text += addition;
  from_.names.insert(name);
}

std::string CatalogueTableAccess::GetFieldExpression(std::string_view table_key,
                                                     std::int32_t field_number, std::int32_t,
                                                     std::int32_t, const KesVar&) {
  return find_field(catalogue_->get(), table_key, field_number).expression;
}

std::string CatalogueTableAccess::field_format(std::string_view table_key,
                                               std::int32_t field_number, const KesVar&) {
  return find_field(catalogue_->get(), table_key, field_number).format;
}

std::string CatalogueTableAccess::AddTable(std::string_view from_text, std::string_view table,
                                           std::string_view) {
  const std::string_view added = text::trim(table);
  if (added.empty()) return std::string(from_text);
  if (is_blank(from_text)) return std::string(added);
  const auto& names = known_from(from_text).names;
  const std::vector<FromTable> wanted = tables_in(added);
  const bool is_there =
      !wanted.empty() && std::all_of(wanted.begin(), wanted.end(),
                                     [&](const FromTable& t) { return names.contains(t.name); });
  if (is_there) return std::string(from_text);
  return std::string(from_text) + ", " + std::string(added);
}

std::string CatalogueTableAccess::AddCondition(std::string_view condition,
                                               std::string_view further) {
  return joined_by_and(condition, further);
}

std::string CatalogueTableAccess::order_restriction(const KesVar&) {
  const auto& texts = catalogue_->get().texts;
  const auto found = texts.find("ORDER_RESTRICTION");
  return found == texts.end() ? std::string() : found->second;
}

}  // namespace kestrova::standalone
