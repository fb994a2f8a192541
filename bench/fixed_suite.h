// The suite's services, answering from memory with next to no work of their own, so that a
// benchmark times the library.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/suite.h"
#include "platform/text.h"

namespace kestrova {

inline constexpr std::string_view kFixedFrom =
    "LOGS INNER JOIN LISTENKOPF ON LISTENKOPF.ID = LOGS.ID_LISTENKOPF";

// Fields that a list offers: more than any relation of the sample database has.
inline constexpr std::int32_t kFixedFields = 100;

class FixedTableAccess final : public TableAccessService {
 public:
  void FillFieldList(std::string_view, EntryList& list, const KesVar&, std::int32_t) override {
    list.clear();
    for (std::int32_t number = 1; number <= kFixedFields; ++number) {
      list.add("Field " + std::to_string(number));
      list.set_item_data(list.new_index(), number);
    }
  }
  std::int32_t MapFieldId(std::string_view, std::int32_t field_id) override { return field_id; }
  std::string AddFieldTables(std::string_view, std::int32_t, std::string_view, std::string_view,
                             const KesVar&) override {
    return std::string(kFixedFrom);
  }
  std::string GetFieldExpression(std::string_view, std::int32_t, std::int32_t, std::int32_t,
                                 const KesVar&) override {
    return "LOGS.MENGE";
  }
  std::string field_format(std::string_view, std::int32_t, const KesVar&) override {
    return "0.00";
  }
  std::string AddTable(std::string_view from_text, std::string_view table,
                       std::string_view) override {
    return std::string(from_text.empty() ? table : from_text);
  }
  std::string AddCondition(std::string_view condition, std::string_view) override {
    return std::string(condition);
  }
  std::string order_restriction(const KesVar&) override { return {}; }
};

class NoRestriction final : public AccessLevelFilter {
 public:
  std::string restrict(std::string_view, std::string_view condition, const KesVar&,
                       std::int32_t) override {
    return std::string(condition);
  }
};

// Remembers where the records of the text begin, as the service's contract asks.
class Records final : public StrTokens {
 public:
  std::int32_t TokenCount(std::string_view text, std::string_view separator) override {
    records_ = text::split(text, separator.front());
    if (records_.back().empty()) records_.pop_back();
    return static_cast<std::int32_t>(records_.size());
  }
  std::string_view TokenAt(std::string_view, std::string_view, std::int32_t index) override {
    return records_[static_cast<std::size_t>(index)];
  }

 private:
  std::vector<std::string_view> records_;
};

class NumberAsText final : public LocTexts {
 public:
  std::string GetText(std::int32_t number, const KesVar&) override {
    return std::to_string(number);
  }
};

class NoModel final : public ModelSettings {
 public:
  std::int32_t standard_model(const KesVar&, std::string_view, std::int32_t) override { return 0; }
};

class AllAllowed final : public SuiteOptions {
 public:
  bool GetOptionFlag(std::string_view, const KesVar&) override { return true; }
};

class NumbersAsTyped final : public NumFormatter {
 public:
  std::string format(std::string_view number, std::string_view) override {
    return std::string(number);
  }
};

class FixedSuite final : public Suite {
 public:
  std::shared_ptr<LocTexts> loc_texts() override { return std::make_shared<NumberAsText>(); }
  std::shared_ptr<TableAccessService> table_access() override { return table_access_; }
  std::shared_ptr<AccessLevelFilter> access_level_filter() override { return filter_; }
  std::shared_ptr<ModelSettings> model_settings() override { return std::make_shared<NoModel>(); }
  std::shared_ptr<SuiteOptions> suite_options() override { return std::make_shared<AllAllowed>(); }
  std::shared_ptr<StrTokens> str_tokens() override { return std::make_shared<Records>(); }
  std::shared_ptr<NumFormatter> num_formatter() override {
    return std::make_shared<NumbersAsTyped>();
  }
  std::shared_ptr<DateFormatter> date_formatter() override { return nullptr; }

 private:
  std::shared_ptr<TableAccessService> table_access_ = std::make_shared<FixedTableAccess>();
  std::shared_ptr<AccessLevelFilter> filter_ = std::make_shared<NoRestriction>();
};

}  // namespace kestrova
