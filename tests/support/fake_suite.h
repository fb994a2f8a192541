// Suite services whose answers follow from their arguments in a way that a reader can check by eye,
// and that a test can change.
//
//   AddFieldTables('LAGER', 5, 'A,B', 'X')   A,B<LAGER,5,X>
//   GetFieldExpression('LAGER', 5, 0, 0)     EXPR(LAGER,5)   (0 is never a field: ItemNotFound)
//   MapFieldId('FO', 5)                      105
//   AddTable('A,B', 'C', 'X')                A,B,C   (A,B when C is one of the items already)
//   AddCondition('P', 'Q')                   P AND Q (Q when the first is empty, and P likewise)
//   order_restriction()                      " WHERE ORDERS"
//   restrict('LAGER', 'P', 0)                P {LAGER,0}
//   GetText(7)                               T7      (5 Falsch, 6 Wahr)
//   server_date('1.2.2024', ...)             S(1.2.2024)
//   server_date(45000, ...)                  D45000
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/suite.h"
#include "platform/user_locale.h"
#include "tests/support/call_log.h"

namespace kestrova::test {

// What a test may change about the answers.
struct FakeAnswers {
  std::map<std::int32_t, std::string> texts = {{5, "Falsch"}, {6, "Wahr"}};
  std::map<std::string, std::vector<ListEntry>, std::less<>> field_lists;  // by field-list key
  std::map<std::int32_t, std::string> field_formats;  // by field number; "" for all others
  std::map<std::string, bool, std::less<>> options;   // false for all others
  std::int32_t standard_model = 0;
  std::string order_restriction = " WHERE ORDERS";
  bool has_restrictions = true;  // false: restrict() answers the condition as it is
  std::function<std::string(std::string_view number)> format = [](std::string_view number) {
    return std::string(number);
  };
  std::function<std::int32_t(std::string_view relation, std::int32_t field_id)> map_field_id =
      [](std::string_view, std::int32_t field_id) { return field_id + 100; };
};

// What the services share: they may outlive the suite that made them.
struct FakeSuiteState;

class FakeSuite : public Suite {
 public:
  explicit FakeSuite(CallLog log = make_call_log());

  FakeAnswers& answers();

  // Every operation of every service as "GetText(5)", texts in apostrophes, in order. The context
  // is left out, and so is the text that StrTokens walks, which would fill the log.
  const std::vector<std::string>& log() const;

  // The lines of the log that are calls of this operation.
  std::vector<std::string> calls_of(std::string_view operation) const;

  // The k-th operation, counted from 1 over all services, raises InvalidArgument; 0 for none.
  void fail_on_call(std::size_t k);
  std::size_t calls_made() const;

  // Services made and not yet released.
  std::size_t live_services() const;

  std::shared_ptr<LocTexts> loc_texts() override;
  std::shared_ptr<TableAccessService> table_access() override;
  std::shared_ptr<AccessLevelFilter> access_level_filter() override;
  std::shared_ptr<ModelSettings> model_settings() override;
  std::shared_ptr<SuiteOptions> suite_options() override;
  std::shared_ptr<StrTokens> str_tokens() override;
  std::shared_ptr<NumFormatter> num_formatter() override;
  std::shared_ptr<DateFormatter> date_formatter() override;

 private:
  std::shared_ptr<FakeSuiteState> state_;
};

// German or English regional settings, whatever the machine's are.
class FakeLocale : public UserLocale {
 public:
  enum class Language { kGerman, kEnglish };

  explicit FakeLocale(Language language) : language_(language) {}

  std::optional<double> to_number(std::string_view text) const override;
  // Day, month, year (English: month, day, year) separated by ".", "/" or "-", or year, month, day
  // when the year comes first with four digits.
  std::optional<DateTime> to_date(std::string_view text) const override;
  std::string format(double number, std::string_view pattern) const override;
  // German dd.mm.yyyy, English mm/dd/yyyy, with " hh:mm:ss" behind it unless it is midnight.
  std::string format_date(const DateTime& date) const override;
  std::string boolean_text(bool value) const override;

 private:
  bool is_german() const { return language_ == Language::kGerman; }

  Language language_;
};

}  // namespace kestrova::test
