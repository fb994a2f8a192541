// kestrova-sel values CODE FIELD
#include "tools/commands.h"
#include "tools/fields.h"
#include "tools/pick_list.h"
#include "tools/table_printer.h"
#include "tools/translation.h"

namespace kestrova::tool {
namespace {

constexpr std::size_t kWidestCell = 60;

Json list_json(const PickList& list) {
  Json values = Json::array();
  for (const PickEntry& entry : list.entries) {
    values.push_back({{"value", to_json(entry.value)}, {"text", entry.text}, {"sql", entry.sql}});
  }
  return values;
}

void print(std::ostream& out, const std::string& name, const PickList& list) {
  print_sql(out, list.query);
  out << "Values of " << name << '\n';
  TablePrinter table({{"VALUE", is_number(list.type) ? Align::kRight : Align::kLeft}, {"SQL"}},
                     kWidestCell);
  for (const PickEntry& entry : list.entries) table.add_row({entry.text, entry.sql});
  table.print(out, "  ");
  if (list.found > list.entries.size()) {
    out << "\nThe last " << list.entries.size() << " of " << list.found << " values\n";
  }
}

}  // namespace

void show_values(const GlobalOptions& options, const ValuesArguments& arguments,
                 std::ostream& out) {
  const Session session = open_session(options);
  const std::int16_t id = field_named(session, arguments.code, arguments.field);
  const std::string name = FieldNames(session, arguments.code).name(id);
  const PickList list = read_pick_list(session, arguments.code, id);
  if (!options.json) return print(out, name, list);
  print_json(out, Json{{"relation", arguments.code},
                       {"field", {{"id", id}, {"name", name}}},
                       {"type", type_name(list.type)},
                       {"type_code", static_cast<int>(list.type)},
                       {"query", list.query},
                       {"found", list.found},
                       {"values", list_json(list)}});
}

}  // namespace kestrova::tool
