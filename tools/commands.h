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
void materialise(const GlobalOptions& options, const MaterialiseArguments& arguments,
                 std::ostream& out);
void make_demo_db(const GlobalOptions& options, const DemoDbArguments& arguments,
                  std::ostream& out);

}  // namespace kestrova::tool
