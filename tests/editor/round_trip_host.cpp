#include "tests/editor/round_trip_host.h"

#include <array>
#include <utility>

#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"

namespace kestrova::test {
namespace {

constexpr std::array kTypes = {FieldType::kSmallInt,
                               FieldType::kInteger,
                               FieldType::kSingle,
                               FieldType::kDouble,
                               FieldType::kDate,
                               FieldType::kBstr,
                               FieldType::kBoolean,
                               FieldType::kDecimal,
                               FieldType::kTinyInt,
                               FieldType::kUnsignedTinyInt,
                               FieldType::kUnsignedSmallInt,
                               FieldType::kUnsignedInt,
                               FieldType::kBigInt,
                               FieldType::kUnsignedBigInt,
                               FieldType::kChar,
                               FieldType::kWChar,
                               FieldType::kNumeric,
                               FieldType::kDBDate,
                               FieldType::kDBTime,
                               FieldType::kDBTimeStamp,
                               FieldType::kVarNumeric,
                               FieldType::kVarChar,
                               FieldType::kLongVarChar,
                               FieldType::kVarWChar,
                               FieldType::kLongVarWChar};

// The two operations that every line asks for answer without being written down.
class QuickTableAccess : public TableAccessService {
 public:
  QuickTableAccess(std::shared_ptr<TableAccessService> others, const FakeAnswers& answers)
      : others_(std::move(others)), answers_(answers) {}

  std::int32_t MapFieldId(std::string_view relation, std::int32_t field_id) override {
    return answers_.map_field_id(relation, field_id);
  }
  std::string field_format(std::string_view, std::int32_t number, const KesVar&) override {
    const auto format = answers_.field_formats.find(number);
    return format == answers_.field_formats.end() ? std::string() : format->second;
  }

  void FillFieldList(std::string_view list_key, EntryList& list, const KesVar& context,
                     std::int32_t option) override {
    others_->FillFieldList(list_key, list, context, option);
  }
  std::string AddFieldTables(std::string_view table_key, std::int32_t number,
                             std::string_view from_text, std::string_view run_type,
                             const KesVar& context) override {
    return others_->AddFieldTables(table_key, number, from_text, run_type, context);
  }
  std::string GetFieldExpression(std::string_view table_key, std::int32_t number,
                                 std::int32_t option1, std::int32_t option2,
                                 const KesVar& context) override {
    return others_->GetFieldExpression(table_key, number, option1, option2, context);
  }
  std::string AddTable(std::string_view from_text, std::string_view table,
                       std::string_view run_type) override {
    return others_->AddTable(from_text, table, run_type);
  }
  std::string AddCondition(std::string_view condition, std::string_view further) override {
    return others_->AddCondition(condition, further);
  }
  std::string order_restriction(const KesVar& context) override {
    return others_->order_restriction(context);
  }

 private:
  std::shared_ptr<TableAccessService> others_;
  const FakeAnswers& answers_;
};

// A suite whose dates and numbers are formatted as without the suite.
class FormattingSuite : public FakeSuite {
 public:
  FormattingSuite(CallLog log, std::shared_ptr<UserLocale> locale)
      : FakeSuite(std::move(log)),
        formatters_(
            make_standalone_suite(std::make_shared<RecordingConnection>(), std::move(locale))) {}
  std::shared_ptr<TableAccessService> table_access() override {
    return std::make_shared<QuickTableAccess>(FakeSuite::table_access(), answers());
  }
  std::shared_ptr<NumFormatter> num_formatter() override { return formatters_->num_formatter(); }
  std::shared_ptr<DateFormatter> date_formatter() override { return formatters_->date_formatter(); }

 private:
  std::shared_ptr<Suite> formatters_;
};

std::shared_ptr<UserLocale> locale_of(const UserSettings& settings) {
  return std::make_shared<SettingsUserLocale>(settings.language, settings.date_order);
}

}  // namespace

RoundTripHost::RoundTripHost(const UserSettings& settings)
    : RoundTripHost(settings, make_call_log()) {}

RoundTripHost::RoundTripHost(const UserSettings& settings, CallLog suite_log)
    : RunHost(std::make_shared<FormattingSuite>(suite_log, locale_of(settings)),
              locale_of(settings)),
      suite_log_(std::move(suite_log)),
      quick_(std::make_shared<QuickConnection>(connection)),
      stored_(std::make_shared<QuickTable>()) {
  context.strDateOrder = settings.date_order;
  context.dbado = quick_;
  module_state().dbado = quick_;
}

void RoundTripHost::start_with(const std::string& relation, std::vector<DrawnField> fields) {
  fields_ = std::move(fields);
  start(relation);
  for (DrawnField& field : fields_) {
    pick(editor->cboField, field.name);
    field.operators = texts_of(editor->cboOperator);
  }
}

void RoundTripHost::clear_logs() {
  forget();
  suite_log_->clear();
}

void RoundTripHost::compose_lines(const std::vector<DrawnLine>& lines) {
  clear_logs();
  editor->ListCriteria.clear();
  for (const DrawnLine& line : lines) {
    if (line.is_or()) {
      editor->btnOr_Click();
    } else {
      compose_line(line);
    }
  }
}

void RoundTripHost::compose_line(const DrawnLine& line) {
  pick(editor->cboField, line.field->name);
  pick(editor->cboOperator, line.op);
  for (const DrawnValue& value : line.values) {
    editor->cboValue.set_text(value.typed);
    bool cancel = false;
    editor->cboValue_Validate(cancel);
    if (line.op == "IN") editor->btnPlus_Click();
  }
  editor->btnInsert_Click();
}

void RoundTripHost::put_lines(const std::vector<DrawnLine>& lines) {
  clear_logs();
  editor->ListCriteria.clear();
  for (const DrawnLine& line : lines) {
    fill_lines({{line.display_line(), line.is_or() ? -2 : line.field->id}});
  }
}

ContractRoundTrip::ContractRoundTrip(const UserSettings& settings)
    : ContractRoundTrip(
          settings, "VERTP12",
          " WHERE FHP_IMPORT.ERRORTEXT IS NULL AND FHP_IMPORT.ID_FHP_IMPORT IS NULL") {}

ContractRoundTrip::ContractRoundTrip(const UserSettings& settings, const std::string& relation,
                                     const std::string& value_condition)
    : RoundTripHost(settings) {
  *stored_ = {{{"SELEKTION_VALUE"}, {"ID", FieldType::kInteger}}, {{"", 12}}};
  quick_->share("SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12", stored_);
  quick_->share("SELECT * FROM VERTRAG_PREISE WHERE ID = 12", stored_);
  // The formats of the suite's fields know these types.
  std::vector<DrawnField> fields = {{5, "Größe", FieldType::kVarWChar, {}},
                                    {60, "Datum", FieldType::kDate, {}},
                                    {700, "Menge", FieldType::kDouble, {}},
                                    {8, "Anzahl der Stücke", FieldType::kInteger, {}}};
  suite->answers().field_formats = {{60, "dd.mm.yyyy"}, {700, "0.00"}, {8, "0"}};
  std::vector<ListEntry> offered;
  for (const DrawnField& field : fields) {
    offered.push_back({field.name, field.id});
    const std::string id = std::to_string(field.id);
    answer_values("SELECT DISTINCT EXPR(LOG," + id + ") FROM <LOG,0,><LOG," + id + ",R7>" +
                      value_condition + " ORDER BY 1",
                  {Value(), "0"});
  }
  offer("LOG", std::move(offered));
  answer_models(relation.substr(0, 5));
  start_with(relation, std::move(fields));
}

std::string ContractRoundTrip::store() {
  stored_->rows[0][0] = Value("not stored");
  editor->btnOk_Click();
  return stored_->rows[0][0].text();
}

void ContractRoundTrip::load(const std::string& stored) {
  stored_->rows[0][0] = Value(stored);
  run();
}

ModelRoundTrip::ModelRoundTrip(const UserSettings& settings) : RoundTripHost(settings) {
  *stored_ = {{{"MODEL"}}, {{""}}};
  quick_->share("SELECT MODEL FROM MODELS WHERE ID = 7", stored_);
  std::vector<DrawnField> fields;
  std::vector<OfferedField> offered;
  for (const FieldType type : kTypes) {
    const int code = static_cast<int>(type);
    const std::string number = std::to_string(code);
    const std::string name = (code % 10 == 0 ? "Größe " : "Feld ") + number;
    const DrawnField field{code < 100 ? 10 + code : 100 * code, name, type, {}};
    OfferedField& row = offered.emplace_back();
    row.row.id = field.id;
    row.row.name = Value("C" + number);
    row.row.nickname = Value("N" + number);
    row.row.table = Value("LAGER");
    row.text = field.name;
    row.type = type;
    know_lookups(row.row);
    answer_values(plain_query("C" + number), {"0"});
    connection->answer(
        "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(field.id),
        {{"ID_STRING", FieldType::kInteger}}, {{field.id}});
    suite->answers().texts[field.id] = field.name;
    fields.push_back(field);
  }
  answer_fields("SONST", offered);
  answer_models("SONST", {{7, "Alt"}});
  start_with("SONST", std::move(fields));
}

std::string ModelRoundTrip::store() { return editor->GetWriteString(context); }

void ModelRoundTrip::load(const std::string& stored) {
  stored_->rows[0][0] = Value(stored);
  editor->Model_DblClick();
}

void HostRoundTrip::load(const std::string& stored) {
  editor->FillListCriteria(context, stored, "SONST");
}

CatalogueRoundTrip::CatalogueRoundTrip(const UserSettings& settings)
    : ContractRoundTrip(settings, "1EXP", "") {}

std::string CatalogueRoundTrip::store() { return editor->GetWriteString(context); }

void CatalogueRoundTrip::load(const std::string& stored) {
  editor->FillListCriteria(context, stored, "1EXP");
}

}  // namespace kestrova::test
