// A small catalogue on a scripted connection: the persons and the lots of a forestry office.
#pragma once

#include <memory>

#include "platform/suite.h"
#include "tests/support/recording_connection.h"

namespace kestrova::test {

// The queries by which a standalone suite reads its tables.
inline constexpr const char* kTableKeysQuery = "SELECT TABLE_KEY, BASE_FROM FROM SUITE_TABLE_KEYS";
inline constexpr const char* kFieldsQuery =
    "SELECT TABLE_KEY, FIELD_NO, ID_STRING, EXPRESSION, FORMAT FROM SUITE_FIELDS"
    " ORDER BY TABLE_KEY, FIELD_NO";
inline constexpr const char* kFieldTablesQuery =
    "SELECT TABLE_KEY, FIELD_NO, TABLE_NAME, JOIN_TEXT FROM SUITE_FIELD_TABLES"
    " ORDER BY TABLE_KEY, FIELD_NO, POSITION";
inline constexpr const char* kFieldListsQuery =
    "SELECT LIST_KEY, FIELD_NO, ID_STRING FROM SUITE_FIELD_LISTS ORDER BY LIST_KEY, POSITION";
inline constexpr const char* kFieldMapQuery =
    "SELECT RELATION, IS_PREFIX, FIELD_ID, FIELD_NO FROM SUITE_FIELD_MAP";
inline constexpr const char* kAccessQuery = "SELECT TABLE_NAME, RESTRICTION FROM SUITE_ACCESS";
inline constexpr const char* kTextsQuery = "SELECT NAME, SQL_TEXT FROM SUITE_TEXTS";
inline constexpr const char* kGermanTextsQuery = "SELECT ID_STRING, [DE], [CUSTOM_DE] FROM STRINGS";
inline constexpr const char* kOptionsQuery = "SELECT PROPERTY_ID, NUMBER_VALUE FROM OPTIONEN";

struct SampleCatalogue {
  Rows table_keys;
  Rows fields;
  Rows field_tables;
  Rows field_lists;
  Rows field_map;
  Rows access;
  Rows texts;
  Rows strings;
  Rows options;
};

SampleCatalogue sample_catalogue();

std::shared_ptr<RecordingConnection> connection_with(const SampleCatalogue& catalogue);

// A suite over the sample catalogue with German settings.
std::shared_ptr<Suite> sample_suite();

// A German user of access level 3 who sees the levels 1 to 3.
KesVar sample_context();

}  // namespace kestrova::test
