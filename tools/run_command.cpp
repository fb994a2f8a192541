// kestrova-sel run CODE CRITERIA, or CODE --model NAME
#include "tools/commands.h"
#include "tools/rows.h"
#include "tools/translation.h"

namespace kestrova::tool {
namespace {

std::int32_t count_rows(const Session& session, const Translation& translation) {
  return session.single_value(select_text(translation, "COUNT(*)")).integer();
}

// All records of a labour relation, from which the filter selects.
std::int32_t count_labour_rows(const Session& session) {
  return session.single_value("SELECT COUNT(*) FROM #BB_LEISTUNGS_KOPF").integer();
}

void print_count(std::ostream& out, std::int32_t count, std::size_t shown) {
  out << (count == 1 ? "1 row" : std::to_string(count) + " rows");
  if (shown < static_cast<std::size_t>(count)) {
    out << (shown == 0 ? ", none shown" : ", the first " + std::to_string(shown) + " shown");
  }
  out << '\n';
}

}  // namespace

void run_filter(const GlobalOptions& options, const RunArguments& arguments, std::ostream& out) {
  const Session session = open_session(options);
  const Filter filter = with_model_criteria(session, arguments.filter);
  const Translation translation = translate(session, filter);
  const std::string columns =
      arguments.columns.empty() ? row_columns(session, translation) : arguments.columns;
  const std::string select = select_text(translation, columns);
  const std::vector<ReadableCriterion> criteria = readable_criteria(session, filter);
  if (!options.json) {
    print_sql(out, select);
    print_criteria(out, session, criteria);
  }
  prepare(session, filter, translation, columns);
  const ResultRows rows = read_rows(
      session, select_text(translation, "TOP " + std::to_string(arguments.limit) + " " + columns));
  const std::int32_t count = count_rows(session, translation);
  if (options.json) {
    Json answer = identity_json(filter, translation);
    answer["select"] = select;
    answer["criteria"] = criteria_json(criteria);
    add_rows(answer, rows);
    answer["count"] = count;
    if (translation.fills_labour_table) answer["labour_rows"] = count_labour_rows(session);
    print_json(out, answer);
    return;
  }
  out << "\nRows\n";
  print_rows(out, session.format, rows);
  out << '\n';
  print_count(out, count, rows.rows.size());
  if (translation.fills_labour_table) {
    out << "Records in #BB_LEISTUNGS_KOPF: " << count_labour_rows(session) << '\n';
  }
}

}  // namespace kestrova::tool
