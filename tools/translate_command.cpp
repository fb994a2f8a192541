// kestrova-sel translate CODE CRITERIA, or CODE --model NAME
#include "tools/commands.h"
#include "tools/translation.h"

namespace kestrova::tool {
namespace {

void print(const Session& session, const Filter& filter, const Translation& translation,
           std::ostream& out) {
  print_sql(out, translation.from_where);
  print_criteria(out, session, readable_criteria(session, filter));
}

Json to_json(const Session& session, const Filter& filter, const Translation& translation) {
  Json answer = identity_json(filter, translation);
  answer["from_where"] = translation.from_where;
  answer["criteria"] = criteria_json(readable_criteria(session, filter));
  return answer;
}

}  // namespace

void translate_filter(const GlobalOptions& options, const TranslateArguments& arguments,
                      std::ostream& out) {
  const Session session = open_session(options);
  const Filter filter = with_model_criteria(session, arguments.filter);
  const Translation translation = translate(session, filter);
  if (options.json) {
    print_json(out, to_json(session, filter, translation));
  } else if (arguments.raw) {
    out << translation.from_where << '\n';
  } else {
    print(session, filter, translation, out);
  }
  prepare(session, filter, translation, row_columns(session, translation));
}

}  // namespace kestrova::tool
