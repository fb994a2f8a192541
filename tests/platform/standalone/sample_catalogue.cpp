#include "tests/platform/standalone/sample_catalogue.h"

#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"

namespace kestrova::test {
namespace {

const Value kNull;

Columns columns(std::initializer_list<const char*> names) {
  Columns result;
  for (const char* name : names) result.push_back({name, FieldType::kVarWChar});
  return result;
}

}  // namespace

SampleCatalogue sample_catalogue() {
  SampleCatalogue catalogue;
  // clang-format off
  catalogue.table_keys = {
      {"PERSONAL", "PERSONAL"},
      {"LOG", "LOGS INNER JOIN LISTENKOPF ON LISTENKOPF.ID = LOGS.ID_LISTENKOPF"},
      {"BBZV", "BB_AUFTRAG_KOPF"},
  };
  catalogue.fields = {
      {"BBZV", 42, kNull, "ISNULL(BB_AUFTRAG.MENGE, 0)", "0.00"},
      {"LOG", 1, 101, "LOGS.NUMMER", ""},
      {"LOG", 2, 102, "LOGS.MASSE", "0.000"},
      {"LOG", 3, 103, "HOLZSORTE.NAME", kNull},
      {"LOG", 4, 104, "KUNDE.NAME", ""},
      {"LOG", 204, kNull, "LOGS_RECH.R_NAME", ""},
      {"PERSONAL", 1, 201, "PERSONAL.NAME", ""},
      {"PERSONAL", 7, 202, "PERSONAL.GEBURTSTAG", "dd.mm.yyyy"},
      {"PERSONAL", 9, 203, "ORT.NAME", ""},
  };
  catalogue.field_tables = {
      {"LOG", 3, "HOLZSORTE", "LEFT JOIN HOLZSORTE ON HOLZSORTE.ID = LOGS.ID_HOLZSORTE"},
      {"LOG", 4, "LOGS_RECH", "LEFT JOIN LOGS_RECH ON LOGS_RECH.ID_LOGS = LOGS.ID"},
      {"LOG", 4, "PERSONAL", "LEFT JOIN PERSONAL AS Kunde ON KUNDE.ID = LOGS_RECH.ID_KUNDE"},
      {"LOG", 204, "LOGS_RECH", "LEFT JOIN LOGS_RECH ON LOGS_RECH.ID_LOGS = LOGS.ID"},
      {"PERSONAL", 9, "ORT", "LEFT JOIN (SELECT ID, NAME FROM ORTE) ORT ON ORT.ID = PERSONAL.ID_ORT"},
  };
  catalogue.field_lists = {
      {"LIZ", 7, 202},
      {"LIZ", 1, 201},
  };
  catalogue.field_map = {
      {"1VM", 0, 12, 1},
      {"1VM", 0, 13, 2},
      {"1VM_REVERS", 0, 1, 12},
      {"1VM_REVERS", 0, 2, 13},
      {"1V", 1, 12, 901},
      {"1V", 1, 14, 902},
      {"LEISTUNGS_BB", 1, 5, 50},
      {"LEISTUNGS", 1, 5, 51},
      {"LEISTUNGS", 1, 6, 61},
  };
  catalogue.access = {
      {"PERSONAL", "PERSONAL.ID_ACCESS_LEVELS IN ({list})"},
      {"MODELS", "MODELS.ID_ACCESS_LEVELS IS NULL OR MODELS.ID_ACCESS_LEVELS IN ({list})"},
      {"KLR", "KLR.EBENE <= {level}"},
  };
  catalogue.texts = {{"ORDER_RESTRICTION", " WHERE STORNODATUM IS NULL"}};
  catalogue.strings = {
      {5, "Falsch", kNull},
      {101, "Losnummer", ""},
      {102, "Masse", "Holzmasse"},
      {103, "Sorte", kNull},
      {104, "Käufer", kNull},
      {201, "Name", kNull},
      {202, "Geburtstag", kNull},
      {203, "Ort", kNull},
      {204, kNull, kNull},
  };
  catalogue.options = {
      {"B018", 1},
      {"B049 ", 0},
      {"B057", kNull},
      {"CHANGE_MODELS", 2},
  };
  // clang-format on
  return catalogue;
}

std::shared_ptr<RecordingConnection> connection_with(const SampleCatalogue& catalogue) {
  auto connection = std::make_shared<RecordingConnection>();
  connection->answer(kTableKeysQuery, columns({"TABLE_KEY", "BASE_FROM"}), catalogue.table_keys);
  connection->answer(kFieldsQuery,
                     columns({"TABLE_KEY", "FIELD_NO", "ID_STRING", "EXPRESSION", "FORMAT"}),
                     catalogue.fields);
  connection->answer(kFieldTablesQuery,
                     columns({"TABLE_KEY", "FIELD_NO", "TABLE_NAME", "JOIN_TEXT"}),
                     catalogue.field_tables);
  connection->answer(kFieldListsQuery, columns({"LIST_KEY", "FIELD_NO", "ID_STRING"}),
                     catalogue.field_lists);
  connection->answer(kFieldMapQuery, columns({"RELATION", "IS_PREFIX", "FIELD_ID", "FIELD_NO"}),
                     catalogue.field_map);
  connection->answer(kAccessQuery, columns({"TABLE_NAME", "RESTRICTION"}), catalogue.access);
  connection->answer(kTextsQuery, columns({"NAME", "SQL_TEXT"}), catalogue.texts);
  connection->answer(kGermanTextsQuery, columns({"ID_STRING", "DE", "CUSTOM_DE"}),
                     catalogue.strings);
  connection->answer(kOptionsQuery, columns({"PROPERTY_ID", "NUMBER_VALUE"}), catalogue.options);
  return connection;
}

std::shared_ptr<Suite> sample_suite() {
  return make_standalone_suite(connection_with(sample_catalogue()),
                               std::make_shared<SettingsUserLocale>("DE", "DMY"));
}

KesVar sample_context() {
  KesVar context;
  context.strLanguage = "DE";
  context.strDateOrder = "DMY";
  context.lngAccessLevel = 3;
  context.strAccessLevelList = "1,2,3";
  context.lngUserID = 77;
  return context;
}

}  // namespace kestrova::test
