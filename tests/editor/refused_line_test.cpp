// Lines that Insert and Replace do not take, because they could not be kept or executed as they
// read, and what the editor says of them.
#include <gmock/gmock.h>

#include "tests/editor/editor_host.h"

namespace kestrova::test {
namespace {

using testing::ElementsAre;

class RefusedLines : public testing::Test {
 protected:
  RefusedLines() {
    host_.open_sonst();
    host_.fill_lines({{"Anzahl = 1", 11}});
    list().set_index(0);
  }

  F_Selection& editor() { return *host_.editor; }
  ListBox& list() { return editor().ListCriteria; }

  void expect_refused(LineRefusal why, const std::string& offered = "") {
    for (void (F_Selection::*const button)() :
         {&F_Selection::btnInsert_Click, &F_Selection::btnReplace_Click}) {
      (editor().*button)();
      EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1"));
      EXPECT_EQ(editor().refused_line().why, why);
      EXPECT_EQ(editor().refused_line().offered, offered);
    }
  }
  // A list of the values, as the button puts it together.
  void compose_list(std::string_view field, const std::vector<std::string>& values) {
    host_.compose(field, "IN", "");
    for (const std::string& value : values) {
      editor().cboValue.set_text(value);
      editor().btnPlus_Click();
    }
  }

  EditorHost host_;
};

TEST_F(RefusedLines, ASemicolonWouldEndTheStoredCriterion) {
  host_.compose("Holzart", "=", "Huber; Söhne");
  expect_refused(LineRefusal::kSemicolon);
}

TEST_F(RefusedLines, AnApostropheIsToBeDoubledAndTheDoubledFormIsOffered) {
  host_.compose("Holzart", "=", "O'Brien Holzhandel");
  expect_refused(LineRefusal::kApostrophe, "O''Brien Holzhandel");
  host_.compose("Holzart", "=", "O''Brien's");
  expect_refused(LineRefusal::kApostrophe, "O''Brien''s");
  host_.compose("Holzart", "=", "x') OR ('1'='1");
  expect_refused(LineRefusal::kApostrophe, "x'') OR (''1''=''1");
}

TEST_F(RefusedLines, TheDoubledFormIsTaken) {
  host_.compose("Holzart", "=", "O''Brien");
  editor().btnInsert_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Holzart = 'O''Brien'"));
  EXPECT_EQ(editor().refused_line().why, LineRefusal::kNone);
}

TEST_F(RefusedLines, ANumberCannotLeaveItsParentheses) {
  host_.compose("Anzahl", "=", "1) OR (1=1");
  expect_refused(LineRefusal::kNotClosed);
  host_.compose("Anzahl", "=", "1 --");
  expect_refused(LineRefusal::kNotClosed);
  host_.compose("Holzart", "=", "x\ty");
  expect_refused(LineRefusal::kNotClosed);
  host_.compose("Anzahl", "=", "1'");
  expect_refused(LineRefusal::kApostrophe);
}

TEST_F(RefusedLines, ASignInsideTheValueWouldBeReadAsTheOperator) {
  host_.compose("Holzart", "LIKE", "a=b");
  expect_refused(LineRefusal::kOperatorInside);
  host_.compose("Holzart", ">", "a=b");
  expect_refused(LineRefusal::kOperatorInside);
  compose_list("Holzart", {"a<b"});
  expect_refused(LineRefusal::kOperatorInside);
}

TEST_F(RefusedLines, ASignInsideTheValueBehindAnEqualSignIsTaken) {
  host_.compose("Holzart", "=", "a=b");
  editor().btnInsert_Click();
  EXPECT_THAT(host_.lines(), ElementsAre("Anzahl = 1", "Holzart = 'a=b'"));
}

TEST_F(RefusedLines, AListWithTwoParenthesesWouldBeCut) {
  compose_list("Holzart", {"Eder (Tölz)", "Huber (Lenggries)"});
  expect_refused(LineRefusal::kListCut);
  compose_list("Datum", {"-12345"});
  expect_refused(LineRefusal::kListCut);
}

TEST_F(RefusedLines, AListWithOneParenthesisTakesItLast) {
  compose_list("Holzart", {"Eder (Tölz)", "Baumschule Grünwald"});
  editor().btnInsert_Click();
  EXPECT_THAT(host_.lines(),
              ElementsAre("Anzahl = 1", "Holzart IN ('Baumschule Grünwald', 'Eder (Tölz)')"));
  EXPECT_EQ(editor().GetWriteString(host_.context),
            "11 = 1;10 IN ('Baumschule Grünwald', 'Eder (Tölz)') ;");
}

TEST_F(RefusedLines, AListTakesNoValueThatIsNotClosed) {
  compose_list("Holzart", {"FI", "O'Brien"});
  EXPECT_EQ(editor().Formula.text(), "Holzart IN ('FI')");
  EXPECT_EQ(editor().refused_line().why, LineRefusal::kApostrophe);
  EXPECT_EQ(editor().refused_line().offered, "O''Brien");
  compose_list("Holzart", {"FI", "O''Brien", "a;b"});
  EXPECT_EQ(editor().Formula.text(), "Holzart IN ('FI', 'O''Brien')");
  EXPECT_EQ(editor().refused_line().why, LineRefusal::kSemicolon);
}

TEST_F(RefusedLines, TheReasonGoesWithTheNextTry) {
  host_.compose("Holzart", "=", "a;b");
  editor().btnInsert_Click();
  EXPECT_EQ(editor().refused_line().why, LineRefusal::kSemicolon);
  editor().cboValue.set_text("");
  editor().btnInsert_Click();
  EXPECT_EQ(editor().refused_line().why, LineRefusal::kNone) << "incomplete, and ignored as such";
}

}  // namespace
}  // namespace kestrova::test
