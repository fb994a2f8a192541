// The relation codes: which treatment a relation gets and which table its records live in.
//
// A relation code names a suite module's record set ("1EXP", "2ABR3-A", "BELEG_BB"). It is compared
// as it stands, case included, except for the prefixes that are marked otherwise in the tables. An
// unknown code is no error: it is neither restricted nor in the catalogue and has no table key.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova {

// Whether the records of the relation are filtered through the suite's access-level service
// (ApplyAccessLevels).
bool IsRestrictedRelation(std::string_view code);

// Whether the relation has an entry in the suite's catalogue (GetRelationFromWhere and
// GetRelationTableKey). A code may be restricted and in the catalogue, one of them, or neither.
bool IsCatalogueRelation(std::string_view code);

// The key under which the suite's table-access service knows the relation's main table, or "".
std::string_view GetRelationTableKey(std::string_view code);

// The table key by which ApplyAccessLevels asks for the fields of a relation. It differs from
// GetRelationTableKey for relations without a catalogue entry, and is never empty for a code
// outside the "HIZBB_SELEKTION_" family.
std::string_view access_table_key(std::string_view code);

// What a relation code carries behind its first four characters, as it stands: the personnel number
// of "4ARB17", "4PLN17" or "4PAG17"; "" for none. It becomes part of a condition as it is, so that
// it must be digits, with or without blanks around them: raises InvalidArgument for anything else.
std::string_view personnel_number(std::string_view code);

// The number that a contract's code carries behind its first five characters ("VERTP12"), 0 for
// none. Raises InvalidArgument unless it is digits, with or without blanks around them, and
// Overflow beyond 32 bits.
std::int32_t contract_number(std::string_view code);

// A relation code together with what the tables say about it, for operations that ask many times.
// Refers to the text of the code.
struct Relation {
  explicit Relation(std::string&&) = delete;
  explicit Relation(std::string_view relation_code)
      : code(relation_code),
        restricted(IsRestrictedRelation(relation_code)),
        catalogue(IsCatalogueRelation(relation_code)),
        table_key(GetRelationTableKey(relation_code)),
        access_key(access_table_key(relation_code)) {}

  std::string_view code;
  bool restricted;
  bool catalogue;
  std::string_view table_key;
  std::string_view access_key;
};

// All codes that the tables name, each once, in the order of the tables: exact codes with their
// runs written out, and prefixes, which end in "*".
std::vector<std::string> known_relation_codes();

}  // namespace kestrova
