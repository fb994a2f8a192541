// A stored filter translated: its SQL, and its criteria in readable form.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tools/criteria_check.h"
#include "tools/options.h"
#include "tools/session.h"

namespace kestrova::tool {

struct Translation {
  std::string code;
  std::string mode;                 // "" for a catalogue relation, which has none
  std::string from_where;           // exactly what the library answers
  bool fills_labour_table = false;  // "#BB_LEISTUNGS_KOPF" now holds the records of the relation
};

// The filter with the criteria of the saved model that it names; as it stands when it names none.
// The library would take a model that is not there for one without criteria, and select every
// record of the relation: raises InvalidArgument instead.
Filter with_model_criteria(const Session& session, const Filter& filter);

// A filter that names a model must come from with_model_criteria, and is translated by that name.
// Raises the library's errors, with a hint where a field is unknown, BadCriterion for a filter that
// check_criteria refuses and InvalidArgument for a relation that is not known.
Translation translate(const Session& session, const Filter& filter);

// The select list by which people recognise a record of the relation, "*" when none is known.
std::string row_columns(const Session& session, const Translation& translation);

// A SELECT of a module: select list and FROM/WHERE text, joined with the labour table where the
// translation has filled it. It has no TOP clause.
std::string select_text(const Translation& translation, std::string_view columns);

// Lets the database read the module's SELECT without asking for rows. Raises DatabaseError, which
// names the criterion at fault when it can be told.
void prepare(const Session& session, const Filter& filter, const Translation& translation,
             std::string_view columns);

// Opens the SELECT without asking for rows. Raises the DatabaseError as it is.
void open_without_rows(const Session& session, const Translation& translation,
                       std::string_view columns);

// The records of its criteria string, without the nothing behind the last ";". They refer to it.
std::vector<std::string_view> records_of(const Filter& filter);

// The first criterion whose field the relation does not have, or that is no whole criterion.
std::optional<CriteriaFault> find_field_fault(const Session& session, const Filter& filter);

// One record of a criteria string as a user sees it.
struct ReadableCriterion {
  bool is_or = false;
  std::string id;
  std::string name;
  std::string op;
  std::string value;
};

std::vector<ReadableCriterion> readable_criteria(const Session& session, const Filter& filter);

// The readable text of the criteria, one line per record: the library's own for a relation whose
// fields SELEKTION describes, else as a user sees them. Raises BadCriterion for criteria that are
// not whole: the library would leave text behind the last ";" out without a word.
std::vector<std::string> readable_lines(const Session& session, const Filter& filter);

// The parts of an answer that several commands have.
void print_sql(std::ostream& out, std::string_view sql);
void print_criteria(std::ostream& out, const Session& session,
                    const std::vector<ReadableCriterion>& criteria);
Json identity_json(const Filter& filter, const Translation& translation);
Json criteria_json(const std::vector<ReadableCriterion>& criteria);

}  // namespace kestrova::tool
