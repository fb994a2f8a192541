// kestrova-sel models CODE
#include <optional>

#include "engine/comm_sel.h"
#include "engine/model_relation.h"
#include "tools/commands.h"
#include "tools/fields.h"
#include "tools/session.h"
#include "tools/table_printer.h"

namespace kestrova::tool {
namespace {

struct SavedModel {
  std::int32_t id = 0;
  std::string name{};
  bool standard = false;  // the shared one
  bool chosen = false;    // the user's own standard
  bool locked = false;
  std::string access_level{};  // "" for none
  std::string owner{};         // "" for none
};

// "name", or the number of a row that is not there.
std::string name_or_number(const Value& name, const Value& number) {
  if (number.is_null()) return {};
  return name.is_null() ? number.text() : name.text();
}

SavedModel read_model(const Session& session, const ListEntry& entry, bool chosen) {
  const auto row = session.connection().open(
      "SELECT MODELS.STANDARD, MODELS.NICHT_ANDERBAR, MODELS.ID_ACCESS_LEVELS, MODELS.ID_USER,"
      " ACCESS_LEVELS.NAME AS ACCESS_LEVEL, USERS.NAME AS OWNER FROM MODELS"
      " LEFT JOIN ACCESS_LEVELS ON MODELS.ID_ACCESS_LEVELS = ACCESS_LEVELS.ID"
      " LEFT JOIN USERS ON MODELS.ID_USER = USERS.ID WHERE MODELS.ID = " +
          std::to_string(entry.item_data),
      CursorType::kForwardOnly, LockType::kReadOnly);
  const auto is_one = [&](std::string_view column) {
    const Value value = row->value(column);
    return !value.is_null() && value.integer() == 1;
  };
  return {
      .id = entry.item_data,
      .name = entry.text,
      .standard = is_one("STANDARD"),
      .chosen = chosen,
      .locked = is_one("NICHT_ANDERBAR"),
      .access_level = name_or_number(row->value("ACCESS_LEVEL"), row->value("ID_ACCESS_LEVELS")),
      .owner = name_or_number(row->value("OWNER"), row->value("ID_USER"))};
}

// As the library lists them for the user, behind its entry for no model.
std::vector<SavedModel> read_models(const Session& session, std::string_view code) {
  ComboBox list("Model", ComboBox::Style::kDropDownList);
  EntryListPort port(list);
  Comm_Sel().Fill_ComboModel(session.context, port, code, true);
  std::vector<SavedModel> models;
  for (int i = 1; i < list.count(); ++i) {
    models.push_back(
        read_model(session, list.entries()[static_cast<std::size_t>(i)], list.index() == i));
  }
  return models;
}

Json text_or_null(const std::string& s) { return s.empty() ? Json(nullptr) : Json(s); }

Json to_json(const SavedModel& model) {
  return {{"id", model.id},
          {"name", model.name},
          {"standard", model.standard},
          {"standard_of_user", model.chosen},
          {"locked", model.locked},
          {"access_level", text_or_null(model.access_level)},
          {"owner", text_or_null(model.owner)}};
}

void print(std::ostream& out, const std::vector<SavedModel>& models) {
  const auto mark = [](bool value) { return std::string(value ? "yes" : ""); };
  TablePrinter table({{"ID", Align::kRight},
                      {"NAME"},
                      {"STANDARD"},
                      {"USER'S STANDARD"},
                      {"LOCKED"},
                      {"ACCESS LEVEL"},
                      {"OWNER"}});
  for (const SavedModel& model : models) {
    table.add_row({std::to_string(model.id), model.name, mark(model.standard), mark(model.chosen),
                   mark(model.locked), model.access_level, model.owner});
  }
  table.print(out);
}

}  // namespace

void show_models(const GlobalOptions& options, const ModelsArguments& arguments,
                 std::ostream& out) {
  const Session session = open_session(options);
  const std::string relation = model_relation_for_list(arguments.code);
  // A code that borrows the models of others may be unknown otherwise.
  if (relation == arguments.code) require_known_relation(session, arguments.code);
  const std::string lookup = model_relation_for_lookup(arguments.code);
  const std::vector<SavedModel> models = read_models(session, arguments.code);
  if (options.json) {
    Json list = Json::array();
    for (const SavedModel& model : models) list.push_back(to_json(model));
    print_json(out, Json{{"relation", arguments.code},
                         {"model_relation", relation},
                         {"lookup_relation", lookup},
                         {"models", list}});
    return;
  }
  out << "Models of " << relation << "\n\n";
  print(out, models);
  if (lookup != relation && !models.empty()) {
    out << "\nBy name the library looks for models of " << arguments.code << " under " << lookup
        << ", where these are not.\n";
  }
}

}  // namespace kestrova::tool
