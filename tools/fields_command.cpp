// kestrova-sel fields CODE
#include "tools/commands.h"
#include "tools/fields.h"
#include "tools/table_printer.h"

namespace kestrova::tool {
namespace {

constexpr std::size_t kWidestCell = 100;

Json to_json(const SelectableField& field) {
  return {{"id", field.id},
          {"name", field.name},
          {"type", type_name(field.type)},
          {"type_code", static_cast<int>(field.type)},
          {"expression", field.expression}};
}

}  // namespace

void show_fields(const GlobalOptions& options, const FieldsArguments& arguments,
                 std::ostream& out) {
  const Session session = open_session(options);
  const std::vector<SelectableField> fields = selectable_fields(session, arguments.code);
  if (options.json) {
    Json list = Json::array();
    for (const SelectableField& field : fields) list.push_back(to_json(field));
    print_json(out, Json{{"relation", arguments.code}, {"fields", list}});
    return;
  }
  TablePrinter table(
      {{"ID", Align::kRight}, {"NAME"}, {"TYPE"}, {"CODE", Align::kRight}, {"EXPRESSION"}},
      kWidestCell);
  for (const SelectableField& field : fields) {
    table.add_row({std::to_string(field.id), field.name, std::string(type_name(field.type)),
                   std::to_string(static_cast<int>(field.type)), field.expression});
  }
  table.print(out);
}

}  // namespace kestrova::tool
