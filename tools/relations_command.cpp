// kestrova-sel relations [CODE]
#include "platform/error.h"
#include "relations/relation_codes.h"
#include "relations/relation_conditions.h"
#include "tools/commands.h"
#include "tools/fields.h"
#include "tools/session.h"
#include "tools/sql_layout.h"
#include "tools/table_printer.h"

namespace kestrova::tool {
namespace {

std::string_view yes_no(bool value) { return value ? "yes" : "no"; }

Json classification(const Relation& relation) {
  return {{"code", relation.code},
          {"restricted", relation.restricted},
          {"catalogue", relation.catalogue},
          {"table_key", relation.table_key}};
}

void list_relations(const GlobalOptions& options, std::ostream& out) {
  const std::vector<std::string> codes = known_relation_codes();
  if (options.json) {
    Json list = Json::array();
    for (const std::string& code : codes) list.push_back(classification(Relation(code)));
    print_json(out, Json{{"relations", list}});
    return;
  }
  TablePrinter table({{"CODE"}, {"RESTRICTED"}, {"CATALOGUE"}, {"TABLE KEY"}});
  for (const std::string& code : codes) {
    const Relation relation(code);
    table.add_row({code, std::string(yes_no(relation.restricted)),
                   std::string(yes_no(relation.catalogue)), std::string(relation.table_key)});
  }
  table.print(out);
}

void require_known(const GlobalOptions& options, const std::string& code) {
  if (!options.database.empty()) return require_known_relation(open_session(options), code);
  if (is_known_relation(code)) return;
  throw InvalidArgument("the relation code '" + code +
                        "' is not known: 'kestrova-sel relations' lists the codes; those that only "
                        "a database knows need --db FILE");
}

// What a catalogue relation begins with; nothing for others and without a database.
struct BaseTexts {
  std::string from;
  std::string condition;
};

std::optional<BaseTexts> base_texts(const GlobalOptions& options, const Relation& relation) {
  if (!relation.catalogue || options.database.empty()) return std::nullopt;
  const Session session = open_session(options);
  BaseTexts texts;
  GetRelationFromWhere(relation.code, texts.condition, texts.from, session.context,
                       session.context.lngAccessLevel);
  return texts;
}

void print_base(std::ostream& out, const BaseTexts& base) {
  const std::string where = base.condition.empty() ? "" : " WHERE " + base.condition;
  out << "\nSQL\n" << lay_out_sql("FROM " + base.from + where, "  ") << '\n';
}

void show_relation(const GlobalOptions& options, const std::string& code, std::ostream& out) {
  require_known(options, code);
  const Relation relation(code);
  const std::optional<BaseTexts> base = base_texts(options, relation);
  if (options.json) {
    Json answer = classification(relation);
    if (base) {
      answer["from"] = base->from;
      answer["condition"] = base->condition;
    }
    print_json(out, answer);
    return;
  }
  out << "Relation    " << code << '\n'
      << "Restricted  " << yes_no(relation.restricted) << '\n'
      << "Catalogue   " << yes_no(relation.catalogue) << '\n'
      << "Table key   " << (relation.table_key.empty() ? "(none)" : relation.table_key) << '\n';
  if (base) {
    print_base(out, *base);
  } else if (relation.catalogue) {
    out << "\n--db FILE shows its base FROM and condition too.\n";
  }
}

}  // namespace

void show_relations(const GlobalOptions& options, const RelationsArguments& arguments,
                    std::ostream& out) {
  if (arguments.code) {
    show_relation(options, *arguments.code, out);
  } else {
    list_relations(options, out);
  }
}

}  // namespace kestrova::tool
