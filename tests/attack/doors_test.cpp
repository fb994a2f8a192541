// The other ways in: names of models, relation codes, the record counter, saving.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "editor/row_counter.h"
#include "engine/comm_sel.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/relation_codes.h"
#include "tests/attack/attack_host.h"
#include "tests/attack/hostile_text.h"
#include "tests/attack/readable.h"
#include "tests/attack/settings.h"
#include "tests/attack/sql_closure.h"
#include "tests/attack/write_watch.h"
#include "tests/examples/forest_fixture.h"

namespace kestrova::test {
namespace {

constexpr std::string_view kOrLine = "=== ODER ===";
constexpr int kTold = 10;

using Table = std::vector<std::vector<std::string>>;

class AttackedDoor : public ::testing::Test {
 protected:
  // Runs so many cases, and tells what becomes of them.
  template <class Case>
  void run(std::uint64_t usual_count, Case run_case) {
    Settings settings = Settings::from_environment(usual_count);
    settings.count = std::min(settings.count, 10 * usual_count);
    for (std::uint64_t number = settings.first; number < settings.end(); ++number) {
      Dice dice(settings.seed, number);
      what_.clear();
      try {
        run_case(dice);
        ++taken_;
      } catch (const Error&) {
        ++refused_;
      }
      for (const std::string& change : WriteWatch::instance().end()) fail("changed: " + change);
      if (!fault_.empty() && ++failed_ <= kTold) {
        ADD_FAILURE() << fault_ << "\n  " << what_ << "\n  again: " << settings.again(number);
      }
      fault_.clear();
    }
    std::cout << "seed " << settings.seed << ": " << refused_ << " refused, " << taken_
              << " taken, " << failed_ << " failed\n";
    EXPECT_EQ(failed_, 0);
  }

  static void allow_nothing() {
    WriteWatch::instance().begin([](std::string_view) { return false; });
  }

  void fail(const std::string& fault) { fault_ += fault + "; "; }

  Table models() { return rows(host_.db(), "SELECT * FROM MODELS ORDER BY ID"); }

  AttackHost host_;
  std::string what_;  // the case, for people
  int taken_ = 0;

 private:
  std::string fault_;
  int refused_ = 0;
  int failed_ = 0;
};

class AttackedModelName : public AttackedDoor {};

// The text of a name is that of the model with this very name, or of no criteria.
TEST_F(AttackedModelName, FindsThisModelOrNone) {
  host_.start({"1VM", ""}, AttackHost::kNorth);
  const auto translated = [this](std::string_view criteria) {
    return Comm_Sel().D_SelectionFromStr(host_.context(), "1VM", "", criteria, "", 2);
  };
  const Table stored = rows(host_.db(), "SELECT NAME, MODEL FROM MODELS WHERE RELATION = '1VM'");
  ASSERT_FALSE(stored.empty());
  run(2000, [&](Dice& dice) {
    const std::string name = hostile_name(dice);
    what_ = readable(name);
    allow_nothing();
    const std::string text =
        Comm_Sel().D_Selection(host_.context(), "1VM", name, "", host_.context().lngAccessLevel);
    if (name.find('\'') != std::string::npos) fail("took an apostrophe");
    const bool is_named = std::any_of(stored.begin(), stored.end(), [&](const auto& model) {
      return text::equal_ignoring_case(text::trim(model[0]), text::trim(name)) &&
             text == translated(model[1]);
    });
    if (!is_named && text != translated("")) fail("found another model: " + text);
  });
}

class AttackedCode : public AttackedDoor {
 protected:
  static std::string hostile_code(Dice& dice) {
    static const char* const kFamilies[] = {
        "4ARB",     "4PLN",         "4PAG",           "VERTP",
        "VERTM",    "vertp",        "HIZ_SELEKTION_", "HIZBB_SELEKTION_",
        "BELEG_BB", "LEISTUNGS_BB", "RECHNUNG_BB",    "2PVA",
        "2ABR",     "1VM",          "1VM' OR '1'='1", "X' UNION SELECT MODEL FROM MODELS --"};
    return dice.of(kFamilies) + hostile_suffix(dice);
  }

  static bool is_number(std::string_view text) {
    text = text::trim(text);
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  }

  // Whether what stands where the number of a person or contract belongs is none. A stored filter
  // makes nothing of the number of a contract.
  static bool has_wrong_number(std::string_view code, bool is_stored) {
    for (const std::string_view prefix : {"4ARB", "4PLN", "4PAG", "VERTP", "VERTM", "vertp"}) {
      if (!code.starts_with(prefix)) continue;
      return !(is_stored && prefix.size() > 4) && !is_number(code.substr(prefix.size()));
    }
    return false;
  }

  void check(const std::string& code, const std::string& text, bool is_stored) {
    if (text.empty()) return;
    if (has_wrong_number(code, is_stored)) fail("took a number that is none: " + text);
    if (is_open(text) || is_unprintable(text)) fail("open text: " + text);
    try {
      host_.records(text.starts_with(" FROM ") ? text : " FROM" + text);
    } catch (const DatabaseError&) {
    }
  }
};

TEST_F(AttackedCode, OfAStoredFilterIsRefusedOrPlain) {
  run(2000, [&](Dice& dice) {
    const std::string code = hostile_code(dice);
    const char* const kFilters[] = {"", "303 = 1;", "703 = 'FI';", "101 > 5;", "5 = 1;"};
    const std::string filter = dice.of(kFilters);
    const bool is_by_name = dice.one_in(3);
    what_ = readable(code) + " " + filter;
    WriteWatch::instance().begin(
        [](std::string_view change) { return change.find(" #") != std::string_view::npos; });
    const std::string text =
        is_by_name ? Comm_Sel().D_Selection(host_.context(), code, "Ohne Abfuhr", "", 2)
                   : Comm_Sel().D_SelectionFromStr(host_.context(), code, "4ARB", filter, "", 2);
    check(code, text, true);
    // In this mode a number stands behind the first four characters of any code.
    const bool has_number = !is_by_name && !text.empty() && !IsCatalogueRelation(code);
    if (has_number && !is_number(code.substr(4))) fail("took a number that is none: " + text);
  });
}

TEST_F(AttackedCode, OfTheEditorIsRefusedOrPlain) {
  run(300, [&](Dice& dice) {
    const std::string code = hostile_code(dice);
    what_ = readable(code);
    // A contract with a number keeps what is committed.
    WriteWatch::instance().begin([&code](std::string_view change) {
      return !has_wrong_number(code, false) && change.starts_with("UPDATE VERTRAG_");
    });
    host_.start({code, "4ARB"}, AttackHost::kNorth);
    const EntryList& fields = host_.editor().field_list();
    if (fields.count() == 0) return;
    PeacefulField field;
    const int chosen = static_cast<int>(dice.below(static_cast<std::size_t>(fields.count())));
    field.name = fields.entry_text(chosen);
    field.id = fields.item_data(chosen);
    check(code, host_.from_where(AttackHost::kEditor, field, {" = Null"}), false);
  });
}

class AttackedCounter : public AttackedDoor {};

// The counter runs what it counts while the clerk is still typing.
TEST_F(AttackedCounter, CountsRowsOfTheRelationAndChangesNothing) {
  const std::vector<Subject> relations = attacked_relations();
  std::uint64_t cases = 0;
  run(2000, [&](Dice& dice) {
    if (cases++ % 50 == 0) {
      host_.start(relations[dice.below(relations.size())], AttackHost::kNorth);
    }
    const auto& fields = host_.fields(AttackHost::kEditor);
    if (fields.empty()) return;
    const PeacefulField& field = fields[dice.below(fields.size())];
    const auto criteria = hostile_criteria(dice, field.name, kOrLine);
    host_.put_lines(field, criteria);
    what_ = host_.subject().code + " " + field.name + ": " + readable(criteria);
    allow_nothing();
    const auto counter = make_row_counter(host_.editor());
    if (counter->begin() == RowCount::kNone) return;
    while (counter->advance(std::chrono::milliseconds(10)) == RowCount::kCounting &&
           counter->rows() < 2000) {
    }
    const bool is_wrong = field.is_verbatim &&
                          std::any_of(criteria.begin(), criteria.end(), [](const std::string& c) {
                            return c != kOrLine && (is_open(c) || is_unprintable(c));
                          });
    if (is_wrong) fail("counted an open text");
  });
}

class AttackedModels : public AttackedDoor {
 protected:
  enum Column { kId, kModel, kName, kRelation };

  AttackedModels() { host_.start({"1VM", ""}, AttackHost::kHeadOffice); }

  // What the case wrote is what it was to write, and nothing else.
  void check(const Table& before, const std::string& changed_id, const std::string& name) {
    const Table after = models();
    if (after.size() > before.size() + 1) fail("made several models");
    for (std::size_t i = 0; i < before.size(); ++i) {
      std::vector<std::string> row = before[i];
      if (row[kId] == changed_id) row[kModel] = after[i][kModel];
      if (row != after[i]) fail("changed another model");
    }
    if (after.size() == before.size() + 1) {
      const auto& made = after.back();
      if (made[kName] != name || made[kRelation] != "1VM") fail("made another model");
    }
    for (const auto& row : after) {
      for (const std::string_view record : text::split(row[kModel], ';')) {
        if (is_open(record)) fail("stored an open text");
      }
    }
  }

  void restore(const Table& before) {
    const Table after = models();
    if (after == before) return;
    for (std::size_t i = 0; i < after.size(); ++i) {
      if (i >= before.size()) {
        host_.db().execute("DELETE FROM MODELS WHERE ID = " + after[i][kId]);
      } else if (after[i] != before[i]) {
        host_.db().execute("UPDATE MODELS SET MODEL = '" +
                           text::replace_all(before[i][kModel], "'", "''") +
                           "' WHERE ID = " + before[i][kId]);
      }
    }
    host_.start({"1VM", ""}, AttackHost::kHeadOffice);
  }

  // The editor's list is saved; throws what saving throws.
  void save(const Table& before, bool overwrite, const std::string& name) {
    F_Selection& editor = host_.editor();
    const int index = overwrite ? editor.Model.count() - 1 : -1;
    if (overwrite) editor.Model.set_index(index);
    const std::string id = overwrite ? std::to_string(editor.Model.item_data(index)) : "";
    host_.user().answer = name;
    WriteWatch::instance().begin([overwrite](std::string_view change) {
      return change == (overwrite ? "UPDATE MODELS.MODEL" : "INSERT MODELS");
    });
    try {
      if (overwrite) {
        editor.btnSaveModelle_Click();
      } else {
        editor.btnSaveModelleAs_Click();
      }
    } catch (const Error&) {
      for (const std::string& change : WriteWatch::instance().end()) fail("changed: " + change);
      if (models() != before) fail("saved what it refused");
      throw;
    }
    for (const std::string& change : WriteWatch::instance().end()) fail("changed: " + change);
    check(before, id, name);
  }
};

TEST_F(AttackedModels, GainOrChangeOnlyTheModelThatIsSaved) {
  const Table before = models();
  run(600, [&](Dice& dice) {
    const auto& fields = host_.fields(AttackHost::kEditor);
    const PeacefulField& field = fields[dice.below(fields.size())];
    const bool is_name = dice.one_in(2);
    const auto criteria =
        is_name ? std::vector<std::string>{" = 1"} : hostile_criteria(dice, field.name, kOrLine);
    const std::string name = is_name ? hostile_name(dice) : "Probe";
    what_ = readable(name) + ": " + field.name + readable(criteria);
    host_.put_lines(field, criteria);
    try {
      save(before, !is_name && dice.one_in(2), std::string(text::left(text::trim(name), 40)));
    } catch (const Error&) {
      restore(before);
      throw;
    }
    restore(before);
  });
  EXPECT_GT(taken_, 0);
}

}  // namespace
}  // namespace kestrova::test
