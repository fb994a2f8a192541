#include "platform/standalone/standalone_suite.h"

#include <charconv>
#include <optional>

#include "platform/error.h"
#include "platform/standalone/catalogue.h"
#include "platform/standalone/conditions.h"
#include "platform/standalone/date_text.h"
#include "platform/standalone/localised_texts.h"
#include "platform/standalone/record_walker.h"
#include "platform/standalone/table_access.h"
#include "platform/text.h"

namespace kestrova {
namespace standalone {
namespace {

// Restrictions come from SUITE_ACCESS, by table name ignoring case. The option has no meaning here.
class CatalogueAccessFilter : public AccessLevelFilter {
 public:
  explicit CatalogueAccessFilter(SharedCatalogue catalogue) : catalogue_(std::move(catalogue)) {}

  // The restriction is guarded even when it stands alone, because callers put AND behind it.
  std::string restrict(std::string_view base_table, std::string_view condition,
                       const KesVar& context, std::int32_t) override {
    const auto& restrictions = catalogue_->get().restrictions;
    const auto found = restrictions.find(text::upper(base_table));
    if (found == restrictions.end()) return std::string(condition);
    return joined_by_and(condition, guarded(restriction_for(found->second, context)));
  }

 private:
  static std::string restriction_for(const std::string& pattern, const KesVar& context) {
    const std::string with_level =
        text::replace_all(pattern, "{level}", std::to_string(context.lngAccessLevel));
    return text::replace_all(with_level, "{list}", context.strAccessLevelList);
  }

  SharedCatalogue catalogue_;
};

class ModelSettingsTable : public ModelSettings {
 public:
  explicit ModelSettingsTable(std::shared_ptr<Connection> connection)
      : connection_(std::move(connection)) {}

  std::int32_t standard_model(const KesVar& context, std::string_view model_relation,
                              std::int32_t) override {
    const auto rows =
        connection_->open("SELECT ID_MODEL FROM SUITE_MODEL_SETTINGS WHERE ID_USER = " +
                              std::to_string(context.lngUserID) + " AND RELATION = '" +
                              text::replace_all(model_relation, "'", "''") + "'",
                          CursorType::kForwardOnly, LockType::kReadOnly);
    return rows->eof() ? 0 : rows->value(0).integer();
  }

 private:
  std::shared_ptr<Connection> connection_;
};

// The options that are on, in upper case.
using OptionFlags = TextMap<bool>;
using SharedOptions = std::shared_ptr<const ReadOnce<OptionFlags>>;

// Names are compared as the server does: ignoring case and trailing blanks.
std::string option_name(std::string_view name) { return text::upper(text::trim(name)); }

OptionFlags read_options(Connection& connection) {
  OptionFlags flags;
  const auto rows = connection.open("SELECT PROPERTY_ID, NUMBER_VALUE FROM OPTIONEN",
                                    CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !rows->eof(); rows->move_next()) {
    const Value number = rows->value(1);
    flags.emplace(option_name(rows->value(0).text()), !number.is_null() && number.integer() == 1);
  }
  return flags;
}

// A flag is on when its NUMBER_VALUE is 1; an option that is not in the table is off.
class OptionTable : public SuiteOptions {
 public:
  explicit OptionTable(SharedOptions options) : options_(std::move(options)) {}

  bool GetOptionFlag(std::string_view option, const KesVar&) override {
    const OptionFlags& flags = options_->get();
    const auto found = flags.find(option_name(option));
    return found != flags.end() && found->second;
  }

 private:
  SharedOptions options_;
};

class LocaleNumFormatter : public NumFormatter {
 public:
  explicit LocaleNumFormatter(std::shared_ptr<UserLocale> locale) : locale_(std::move(locale)) {}

  // A number that already is in the server's notation stays as it is, also where "." groups digits:
  // a value is formatted again whenever its line is edited, and 1.5 must not become 15.
  std::string format(std::string_view number, std::string_view blank) override {
    const std::string ungrouped =
        blank.empty() ? std::string(number) : text::replace_all(number, blank, "");
    if (is_server_number(ungrouped)) return ungrouped;
    if (!locale_->is_numeric(ungrouped)) return std::string(number);
    return server_notation(ungrouped);
  }

 private:
  static bool is_server_number(std::string_view text) {
    double number = 0;
    const auto result =
        std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::general);
    const bool starts_as_number = text.find_first_of("0123456789.") <= 1;  // no "inf" or "nan"
    return starts_as_number && result.ec == std::errc() && result.ptr == text.data() + text.size();
  }

  // Of a text that is a number only digits, signs, the exponent and the decimal separator matter;
  // the rest groups digits.
  std::string server_notation(std::string_view number) const {
    const std::string plain = text::replace_all(number, locale_->decimal_separator(), "\n");
    std::string result;
    for (const char c : plain) {
      if (c == '\n') result += '.';
      if (std::string_view("0123456789+-eE").find(c) != std::string_view::npos) result += c;
    }
    return result;
  }

  std::shared_ptr<UserLocale> locale_;
};

class ServerDateFormatter : public DateFormatter {
 public:
  std::string server_date(std::string_view typed, bool, std::string_view date_order) override {
    const auto date = read_date(typed, date_order_of(date_order));
    if (!date) throw TypeMismatch("'" + std::string(typed) + "' is no date.");
    return server_text(*date);
  }

  bool is_set(double day_count) override { return day_count != 0; }

  std::string server_date(double day_count, std::string_view) override {
    return server_text(from_day_count(day_count));
  }
};

class StandaloneSuite : public Suite {
 public:
  StandaloneSuite(std::shared_ptr<Connection> connection, std::shared_ptr<UserLocale> locale)
      : connection_(std::move(connection)),
        locale_(std::move(locale)),
        catalogue_(std::make_shared<ReadOnce<Catalogue>>(
            [c = connection_] { return read_catalogue(*c); })),
        options_(std::make_shared<ReadOnce<OptionFlags>>(
            [c = connection_] { return read_options(*c); })),
        loc_texts_(std::make_shared<LocalisedTexts>(connection_)),
        table_access_(std::make_shared<CatalogueTableAccess>(catalogue_, loc_texts_)) {}

  // One text service and one table access for all callers: what they have worked out is kept.
  std::shared_ptr<LocTexts> loc_texts() override { return loc_texts_; }
  std::shared_ptr<TableAccessService> table_access() override { return table_access_; }

  std::shared_ptr<AccessLevelFilter> access_level_filter() override {
    return std::make_shared<CatalogueAccessFilter>(catalogue_);
  }
  std::shared_ptr<ModelSettings> model_settings() override {
    return std::make_shared<ModelSettingsTable>(connection_);
  }
  std::shared_ptr<SuiteOptions> suite_options() override {
    return std::make_shared<OptionTable>(options_);
  }
  // A new one each time, so that no caller meets the text of another.
  std::shared_ptr<StrTokens> str_tokens() override { return std::make_shared<RecordWalker>(); }
  std::shared_ptr<NumFormatter> num_formatter() override {
    return std::make_shared<LocaleNumFormatter>(locale_);
  }
  std::shared_ptr<DateFormatter> date_formatter() override {
    return std::make_shared<ServerDateFormatter>();
  }

 private:
  std::shared_ptr<Connection> connection_;
  std::shared_ptr<UserLocale> locale_;
  SharedCatalogue catalogue_;
  SharedOptions options_;
  std::shared_ptr<LocTexts> loc_texts_;
  std::shared_ptr<TableAccessService> table_access_;
};

}  // namespace
}  // namespace standalone

std::shared_ptr<Suite> make_standalone_suite(std::shared_ptr<Connection> connection,
                                             std::shared_ptr<UserLocale> locale) {
  if (!connection) throw ObjectNotSet("The standalone suite needs a database connection.");
  if (!locale) throw ObjectNotSet("The standalone suite needs the user's locale.");
  return std::make_shared<standalone::StandaloneSuite>(std::move(connection), std::move(locale));
}

}  // namespace kestrova
