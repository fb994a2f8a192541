// kestrova-sel materialise KIND ...
#include <algorithm>
#include <array>

#include "engine/comm_sel.h"
#include "platform/error.h"
#include "tools/commands.h"
#include "tools/rows.h"
#include "tools/sql_pieces.h"
#include "tools/translation.h"

namespace kestrova::tool {
namespace {

// What a kind wants in front of a FROM/WHERE text.
enum class SelectList {
  kNone,     // nothing: the library writes it
  kId,       // SELECT main table.ID
  kAll,      // SELECT main table.*
  kCallers,  // columns of several tables, which only the caller knows
};

struct Kind {
  std::string_view name;
  std::string_view table;
  SelectList select_list;
};

// clang-format off
constexpr std::array kKinds = {
    Kind{"LEISTUNGS_BB", "#BB_LEISTUNGS_KOPF", SelectList::kNone},
    Kind{"PREIS_ANGEBOT", "#PREIS", SelectList::kNone},
    Kind{"PREIS_RECHNUNG", "#PREIS", SelectList::kNone},
    Kind{"ID", "#ID", SelectList::kId},
    Kind{"HE 120", "#ID", SelectList::kCallers},
    Kind{"HE 210", "#ID", SelectList::kCallers},
    Kind{"CHILD", "#CHILD", SelectList::kAll},
    Kind{"MAIN", "#MAIN", SelectList::kAll},
    Kind{"UE", "#MAIN", SelectList::kAll},
    Kind{"PLAN_JAHR", "#PLAN_JAHR", SelectList::kAll},
};
// clang-format on

constexpr std::string_view kBatchKind = "LEISTUNGS_BB";

std::string kind_names() {
  std::string names;
  for (const Kind& kind : kKinds) {
    if (!names.empty()) names += ", ";
    names += "'" + std::string(kind.name) + "'";
  }
  return names;
}

const Kind& find_kind(std::string_view name) {
  const auto kind =
      std::find_if(kKinds.begin(), kKinds.end(), [name](const Kind& k) { return k.name == name; });
  if (kind == kKinds.end()) {
    throw UsageError("there is no kind '" + std::string(name) +
                     "', nothing was done: the kinds are " + kind_names());
  }
  return *kind;
}

void check_arguments(const MaterialiseArguments& arguments, const Kind& kind) {
  if (arguments.batch_only && kind.name != kBatchKind) {
    throw UsageError("--batch shows the text of 'LEISTUNGS_BB' only");
  }
  if (arguments.from_where) return;
  if (arguments.filter.code.empty()) {
    throw UsageError("give the FROM/WHERE text, or a filter with --code and --criteria");
  }
  if (kind.select_list == SelectList::kCallers) {
    throw UsageError("the kind '" + std::string(kind.name) +
                     "' needs columns of its own: give the whole SELECT instead of --code");
  }
}

std::string with_select_list(const Kind& kind, const std::string& from_where) {
  if (kind.select_list == SelectList::kNone) return from_where;
  const std::string_view table = main_table(from_where);
  if (table.empty()) throw InvalidArgument("no main table can be read from '" + from_where + "'");
  return "SELECT " + std::string(table) + (kind.select_list == SelectList::kId ? ".ID" : ".*") +
         from_where;
}

// The text that goes to the library. One typed by the user is put behind a blank, since some kinds
// begin with a select list of their own.
std::string source_text(const MaterialiseArguments& arguments, const Kind& kind,
                        const std::optional<Session>& session) {
  if (!arguments.from_where) {
    return with_select_list(kind, translate(*session, arguments.filter).from_where);
  }
  const bool has_blank = arguments.from_where->starts_with(' ');
  return (has_blank ? "" : " ") + *arguments.from_where;
}

void show_batch(const GlobalOptions& options, const std::string& source, std::ostream& out) {
  const std::string batch = Comm_Sel().CreateTemporyTable(KesVar{}, kBatchKind, source);
  if (options.json) {
    print_json(out, Json{{"kind", kBatchKind}, {"batch", batch}});
  } else {
    out << batch << '\n';
  }
}

void print_columns(std::ostream& out, const ResultRows& rows) {
  out << "Columns\n";
  for (const ResultColumn& column : rows.columns) {
    out << "  " << column.name << " (" << type_name(column.type) << ")\n";
  }
}

void show_table(const GlobalOptions& options, const MaterialiseArguments& arguments,
                const Session& session, const Kind& kind, std::ostream& out) {
  const std::string table(kind.table);
  const ResultRows rows =
      read_rows(session, "SELECT TOP " + std::to_string(arguments.limit) + " * FROM " + table);
  const std::int32_t count = session.single_value("SELECT COUNT(*) FROM " + table).integer();
  if (options.json) {
    Json answer{{"kind", kind.name}, {"table", table}, {"count", count}};
    add_rows(answer, rows);
    print_json(out, answer);
    return;
  }
  out << "Table " << table << ", " << count << (count == 1 ? " row" : " rows") << "\n\n";
  print_columns(out, rows);
  out << "\nRows\n";
  print_rows(out, session.format, rows);
}

}  // namespace

void materialise(const GlobalOptions& options, const MaterialiseArguments& arguments,
                 std::ostream& out) {
  const Kind& kind = find_kind(arguments.kind);
  check_arguments(arguments, kind);
  std::optional<Session> session;
  if (!arguments.batch_only || !arguments.from_where) session.emplace(open_session(options));
  const std::string source = source_text(arguments, kind, session);
  if (arguments.batch_only) return show_batch(options, source, out);
  Comm_Sel().CreateTemporyTable(session->context, kind.name, source);
  show_table(options, arguments, *session, kind, out);
}

}  // namespace kestrova::tool
