// kestrova-sel demo-db FILE
#include <filesystem>
#include <fstream>

#include "examples/forest/forest_generator.h"
#include "examples/forest/forest_script_writer.h"
#include "platform/error.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/standalone/settings_user_locale.h"
#include "tools/commands.h"
#include "tools/values.h"

namespace kestrova::tool {
namespace {

namespace fs = std::filesystem;

// What a program that was broken off while writing leaves beside a database. It belongs to the
// database of that name, whichever that is: read into another one, it destroys it.
void remove_leftovers(const fs::path& database) {
  for (const char* kind : {"-journal", "-wal", "-shm"}) fs::remove(database.string() + kind);
}

// The file while it is being made. It takes its own name only when it is complete, so that neither
// a half-made database nor the loss of an older one can be left behind.
class HalfMadeFile {
 public:
  explicit HalfMadeFile(const std::string& file) : file_(file), path_(file + ".part") {
    fs::remove(path_);
    remove_leftovers(path_);
  }
  ~HalfMadeFile() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  HalfMadeFile(const HalfMadeFile&) = delete;
  HalfMadeFile& operator=(const HalfMadeFile&) = delete;

  std::string path() const { return path_.string(); }
  void finish() const {
    remove_leftovers(file_);
    fs::rename(path_, file_);
  }

 private:
  fs::path file_;
  fs::path path_;
};

void check_target(const DemoDbArguments& arguments) {
  const fs::path file(arguments.file);
  if (fs::is_directory(file)) {
    throw UsageError("'" + arguments.file + "' is a folder: give the name of a file");
  }
  if (fs::exists(file) && !arguments.force) {
    throw UsageError("the file '" + arguments.file +
                     "' exists: give another name, or --force to "
                     "replace it");
  }
  if (file.has_parent_path() && !fs::is_directory(file.parent_path())) {
    throw UsageError("there is no folder '" + file.parent_path().string() + "'");
  }
}

ForestOptions forest_options(const DemoDbArguments& arguments) {
  ForestOptions options;
  if (arguments.lots) options.lots = *arguments.lots;
  if (arguments.seed) options.seed = *arguments.seed;
  if (arguments.today) {
    const auto today = SettingsUserLocale("DE", "YMD").to_date(*arguments.today);
    if (!today) throw UsageError("'" + *arguments.today + "' is no date like 2025-03-14");
    options.today = *today;
  }
  return options;
}

void write_script(const std::string& file, const ForestOptions& forest) {
  std::ofstream out(file, std::ios::binary);
  write_forest_script(out, forest);
  if (!out.flush()) throw std::runtime_error("the file '" + file + "' could not be written");
}

}  // namespace

void make_demo_db(const GlobalOptions& options, const DemoDbArguments& arguments,
                  std::ostream& out) {
  check_target(arguments);
  const ForestOptions forest = forest_options(arguments);
  const HalfMadeFile half_made(arguments.file);
  if (arguments.script) {
    write_script(half_made.path(), forest);
  } else {
    build_forest_database(*open_sqlite(half_made.path(), {.create = true}), forest);
  }
  half_made.finish();
  if (options.json) {
    print_json(out, Json{{"file", arguments.file}, {"lots", forest.lots}, {"seed", forest.seed}});
  } else {
    out << (arguments.script ? "Wrote the script '" : "Made the sample database '")
        << arguments.file << (arguments.script ? "' for SQL Server with " : "' with ")
        << forest.lots << " lots.\n";
  }
}

}  // namespace kestrova::tool
