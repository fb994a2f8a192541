// kestrova-sel describe CODE CRITERIA, or CODE --model NAME
#include "platform/text.h"
#include "tools/commands.h"
#include "tools/fields.h"
#include "tools/table_printer.h"
#include "tools/translation.h"

namespace kestrova::tool {
namespace {

Json to_json(const Filter& filter, const std::vector<ReadableCriterion>& criteria,
             const std::vector<std::string>& lines) {
  Json answer{{"relation", filter.code}};
  if (filter.model) answer["model"] = *filter.model;
  answer["criteria"] = Json::array();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    Json criterion{{"text", lines[i]}};
    if (criteria[i].is_or) {
      criterion["or"] = true;
    } else {
      criterion["id"] = text::to_int16(criteria[i].id);
      criterion["field"] = criteria[i].name;
    }
    answer["criteria"].push_back(std::move(criterion));
  }
  return answer;
}

void print(std::ostream& out, const std::vector<ReadableCriterion>& criteria,
           const std::vector<std::string>& lines) {
  TablePrinter table({{"CRITERION"}, {"FIELD"}});
  for (std::size_t i = 0; i < lines.size(); ++i) table.add_row({lines[i], criteria[i].name});
  table.print(out);
}

}  // namespace

void describe_filter(const GlobalOptions& options, const DescribeArguments& arguments,
                     std::ostream& out) {
  const Session session = open_session(options);
  require_known_relation(session, arguments.filter.code);
  const Filter filter = with_model_criteria(session, arguments.filter);
  const std::vector<std::string> lines = readable_lines(session, filter);
  const std::vector<ReadableCriterion> criteria = readable_criteria(session, filter);
  if (options.json) {
    print_json(out, to_json(filter, criteria, lines));
  } else {
    print(out, criteria, lines);
  }
}

}  // namespace kestrova::tool
