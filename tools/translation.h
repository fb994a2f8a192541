// A stored filter translated: its SQL, and its criteria in readable form.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tools/options.h"
#include "tools/session.h"

namespace kestrova::tool {

struct Translation {
  std::string code;
  std::string mode;                 // "" for a catalogue relation, which has none
  std::string from_where;           // exactly what the library answers
  bool fills_labour_table = false;  // "#BB_LEISTUNGS_KOPF" now holds the records of the relation
};

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

// One record of a criteria string as a user sees it.
struct ReadableCriterion {
  bool is_or = false;
  std::string id;
  std::string name;
  std::string op;
  std::string value;
};

std::vector<ReadableCriterion> readable_criteria(const Session& session, const Filter& filter);

// The parts of an answer that several commands have.
void print_sql(std::ostream& out, std::string_view sql);
void print_criteria(std::ostream& out, const Session& session,
                    const std::vector<ReadableCriterion>& criteria);
Json criteria_json(const std::vector<ReadableCriterion>& criteria);

}  // namespace kestrova::tool
