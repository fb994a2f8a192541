#include "tests/support/fake_suite.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <utility>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::test {

struct FakeSuiteState {
  explicit FakeSuiteState(CallLog its_log) : log(std::move(its_log)) {}

  CallLog log;
  FakeAnswers answers;
  std::size_t calls_made = 0;
  std::size_t failing_call = 0;  // 0: none
  std::size_t live_services = 0;
};

namespace {

using State = std::shared_ptr<FakeSuiteState>;

std::string shown(std::string_view text) { return "'" + std::string(text) + "'"; }
std::string shown(std::int32_t number) { return std::to_string(number); }
std::string shown(bool flag) { return flag ? "true" : "false"; }
std::string shown(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.15g", number);
  return text;
}

// What every fake service has: it counts as live, and writes its calls down.
class FakeService {
 public:
  explicit FakeService(State state) : state_(std::move(state)) { ++state_->live_services; }
  ~FakeService() { --state_->live_services; }
  FakeService(const FakeService&) = delete;
  FakeService& operator=(const FakeService&) = delete;

 protected:
  template <class... Arguments>
  void call(const std::string& operation, const Arguments&... arguments) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + shown(arguments)), ...);
    state_->log->push_back(operation + "(" + list + ")");
    if (++state_->calls_made == state_->failing_call) {
      throw InvalidArgument("scripted service failure of call " +
                            std::to_string(state_->calls_made) + ": " + state_->log->back());
    }
  }

  const FakeAnswers& answers() const { return state_->answers; }

 private:
  State state_;
};

// The answer scripted for a key, or the default.
template <class Map, class Key>
typename Map::mapped_type answer_or(const Map& map, const Key& key,
                                    typename Map::mapped_type otherwise) {
  const auto found = map.find(key);
  return found == map.end() ? std::move(otherwise) : found->second;
}

class FakeLocTexts : public LocTexts, private FakeService {
 public:
  using FakeService::FakeService;
  std::string GetText(std::int32_t number, const KesVar&) override {
    call("GetText", number);
    return answer_or(answers().texts, number, "T" + std::to_string(number));
  }
};

class FakeTableAccess : public TableAccessService, private FakeService {
 public:
  using FakeService::FakeService;

  void FillFieldList(std::string_view list_key, EntryList& list, const KesVar&,
                     std::int32_t option) override {
    call("FillFieldList", list_key, option);
    for (const ListEntry& entry : answer_or(answers().field_lists, list_key, {})) {
      list.add(entry.text);
      list.set_item_data(list.new_index(), entry.item_data);
    }
  }

  std::int32_t MapFieldId(std::string_view relation, std::int32_t field_id) override {
    call("MapFieldId", relation, field_id);
    return answers().map_field_id(relation, field_id);
  }

  std::string AddFieldTables(std::string_view table_key, std::int32_t field_number,
                             std::string_view from_text, std::string_view run_type,
                             const KesVar&) override {
    call("AddFieldTables", table_key, field_number, from_text, run_type);
    return std::string(from_text) + "<" + std::string(table_key) + "," +
           std::to_string(field_number) + "," + std::string(run_type) + ">";
  }

  std::string GetFieldExpression(std::string_view table_key, std::int32_t field_number,
                                 std::int32_t option1, std::int32_t option2,
                                 const KesVar&) override {
    call("GetFieldExpression", table_key, field_number, option1, option2);
    if (field_number == 0) throw ItemNotFound("0 is never a field.");
    return "EXPR(" + std::string(table_key) + "," + std::to_string(field_number) + ")";
  }

  std::string field_format(std::string_view table_key, std::int32_t field_number,
                           const KesVar&) override {
    call("field_format", table_key, field_number);
    return answer_or(answers().field_formats, field_number, "");
  }

  std::string AddTable(std::string_view from_text, std::string_view table,
                       std::string_view run_type) override {
    call("AddTable", from_text, table, run_type);
    const std::vector<std::string_view> items = text::split(from_text, ',');
    const bool there = std::find(items.begin(), items.end(), table) != items.end();
    if (table.empty() || there) return std::string(from_text);
    return from_text.empty() ? std::string(table)
                             : std::string(from_text) + "," + std::string(table);
  }

  std::string AddCondition(std::string_view condition, std::string_view further) override {
    call("AddCondition", condition, further);
    if (condition.empty() || further.empty()) {
      return std::string(condition) + std::string(further);
    }
    return std::string(condition) + " AND " + std::string(further);
  }

  std::string order_restriction(const KesVar&) override {
    call("order_restriction");
    return answers().order_restriction;
  }
};

class FakeAccessLevelFilter : public AccessLevelFilter, private FakeService {
 public:
  using FakeService::FakeService;
  std::string restrict(std::string_view base_table, std::string_view condition, const KesVar&,
                       std::int32_t option) override {
    call("restrict", base_table, condition, option);
    if (!answers().has_restrictions) return std::string(condition);
    return std::string(condition) + " {" + std::string(base_table) + "," + std::to_string(option) +
           "}";
  }
};

class FakeModelSettings : public ModelSettings, private FakeService {
 public:
  using FakeService::FakeService;
  std::int32_t standard_model(const KesVar&, std::string_view model_relation,
                              std::int32_t option) override {
    call("standard_model", model_relation, option);
    return answers().standard_model;
  }
};

class FakeSuiteOptions : public SuiteOptions, private FakeService {
 public:
  using FakeService::FakeService;
  bool GetOptionFlag(std::string_view option, const KesVar&) override {
    call("GetOptionFlag", option);
    return answer_or(answers().options, option, false);
  }
};

// Remembers where it found the last record, so that walking on from it costs only that record.
class FakeStrTokens : public StrTokens, private FakeService {
 public:
  using FakeService::FakeService;

  std::int32_t TokenCount(std::string_view text, std::string_view separator) override {
    call("TokenCount", separator);
    std::int32_t count = 0;
    for (rewind(text, separator); begin_ < text_.size(); step()) ++count;
    return count;
  }

  std::string_view TokenAt(std::string_view text, std::string_view separator,
                           std::int32_t index) override {
    call("TokenAt", separator, index);
    const bool same_walk =
        text.data() == text_.data() && text.size() == text_.size() && separator == separator_;
    if (!same_walk || index < index_) rewind(text, separator);
    while (index_ < index && begin_ < text_.size()) step();
    if (index < 0 || begin_ >= text_.size()) {
      throw InvalidArgument("There is no record with index " + std::to_string(index) + ".");
    }
    return text_.substr(begin_, end_of_record() - begin_);
  }

 private:
  void rewind(std::string_view text, std::string_view separator) {
    text_ = text;
    separator_ = separator;
    begin_ = 0;
    index_ = 0;
  }

  std::size_t end_of_record() const {
    return std::min(text_.find(separator_, begin_), text_.size());
  }

  void step() {
    begin_ = std::min(end_of_record() + separator_.size(), text_.size());
    ++index_;
  }

  std::string_view text_;
  std::string separator_;
  std::size_t begin_ = 0;  // of the record at index_; the end of the text behind the last one
  std::int32_t index_ = 0;
};

class FakeNumFormatter : public NumFormatter, private FakeService {
 public:
  using FakeService::FakeService;
  std::string format(std::string_view number, std::string_view blank) override {
    call("format", number, blank);
    return answers().format(number);
  }
};

class FakeDateFormatter : public DateFormatter, private FakeService {
 public:
  using FakeService::FakeService;

  std::string server_date(std::string_view typed, bool flag, std::string_view date_order) override {
    call("server_date", typed, flag, date_order);
    return "S(" + std::string(typed) + ")";
  }

  bool is_set(double day_count) override {
    call("is_set", day_count);
    return day_count != 0;
  }

  std::string server_date(double day_count, std::string_view date_order) override {
    call("server_date", day_count, date_order);
    return "D" + std::to_string(static_cast<std::int64_t>(std::floor(day_count)));
  }
};

}  // namespace

FakeSuite::FakeSuite(CallLog log) : state_(std::make_shared<FakeSuiteState>(std::move(log))) {}

FakeAnswers& FakeSuite::answers() { return state_->answers; }
const std::vector<std::string>& FakeSuite::log() const { return *state_->log; }
void FakeSuite::fail_on_call(std::size_t k) { state_->failing_call = k; }
std::size_t FakeSuite::calls_made() const { return state_->calls_made; }
std::size_t FakeSuite::live_services() const { return state_->live_services; }

std::vector<std::string> FakeSuite::calls_of(std::string_view operation) const {
  std::vector<std::string> calls;
  const std::string beginning = std::string(operation) + "(";
  std::copy_if(log().begin(), log().end(), std::back_inserter(calls),
               [&](const std::string& line) { return line.starts_with(beginning); });
  return calls;
}

std::shared_ptr<LocTexts> FakeSuite::loc_texts() { return std::make_shared<FakeLocTexts>(state_); }
std::shared_ptr<TableAccessService> FakeSuite::table_access() {
  return std::make_shared<FakeTableAccess>(state_);
}
std::shared_ptr<AccessLevelFilter> FakeSuite::access_level_filter() {
  return std::make_shared<FakeAccessLevelFilter>(state_);
}
std::shared_ptr<ModelSettings> FakeSuite::model_settings() {
  return std::make_shared<FakeModelSettings>(state_);
}
std::shared_ptr<SuiteOptions> FakeSuite::suite_options() {
  return std::make_shared<FakeSuiteOptions>(state_);
}
std::shared_ptr<StrTokens> FakeSuite::str_tokens() {
  return std::make_shared<FakeStrTokens>(state_);
}
std::shared_ptr<NumFormatter> FakeSuite::num_formatter() {
  return std::make_shared<FakeNumFormatter>(state_);
}
std::shared_ptr<DateFormatter> FakeSuite::date_formatter() {
  return std::make_shared<FakeDateFormatter>(state_);
}

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Takes the digits at the front of rest.
std::string_view take_digits(std::string_view& rest) {
  const auto end = std::find_if_not(rest.begin(), rest.end(), is_digit);
  const std::string_view digits = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
  rest.remove_prefix(digits.size());
  return digits;
}

}  // namespace

std::optional<double> FakeLocale::to_number(std::string_view text) const {
  const char decimal = is_german() ? ',' : '.';
  const char group = is_german() ? '.' : ',';
  std::string_view rest = text::trim(text);
  std::string plain;  // the number with "." and without group separators
  if (rest.starts_with('-') || rest.starts_with('+')) {
    if (rest.front() == '-') plain = "-";
    rest.remove_prefix(1);
  }
  const std::size_t sign_size = plain.size();
  plain += take_digits(rest);
  while (plain.size() > sign_size && rest.starts_with(group)) {
    rest.remove_prefix(std::min(rest.find_first_not_of(group), rest.size()));
    const std::string_view digits = take_digits(rest);
    if (digits.empty()) return std::nullopt;  // a group separator stands among digits
    plain += digits;
  }
  std::size_t digit_count = plain.size() - sign_size;
  if (rest.starts_with(decimal)) {
    rest.remove_prefix(1);
    const std::string_view fraction = take_digits(rest);
    digit_count += fraction.size();
    if (plain.size() == sign_size) plain += '0';
    plain += '.';
    plain += fraction;
    plain += '0';
  }
  if (digit_count == 0) return std::nullopt;
  if (rest.starts_with('e') || rest.starts_with('E')) {
    plain += 'e';
    rest.remove_prefix(1);
    if (rest.starts_with('-') || rest.starts_with('+')) {
      plain += rest.front();
      rest.remove_prefix(1);
    }
    const std::string_view exponent = take_digits(rest);
    if (exponent.empty()) return std::nullopt;
    plain += exponent;
  }
  if (!rest.empty()) return std::nullopt;
  double number = 0;
  const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), number);
  if (result.ec != std::errc()) return std::nullopt;
  return number;
}

std::optional<DateTime> FakeLocale::to_date(std::string_view text) const {
  std::string_view rest = text::trim(text);
  std::vector<std::string_view> parts;
  while (true) {
    parts.push_back(take_digits(rest));
    if (parts.back().empty() || parts.back().size() > 4) return std::nullopt;
    if (rest.empty()) break;
    if (std::string_view("./-").find(rest.front()) == std::string_view::npos) return std::nullopt;
    rest.remove_prefix(1);
  }
  if (parts.size() != 3) return std::nullopt;
  const bool year_first = parts[0].size() == 4;
  const auto number = [&parts](std::size_t part) {
    return static_cast<int>(text::to_int16(parts[part]));
  };
  DateTime date;
  date.year = year_first ? number(0) : full_year(number(2));
  date.month = number(year_first || is_german() ? 1 : 0);
  date.day = number(year_first ? 2 : is_german() ? 0 : 1);
  if (!is_valid_date(date.year, date.month, date.day)) return std::nullopt;
  return date;
}

std::string FakeLocale::format(double number, std::string_view pattern) const {
  const std::size_t point = std::min(pattern.find('.'), pattern.size());
  const auto whole_digits = static_cast<int>(point);
  const int decimals = point == pattern.size() ? 0 : static_cast<int>(pattern.size() - point - 1);
  const int width = whole_digits + (decimals > 0 ? decimals + 1 : 0);
  char digits[400];
  std::snprintf(digits, sizeof digits, "%0*.*f", width, decimals, std::fabs(number));
  const std::string result = text::replace_all(digits, ".", is_german() ? "," : ".");
  return number < 0 ? "-" + result : result;
}

std::string FakeLocale::format_date(const DateTime& date) const {
  std::string text = format_dmy(date);
  if (!is_german()) text = text.substr(3, 2) + "/" + text.substr(0, 2) + "/" + text.substr(6);
  const std::string time = format_iso(date).substr(11);
  return time == "00:00:00" ? text : text + " " + time;
}

std::string FakeLocale::boolean_text(bool value) const {
  if (is_german()) return value ? "Wahr" : "Falsch";
  return value ? "True" : "False";
}

}  // namespace kestrova::test
