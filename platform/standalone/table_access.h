// FROM texts and field expressions out of the catalogue.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/standalone/catalogue.h"
#include "platform/standalone/from_text.h"
#include "platform/suite.h"

namespace kestrova::standalone {

// Run types and options are accepted and change no text: the catalogue knows one form of each.
// Table keys, list keys and exact relation codes are compared exactly, table names ignoring case.
class CatalogueTableAccess : public TableAccessService {
 public:
  CatalogueTableAccess(SharedCatalogue catalogue, std::shared_ptr<LocTexts> texts)
      : catalogue_(std::move(catalogue)), texts_(std::move(texts)) {}

  // The list is cleared first; when a text cannot be read it stays as it was.
  void FillFieldList(std::string_view list_key, EntryList& list, const KesVar& context,
                     std::int32_t option) override;

  // Row by row: an exact row of the relation, else the row of the longest prefix that has this
  // identifier. A prefix serves no "..._REVERS" code: the numbers there mean something else.
  std::int32_t MapFieldId(std::string_view relation, std::int32_t field_id) override;

  // A from_text that is not empty gets the tables of the field only, not the base FROM, even when
  // the main table is not in it: whoever began the text decides what it selects from. Raises
  // ItemNotFound also for a table key that there is not.
  std::string AddFieldTables(std::string_view table_key, std::int32_t field_number,
                             std::string_view from_text, std::string_view run_type,
                             const KesVar& context) override;

  std::string GetFieldExpression(std::string_view table_key, std::int32_t field_number,
                                 std::int32_t option1, std::int32_t option2,
                                 const KesVar& context) override;
  std::string field_format(std::string_view table_key, std::int32_t field_number,
                           const KesVar& context) override;

  // The table is put behind a comma, which is valid behind tables and behind joins alike; the join
  // condition belongs to the WHERE text.
  std::string AddTable(std::string_view from_text, std::string_view table,
                       std::string_view run_type) override;

  std::string AddCondition(std::string_view condition, std::string_view further) override;

  // The text ORDER_RESTRICTION, "" without one.
  std::string order_restriction(const KesVar& context) override;

 private:
  // The names of the tables in one FROM text. A translation asks about the same growing text again
  // and again, so the last one is kept; it is known by its content.
  struct KnownFrom {
    std::string text;
    std::unordered_set<std::string> names;
  };

  // The field numbers that serve a relation, first that of its own, then by falling prefix length.
  struct KnownRelation {
    std::string relation;
    std::vector<const FieldNumbers*> numbers;
  };

  const std::vector<OfferedField>* offered_fields(std::string_view list_key) const;
  const KnownFrom& known_from(std::string_view from_text);
  const KnownRelation& known_relation(std::string_view relation);
  void append_to_known_from(std::string_view addition, const std::string& name);

  SharedCatalogue catalogue_;
  std::shared_ptr<LocTexts> texts_;
  KnownFrom from_;
  std::optional<KnownRelation> relation_;
};

}  // namespace kestrova::standalone
