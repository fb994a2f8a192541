// The commands. Each writes its whole answer to out, for people or, with options.json, as one JSON
// document; errors are raised. What a command wrote before it raised is for people still worth
// reading.
#pragma once

#include <ostream>

#include "tools/options.h"

namespace kestrova::tool {

void show_relations(const GlobalOptions& options, const RelationsArguments& arguments,
                    std::ostream& out);
void show_fields(const GlobalOptions& options, const FieldsArguments& arguments, std::ostream& out);
void translate_filter(const GlobalOptions& options, const TranslateArguments& arguments,
                      std::ostream& out);
void run_filter(const GlobalOptions& options, const RunArguments& arguments, std::ostream& out);
void describe_filter(const GlobalOptions& options, const DescribeArguments& arguments,
                     std::ostream& out);
void show_models(const GlobalOptions& options, const ModelsArguments& arguments, std::ostream& out);
void show_values(const GlobalOptions& options, const ValuesArguments& arguments, std::ostream& out);
// Whether every stored filter is sound.
bool audit(const GlobalOptions& options, const AuditArguments& arguments, std::ostream& out);
void materialise(const GlobalOptions& options, const MaterialiseArguments& arguments,
                 std::ostream& out);
// Runs the editor for whoever is on the standard input; writes what its commands show as it goes,
// and only the last document to out. The exit code, as an ExitCode.
int run_session(const GlobalOptions& options, const SessionArguments& arguments, std::ostream& out);
void make_demo_db(const GlobalOptions& options, const DemoDbArguments& arguments,
                  std::ostream& out);
// Only in a program built with the window.
int edit(const GlobalOptions& options, const EditArguments& arguments, std::ostream& out);

}  // namespace kestrova::tool
