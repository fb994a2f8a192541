// Nothing that is written into a filter leaves the parentheses around the criteria: the rows are
// rows of the relation that the user may see, and the database stays as it is.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "tests/attack/attack_host.h"
#include "tests/attack/hostile_text.h"
#include "tests/attack/readable.h"
#include "tests/attack/settings.h"
#include "tests/attack/sql_closure.h"
#include "tests/attack/write_watch.h"

namespace kestrova::test {
namespace {

constexpr std::string_view kOrLine = "=== ODER ===";
// Cases in a row that attack the same relation.
constexpr std::uint64_t kBlock = 400;

struct Attack {
  std::uint64_t number = 0;
  AttackHost::Path path = AttackHost::kStoredString;
  PeacefulField field;
  std::vector<std::string> criteria;
};

// What the library reads as single criteria, with the field's identifier where it stands before
// them: a stored string is cut at each ";", whatever was meant.
std::vector<std::string> records(const Attack& attack) {
  if (attack.path == AttackHost::kEditor) return attack.criteria;
  std::string all;
  for (const std::string& criterion : attack.criteria) {
    all += criterion == kOrLine ? criterion : std::to_string(attack.field.id) + criterion;
    all += ';';
  }
  std::vector<std::string> result;
  for (const std::string_view record : text::split(all, ';')) result.emplace_back(record);
  result.pop_back();
  return result;
}

bool must_be_refused(const Attack& attack) {
  if (!attack.field.is_verbatim) return false;
  for (const std::string& record : records(attack)) {
    if (record != kOrLine && (is_open(record) || is_unprintable(record))) return true;
  }
  return false;
}

// The criteria as they have to come out, blanks outside quotes aside: each is the field's
// expression and what was written behind the field. Nothing for values that are rewritten, and for
// other fields.
std::optional<std::string> expected_criteria(const Attack& attack) {
  if (!attack.field.is_verbatim) return std::nullopt;
  const std::string id =
      attack.path == AttackHost::kStoredString ? std::to_string(attack.field.id) : "";
  std::string expected;
  bool joins = false;
  for (const std::string& record : records(attack)) {
    if (record == kOrLine) {
      expected += "OR";
      joins = false;
      continue;
    }
    const std::string_view written = text::trim(record);
    if (!written.starts_with(id)) return std::nullopt;
    const std::string_view rest = written.substr(id.size());
    if (rest.empty() || std::isdigit(static_cast<unsigned char>(rest[0]))) return std::nullopt;
    if (joins) expected += "AND";
    expected += attack.field.expression;
    expected += rest;
    joins = true;
  }
  return expected;
}

class Attacks {
 public:
  Attacks(AttackHost& host, const Settings& settings) : host_(host), settings_(settings) {}

  void run() {
    const std::vector<Subject> relations = attacked_relations();
    std::uint64_t block = ~std::uint64_t{0};
    for (std::uint64_t number = settings_.first; number < settings_.end(); ++number) {
      if (number / kBlock != block) {
        block = number / kBlock;
        const bool is_north = block / relations.size() % 2 == 0;
        host_.start(relations[block % relations.size()],
                    is_north ? AttackHost::kNorth : AttackHost::kHeadOffice);
      }
      run_case(number);
    }
  }

  void report() const {
    std::cout << "seed " << settings_.seed << ", cases " << settings_.first << " to "
              << settings_.end() - 1 << ": " << refused_ << " refused by the library, "
              << refused_by_database_ << " by the database, " << executed_ << " selected, "
              << failed_ << " failed\n";
    for (const auto& [fault, count] : faults_) std::cout << "  " << count << " " << fault << "\n";
  }

  std::uint64_t failed() const { return failed_; }
  std::uint64_t refused() const { return refused_; }
  std::uint64_t executed() const { return executed_; }

 private:
  void run_case(std::uint64_t number) {
    Dice dice(settings_.seed, number);
    Attack attack;
    attack.number = number;
    attack.path = dice.one_in(2) ? AttackHost::kStoredString : AttackHost::kEditor;
    const std::vector<PeacefulField>& fields = host_.fields(attack.path);
    if (fields.empty()) return;
    attack.field = fields[dice.below(fields.size())];
    const std::string name = attack.path == AttackHost::kStoredString
                                 ? std::to_string(attack.field.id)
                                 : attack.field.name;
    attack.criteria = hostile_criteria(dice, name, kOrLine);
    const Ids& visible = host_.visible(attack.path, attack.field);

    current_ = &attack;
    text_.clear();
    has_failed_ = false;
    WriteWatch::instance().begin([this](std::string_view change) { return may_change(change); });
    translate(attack, visible);
    for (const std::string& change : WriteWatch::instance().end()) fail("changed: " + change);
    if (host_.user().pointer() != PointerShape::kDefault) fail("left the hourglass");
    failed_ += has_failed_ ? 1 : 0;
  }

  // A contract keeps its filter; labour bookings fill a table of the connection.
  bool may_change(std::string_view change) const {
    const std::string& code = host_.subject().code;
    if (code.starts_with("LEISTUNGS_BB") || code == "VERLOHN") {
      return change.find(" #") != std::string_view::npos;
    }
    return current_->path == AttackHost::kEditor &&
           ((code.starts_with("VERTP") && change == "UPDATE VERTRAG_PREISE.SELEKTION_VALUE") ||
            (code.starts_with("VERTM") && change == "UPDATE VERTRAG_MENGEN.SELEKTION_VALUE"));
  }

  void translate(const Attack& attack, const Ids& visible) {
    try {
      text_ = host_.from_where(attack.path, attack.field, attack.criteria);
    } catch (const Error&) {
      ++refused_;
      if (!WriteWatch::instance().allowed_changes().empty()) fail("wrote what it refused");
      const bool is_answered =
          attack.path == AttackHost::kEditor && !module_state().strSelektion_Fr_Wh.empty();
      if (is_answered) fail("answered what it refused");
      return;
    }
    if (text_.empty()) {  // an OR line at an end
      ++refused_;
      return;
    }
    if (must_be_refused(attack)) fail("took an open text");
    check_text(attack);
    check_rows(visible);
  }

  void check_text(const Attack& attack) {
    const auto expected = expected_criteria(attack);
    if (attack.path == AttackHost::kStoredString && !expected) return;  // of other fields, too
    if (!text_.starts_with(attack.field.before) || !text_.ends_with(")")) {
      return fail("changed what stands before the criteria");
    }
    const std::string_view all = text_;
    const std::string_view criteria =
        all.substr(attack.field.before.size(), all.size() - attack.field.before.size() - 1);
    if (is_open(criteria)) fail("left the parentheses");
    if (is_unprintable(criteria)) fail("answered what cannot be printed");
    const bool rewrites_null = criteria.find(" IS NULL OR RTRIM(LTRIM(") != std::string::npos;
    if (!expected || rewrites_null) return;
    // Blanks between the parts mean nothing, and lists of dates come without empty elements.
    const std::string_view free = attack.field.is_date ? " ," : " ";
    if (without_outer(criteria, free) != without_outer(*expected, free)) {
      fail("changed the criteria");
    }
  }

  void check_rows(const Ids& visible) {
    try {
      for (const std::string& id : host_.records(text_)) {
        if (visible.contains(id)) continue;
        fail("selected a row that is not there for the user");
        break;
      }
      ++executed_;
    } catch (const DatabaseError&) {
      ++refused_by_database_;
    }
  }

  void fail(const std::string& fault) {
    has_failed_ = true;
    ++faults_[fault];
    if (++told_ > 20) return;
    ADD_FAILURE() << fault << "\n  again: " << settings_.again(current_->number) << "\n  relation "
                  << host_.subject().code << " " << host_.subject().mode << ", user of level "
                  << host_.context().lngAccessLevel << ", "
                  << (current_->path == AttackHost::kEditor
                          ? "editor, field " + current_->field.name
                          : std::string("stored string"))
                  << "\n  criteria " << readable(records(*current_)) << "\n  text "
                  << readable(text_);
  }

  AttackHost& host_;
  const Settings settings_;
  const Attack* current_ = nullptr;
  std::string text_;
  bool has_failed_ = false;
  int told_ = 0;
  std::map<std::string, std::uint64_t> faults_;
  std::uint64_t refused_ = 0;
  std::uint64_t refused_by_database_ = 0;
  std::uint64_t executed_ = 0;
  std::uint64_t failed_ = 0;
};

TEST(Attack, LeavesNoParenthesesAndChangesNothing) {
  AttackHost host;
  const std::uint64_t before = host.checksum();
  const Settings settings = Settings::from_environment(100'000);
  Attacks attacks(host, settings);
  // What the contracts of the attacked relations hold is theirs to change.
  host.db().execute(
      "SELECT * INTO #PREISE FROM VERTRAG_PREISE SELECT * INTO #MENGEN FROM VERTRAG_MENGEN");
  attacks.run();
  attacks.report();
  for (const char* const table : {"PREISE", "MENGEN"}) {
    host.db().execute("UPDATE VERTRAG_" + std::string(table) +
                      " SET SELEKTION_VALUE = (SELECT SELEKTION_VALUE FROM #" + table +
                      " WHERE ID = 1) WHERE ID = 1");
  }
  EXPECT_EQ(host.checksum(), before) << "the database is not what it was";
  EXPECT_EQ(attacks.failed(), 0U);
  if (settings.count < 10'000) return;
  // A test that is refused everywhere, or nowhere, proves nothing.
  EXPECT_GT(attacks.refused(), settings.count / 20);
  EXPECT_GT(attacks.executed(), settings.count / 20);
}

TEST(Attack, IsDoneToRelationsWithRowsThatTheUserMayNotSee) {
  AttackHost host;
  int restricted = 0;
  int by_path[2] = {};
  for (const Subject& subject : attacked_relations()) {
    SCOPED_TRACE(subject.code + " " + subject.mode);
    for (const AttackHost::Path path : {AttackHost::kStoredString, AttackHost::kEditor}) {
      host.start(subject, AttackHost::kHeadOffice);
      if (host.fields(path).empty()) continue;
      ++by_path[path];
      const std::size_t all = host.visible(path, host.fields(path)[0]).size();
      host.start(subject, AttackHost::kNorth);
      if (host.visible(path, host.fields(path)[0]).size() < all) ++restricted;
    }
  }
  EXPECT_GE(by_path[AttackHost::kStoredString], 100);
  EXPECT_GE(by_path[AttackHost::kEditor], 100);
  EXPECT_GE(restricted, 80);
}

}  // namespace
}  // namespace kestrova::test
