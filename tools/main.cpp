// kestrova-sel: stored filters on the command line.
//
// Exit codes: 0 done, 1 the filter or the database refused or an audit found broken filters, 2
// wrong usage, 3 unexpected, 4 a session ended without its selection being confirmed.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <functional>
#include <iostream>
#include <sstream>

#include "tools/commands.h"
#include "tools/error_report.h"
#include "tools/printable.h"

namespace kestrova::tool {
namespace {

constexpr std::int64_t kMostRows = 1'000'000'000;
constexpr std::int64_t kMostLots = 10'000'000;

using Command = std::function<void(const GlobalOptions&, std::ostream&)>;

struct CommandLine {
  CLI::App app{"Shows what stored filters of the suite select, and the SQL that they become."};
  GlobalOptions options;
  RelationsArguments relations;
  FieldsArguments fields;
  TranslateArguments translate;
  RunArguments run;
  DescribeArguments describe;
  ModelsArguments models;
  ValuesArguments values;
  AuditArguments audit;
  MaterialiseArguments materialise;
  SessionArguments session;
  EditArguments edit;
  DemoDbArguments demo_db;
  Command command;
  int exit_code = kExitOk;  // of a command that has done its work

  CommandLine();
  void parse(int argc, char** argv);

 private:
  CLI::App* add(const char* name, const char* description, const char* example, Command action);
  void add_global_options();
  void add_relations();
  void add_fields();
  void add_translate();
  void add_run();
  void add_describe();
  void add_models();
  void add_values();
  void add_audit();
  void add_materialise();
  void add_session();
  void add_edit();
  void add_demo_db();
};

// One of a few words, which the type name shows.
CLI::Validator one_of(std::vector<std::string> words) {
  return CLI::IsMember(std::move(words)).description("");
}

CLI::Validator in_range(std::int64_t least, std::int64_t most) {
  return CLI::Range(least, most).description("");
}

CLI::Option* add_mode_options(CLI::App& command, Filter& filter) {
  CLI::Option* mode =
      command.add_option("--mode", filter.mode, "Mode of a relation outside the catalogue")
          ->check(one_of({"WAREN", "4ARB"}))
          ->type_name("WAREN|4ARB");
  command.add_option("--variant", filter.variant, "Variant tag of the selection")->type_name("TAG");
  return mode;
}

CLI::Option* add_code(CLI::App& command, std::string& code) {
  return command.add_option("CODE", code, "Relation code")->required()->type_name("");
}

// Criteria as a text or as the name of a model; answers the option for the name.
CLI::Option* add_criteria(CLI::App& command, Filter& filter) {
  add_code(command, filter.code);
  CLI::Option* criteria =
      command
          .add_option("CRITERIA", filter.criteria,
                      "Criteria string: records \"ID operator value\", each ended by \";\"")
          ->type_name("");
  CLI::Option* model =
      command.add_option("--model", filter.model, "Name of a saved model instead of the criteria")
          ->excludes(criteria)
          ->type_name("NAME");
  command.parse_complete_callback([criteria, model] {
    if (criteria->empty() && model->empty()) throw CLI::RequiredError("CRITERIA or --model");
  });
  return model;
}

// The library chooses the mode of a model by its relation.
void add_filter(CLI::App& command, Filter& filter) {
  CLI::Option* model = add_criteria(command, filter);
  model->excludes(add_mode_options(command, filter));
}

void add_limit(CLI::App& command, std::int32_t& limit) {
  command.add_option("--limit", limit, "Show at most this many rows")
      ->check(in_range(0, kMostRows))
      ->type_name("N")
      ->capture_default_str();
}

CommandLine::CommandLine() {
  app.name("kestrova-sel");
  app.set_version_flag("--version", "2.0");
  app.require_subcommand(1);
  app.fallthrough();
  app.footer(
      "Example:\n"
      "  kestrova-sel demo-db forest.db\n"
      "  kestrova-sel --db forest.db fields 1EXP\n"
      "'kestrova-sel COMMAND --help' explains a command.");
  add_global_options();
  add_relations();
  add_fields();
  add_translate();
  add_run();
  add_describe();
  add_models();
  add_values();
  add_audit();
  add_materialise();
  add_session();
  add_edit();
  add_demo_db();
}

CLI::App* CommandLine::add(const char* name, const char* description, const char* example,
                           Command action) {
  CLI::App* sub = app.add_subcommand(name, description);
  sub->footer(std::string("Example:\n  ") + example);
  sub->callback([this, action = std::move(action)] { command = action; });
  return sub;
}

void CommandLine::add_global_options() {
  app.add_option("--db", options.database, "File of the database, or odbc:CONNECTION-STRING")
      ->type_name("FILE|odbc:...");
  app.add_option("--language", options.language, "Language of field names")
      ->check(one_of({"DE", "EN"}))
      ->type_name("DE|EN")
      ->capture_default_str();
  app.add_option("--date-order", options.date_order, "How the user writes dates")
      ->check(one_of({"DMY", "MDY", "YMD", "YDM"}))
      ->type_name("DMY|MDY|YMD|YDM")
      ->capture_default_str();
  app.add_option("--or-line", options.or_line,
                 "Text of the OR line in criteria strings (\"=== ODER ===\")")
      ->type_name("TEXT");
  app.add_option("--user-level", options.user_level,
                 "Access level of the user; 1 sees the records of all levels, any other its own")
      ->type_name("N")
      ->capture_default_str();
  app.add_option("--user", options.user, "Identifier of the user")
      ->type_name("N")
      ->capture_default_str();
  app.add_flag("--json", options.json, "Answer, and report errors, as one JSON document");
}

void CommandLine::add_relations() {
  CLI::App* sub =
      add("relations", "List the relation codes, or show what one of them means",
          "kestrova-sel --db forest.db relations 2ABR1-A",
          [this](const GlobalOptions& o, std::ostream& out) { show_relations(o, relations, out); });
  sub->add_option("CODE", relations.code, "Relation code")->type_name("");
}

void CommandLine::add_fields() {
  CLI::App* sub =
      add("fields", "List the fields that filters of a relation may name",
          "kestrova-sel --db forest.db fields 1EXP",
          [this](const GlobalOptions& o, std::ostream& out) { show_fields(o, fields, out); });
  add_code(*sub, fields.code);
}

void CommandLine::add_translate() {
  CLI::App* sub = add(
      "translate", "Show the SQL of a filter and let the database check it",
      "kestrova-sel --db forest.db translate 1VM \"703 = 'FI';711 >= 40;\"",
      [this](const GlobalOptions& o, std::ostream& out) { translate_filter(o, translate, out); });
  add_filter(*sub, translate.filter);
  sub->add_flag("--raw", translate.raw, "Only the exact FROM/WHERE text");
}

void CommandLine::add_run() {
  CLI::App* sub =
      add("run", "Show the SQL of a filter and the records that it selects",
          "kestrova-sel --db forest.db run 1VM \"703 = 'BU';=== ODER ===;703 = 'EI';\" --limit 5",
          [this](const GlobalOptions& o, std::ostream& out) { run_filter(o, run, out); });
  add_filter(*sub, run.filter);
  add_limit(*sub, run.limit);
  sub->add_option("--columns", run.columns, "Select list instead of the relation's usual columns")
      ->type_name("SQL");
}

void CommandLine::add_describe() {
  CLI::App* sub =
      add("describe", "Show criteria as people read them",
          "kestrova-sel --db forest.db describe 1VM \"703 = 'FI';711 >= 40;\"",
          [this](const GlobalOptions& o, std::ostream& out) { describe_filter(o, describe, out); });
  add_criteria(*sub, describe.filter);
}

void CommandLine::add_models() {
  CLI::App* sub =
      add("models", "List the saved models of a relation that the user may see",
          "kestrova-sel --db forest.db models 1VM --user 2 --user-level 2",
          [this](const GlobalOptions& o, std::ostream& out) { show_models(o, models, out); });
  add_code(*sub, models.code);
}

void CommandLine::add_values() {
  CLI::App* sub =
      add("values", "List the values that a user is offered for a field, and the SQL of each",
          "kestrova-sel --db forest.db values 1VM 703",
          [this](const GlobalOptions& o, std::ostream& out) { show_values(o, values, out); });
  add_code(*sub, values.code);
  sub->add_option("FIELD", values.field, "Identifier or display name of the field")
      ->required()
      ->type_name("");
}

void CommandLine::add_audit() {
  CLI::App* sub =
      add("audit", "Check every stored model and contract selection",
          "kestrova-sel --db forest.db audit", [this](const GlobalOptions& o, std::ostream& out) {
            const bool sound = kestrova::tool::audit(o, audit, out);
            exit_code = sound ? kExitOk : kExitRefused;
          });
  sub->add_flag("--progress", audit.progress,
                "Show progress also when the error stream is no terminal");
}

void CommandLine::add_materialise() {
  CLI::App* sub = add("materialise", "Fill the temporary table of a kind and show it",
                      "kestrova-sel --db forest.db materialise ID --code 1VM --criteria \"711 >= "
                      "40;\"",
                      [this](const GlobalOptions& o, std::ostream& out) {
                        kestrova::tool::materialise(o, materialise, out);
                      });
  sub->add_option("KIND", materialise.kind,
                  "LEISTUNGS_BB, PREIS_ANGEBOT, PREIS_RECHNUNG, ID, \"HE 120\", \"HE 210\", CHILD, "
                  "MAIN, UE or PLAN_JAHR")
      ->required()
      ->type_name("");
  CLI::Option* text = sub->add_option("FROMWHERE", materialise.from_where,
                                      "The text behind the kind's INSERT, as a module gives it")
                          ->type_name("");
  CLI::Option* code = sub->add_option("--code", materialise.filter.code,
                                      "Relation code of a filter that gives the text")
                          ->excludes(text)
                          ->type_name("CODE");
  sub->add_option("--criteria", materialise.filter.criteria, "Criteria string of that filter")
      ->needs(code)
      ->type_name("CRITERIA");
  add_mode_options(*sub, materialise.filter);
  add_limit(*sub, materialise.limit);
  sub->add_flag("--batch", materialise.batch_only,
                "Show the batch for LEISTUNGS_BB that a caller without a connection is given");
}

void CommandLine::add_session() {
  CLI::App* sub = add("session", "Edit a selection, line by line, on the terminal or from a script",
                      "kestrova-sel --db forest.db session 1VM <<'END'\n"
                      "  new\n"
                      "  field Holzart\n"
                      "  value FI\n"
                      "  insert\n"
                      "  ok\n"
                      "  END\n"
                      "The command 'help' of the session lists its commands.\n"
                      "Exit code 0 when the selection was confirmed, 4 when it was not.",
                      [this](const GlobalOptions& o, std::ostream& out) {
                        exit_code = run_session(o, session, out);
                      });
  add_code(*sub, session.code);
  sub->add_flag("--read-only", session.read_only, "Look only: change nothing, confirm nothing");
  sub->add_option("--variant,--tag", session.variant, "Variant tag of the selection")
      ->type_name("TAG");
  sub->add_option("--subset", session.subset, "Criteria string to start from, for the relation NML")
      ->type_name("CRITERIA");
  sub->add_flag("--keep-going", session.keep_going,
                "Go on behind a command of a script that failed; the exit code stays that of the "
                "first failure");
}

void CommandLine::add_edit() {
#ifdef KESTROVA_HAS_QT
  CLI::App* sub = add("edit", "Edit a filter in the dialog, and show what it became",
                      "kestrova-sel --db forest.db edit 1VM",
                      [this](const GlobalOptions& o, std::ostream& out) {
                        exit_code = kestrova::tool::edit(o, edit, out);
                      });
  add_code(*sub, edit.code);
  sub->add_option("--variant", edit.variant, "Variant tag of the selection")->type_name("TAG");
  sub->add_option("--criteria", edit.subset, "Criteria string to start from, instead of a model")
      ->type_name("CRITERIA");
  sub->add_flag("--read-only", edit.read_only, "Look, but change nothing");
  sub->add_flag("--count", edit.count_rows, "Show how many records the lines select");
  sub->add_option("--theme", edit.theme, "Colours of the window")
      ->check(one_of({"system", "light", "dark"}))
      ->type_name("system|light|dark")
      ->capture_default_str();
  sub->add_option("--screenshot", edit.screenshot, "Take a picture of the window and close it")
      ->type_name("FILE");
#endif
}

void CommandLine::add_demo_db() {
  CLI::App* sub =
      add("demo-db", "Make the sample forestry database", "kestrova-sel demo-db forest.db",
          [this](const GlobalOptions& o, std::ostream& out) { make_demo_db(o, demo_db, out); });
  sub->add_option("FILE", demo_db.file, "The file to make")->required()->type_name("");
  sub->add_option("--lots", demo_db.lots, "Number of lots; the other tables grow with it")
      ->check(in_range(1, kMostLots))
      ->type_name("N");
  sub->add_option("--seed", demo_db.seed, "Another seed makes other data")->type_name("N");
  sub->add_option("--today", demo_db.today, "Day around which all dates lie")
      ->type_name("YYYY-MM-DD");
  sub->add_flag("--force", demo_db.force, "Replace an existing file");
  sub->add_flag("--script", demo_db.script,
                "Write a script that makes it on SQL Server instead of an embedded database");
}

// Raises UsageError; CLI::Success when a help text or the version was asked for.
void CommandLine::parse(int argc, char** argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success&) {
    throw;
  } catch (const CLI::ParseError& error) {
    const auto chosen = app.get_subcommands();
    const std::string command_name = chosen.empty() ? "" : " " + chosen.front()->get_name();
    throw UsageError(std::string(error.what()) + ": 'kestrova-sel" + command_name +
                     " --help' explains the usage");
  }
}

// Also for command lines that cannot be read.
bool asks_for_json(int argc, char** argv) {
  return std::any_of(argv + 1, argv + argc,
                     [](std::string_view argument) { return argument == "--json"; });
}

// A reader that has seen enough closes the pipe, which is no failure.
int write_out(const std::string& answer, int exit_code) {
  errno = 0;
  std::cout << answer << std::flush;
  if (std::cout || errno == EPIPE) return exit_code;
  std::cerr << "kestrova-sel: error: the answer could not be written\n";
  return kExitUnexpected;
}

int report(const ErrorReport& error, const std::string& answer, bool json) {
  if (json) {
    std::ostringstream document;
    print_error_json(document, error);
    return write_out(document.str(), error.exit_code);
  }
  const int exit_code = write_out(answer, error.exit_code);
  print_error_line(std::cerr, error);
  return exit_code;
}

int run(int argc, char** argv) {
  std::ostringstream answer;
  try {
    CommandLine line;
    try {
      line.parse(argc, argv);
    } catch (const CLI::Success& wish) {
      line.app.exit(wish, answer, answer);
      return write_out(answer.str(), kExitOk);
    }
    line.command(line.options, answer);
    return write_out(answer.str(), line.exit_code);
  } catch (...) {
    return report(describe_error(std::current_exception()), answer.str(),
                  asks_for_json(argc, argv));
  }
}

}  // namespace
}  // namespace kestrova::tool

int main(int argc, char** argv) {
#ifdef SIGPIPE
  std::signal(SIGPIPE, SIG_IGN);
#endif
  const kestrova::tool::PrintableStream out(std::cout);
  const kestrova::tool::PrintableStream err(std::cerr);
  return kestrova::tool::run(argc, argv);
}
