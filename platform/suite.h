// The services of the suite's shared library that this library asks, and the factory that the host
// installs to make them. How they answer is the suite's business; what is asked and what must come
// back stands here. platform/standalone/ implements them for use without the suite.
//
// Every operation may raise a kestrova::Error, which reaches the host unchanged.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/kes_var.h"

namespace kestrova {

// The suite's localised texts.
class LocTexts {
 public:
  virtual ~LocTexts() = default;
  // The text with that number in the user's language. The number is a constant of the code or the
  // ID_STRING of a SELEKTION row. "" for a number without text.
  virtual std::string GetText(std::int32_t number, const KesVar& context) = 0;
};

// FROM texts and field expressions of the relations that the suite knows by table key.
class TableAccessService {
 public:
  virtual ~TableAccessService() = default;

  // Fills the list, which the caller has emptied, with the fields of a field-list key: display
  // text, and the field's number as item data. An unknown key adds nothing. The option is passed as
  // 0.
  virtual void FillFieldList(std::string_view list_key, EntryList& list, const KesVar& context,
                             std::int32_t option) = 0;

  // The number to use for a field of a relation: from the identifier in a criteria string to the
  // number under which the other operations know the field; with a "..._REVERS" key, back. 0: the
  // field is not offered for this relation.
  virtual std::int32_t MapFieldId(std::string_view relation, std::int32_t field_id) = 0;

  // The FROM text (without the word FROM) with the tables of a field added, each table once. An
  // empty from_text starts with the base FROM of the table key; field number 0 adds nothing else.
  // An empty table key answers from_text as it is. Raises ItemNotFound for a number that the key
  // does not have.
  virtual std::string AddFieldTables(std::string_view table_key, std::int32_t field_number,
                                     std::string_view from_text, std::string_view run_type,
                                     const KesVar& context) = 0;

  // The SQL expression of a field. The two options are passed as 0. Raises ItemNotFound for a
  // number that the key does not have (0 is never a field).
  virtual std::string GetFieldExpression(std::string_view table_key, std::int32_t field_number,
                                         std::int32_t option1, std::int32_t option2,
                                         const KesVar& context) = 0;

  // The display format of a field: "" for text, "dd.mm.yyyy" for a date, "0..." for a number.
  // Raises ItemNotFound for a number that the key does not have.
  virtual std::string field_format(std::string_view table_key, std::int32_t field_number,
                                   const KesVar& context) = 0;

  // The FROM text with a table added, unless it is there already. An empty table name adds nothing.
  virtual std::string AddTable(std::string_view from_text, std::string_view table,
                               std::string_view run_type) = 0;

  // The two conditions joined by AND; an empty one adds nothing.
  virtual std::string AddCondition(std::string_view condition, std::string_view further) = 0;

  // The text that narrows the order table in the condition of the order selection, put directly
  // behind "SELECT ID FROM BB_AUFTRAG_KOPF" (so it begins with a blank when it is not empty).
  virtual std::string order_restriction(const KesVar& context) = 0;
};

// Restricts rows to those that the user's access levels allow.
class AccessLevelFilter {
 public:
  virtual ~AccessLevelFilter() = default;
  // The condition extended with the restriction of the base table. An empty condition answers the
  // restriction alone; a table without restriction answers the condition as it is.
  virtual std::string restrict(std::string_view base_table, std::string_view condition,
                               const KesVar& context, std::int32_t option) = 0;
};

// Which model a user has chosen as standard.
class ModelSettings {
 public:
  virtual ~ModelSettings() = default;
  // MODELS.ID of the standard model, 0 for none. The option is passed as 0.
  virtual std::int32_t standard_model(const KesVar& context, std::string_view model_relation,
                                      std::int32_t option) = 0;
};

class SuiteOptions {
 public:
  virtual ~SuiteOptions() = default;
  // Whether the option is set; false for one that is not there.
  virtual bool GetOptionFlag(std::string_view option, const KesVar& context) = 0;
};

// Walks the records of a text. A record that is empty behind the last separator does not count.
// Asked for one text after another index, it must not start anew for each of them: a criteria
// string of thousands of records is walked once. The text must stay in place between the calls.
class StrTokens {
 public:
  virtual ~StrTokens() = default;
  virtual std::int32_t TokenCount(std::string_view text, std::string_view separator) = 0;
  // The record at an index counted from 0: a part of text itself, so that it stays as long as text
  // does. Raises InvalidArgument outside 0 to TokenCount - 1.
  virtual std::string_view TokenAt(std::string_view text, std::string_view separator,
                                   std::int32_t index) = 0;
};

class NumFormatter {
 public:
  virtual ~NumFormatter() = default;
  // A number as the server reads it ("." as decimal separator), from the user's notation. A text
  // that is no number ("()", "Null") comes back as it is. blank is the character that groups
  // digits.
  virtual std::string format(std::string_view number, std::string_view blank) = 0;
};

// Turns dates into the server's text form.
class DateFormatter {
 public:
  virtual ~DateFormatter() = default;

  // The server's text (without apostrophes) of a date that the user typed in the given date order
  // ("DMY", "MDY", "YMD", "YDM"). The flag is the caller's own and has no meaning here. Raises
  // TypeMismatch for a text that is no date.
  virtual std::string server_date(std::string_view typed, bool flag,
                                  std::string_view date_order) = 0;

  // Whether a date member of the caller context is set, and its server text (without apostrophes).
  virtual bool is_set(double day_count) = 0;
  virtual std::string server_date(double day_count, std::string_view date_order) = 0;
};

// Makes the services. The library makes one when an operation needs it and releases it before the
// operation returns, except for LocTexts and the editor's ModelSettings, which are made on first
// use and kept.
class Suite {
 public:
  virtual ~Suite() = default;
  virtual std::shared_ptr<LocTexts> loc_texts() = 0;
  virtual std::shared_ptr<TableAccessService> table_access() = 0;
  virtual std::shared_ptr<AccessLevelFilter> access_level_filter() = 0;
  virtual std::shared_ptr<ModelSettings> model_settings() = 0;
  virtual std::shared_ptr<SuiteOptions> suite_options() = 0;
  virtual std::shared_ptr<StrTokens> str_tokens() = 0;
  virtual std::shared_ptr<NumFormatter> num_formatter() = 0;
  virtual std::shared_ptr<DateFormatter> date_formatter() = 0;
};

}  // namespace kestrova
