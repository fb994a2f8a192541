// kestrova-sel translate CODE CRITERIA
#include "tools/commands.h"
#include "tools/translation.h"

namespace kestrova::tool {
namespace {

void print(const Session& session, const TranslateArguments& arguments,
           const Translation& translation, std::ostream& out) {
  if (arguments.raw) {
    out << translation.from_where << '\n';
    return;
  }
  print_sql(out, translation.from_where);
  print_criteria(out, session, readable_criteria(session, arguments.filter));
}

Json to_json(const Session& session, const Filter& filter, const Translation& translation) {
  return {{"relation", translation.code},
          {"mode", translation.mode},
          {"from_where", translation.from_where},
          {"criteria", criteria_json(readable_criteria(session, filter))}};
}

}  // namespace

void translate_filter(const GlobalOptions& options, const TranslateArguments& arguments,
                      std::ostream& out) {
  const Session session = open_session(options);
  const Translation translation = translate(session, arguments.filter);
  if (options.json) {
    print_json(out, to_json(session, arguments.filter, translation));
  } else {
    print(session, arguments, translation, out);
  }
  prepare(session, arguments.filter, translation, row_columns(session, translation));
}

}  // namespace kestrova::tool
