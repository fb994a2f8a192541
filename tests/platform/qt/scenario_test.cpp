// Whole sessions of a user before the real window, over the editor and the sample database.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>

#include "editor/f_selection.h"
#include "editor/row_counter.h"
#include "engine/comm_sel.h"
#include "interface/c_selection_init.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/qt/qt_user_interface.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"
#include "tests/examples/forest_fixture.h"
#include "tests/platform/qt/window_user.h"

namespace kestrova::test {
namespace {

using testing::ElementsAre;

// 1WL: transports, a catalogue relation. 1EXP: lots, a restricted relation.
constexpr const char* kTransports = "1WL";
constexpr const char* kLots = "1EXP";

class Session : public testing::Test {
 protected:
  Session() {
    const auto locale = std::make_shared<SettingsUserLocale>("DE", "DMY");
    install_host({.suite = make_standalone_suite(connection_, locale),
                  .user_interface = user_interface_,
                  .user_locale = locale});
    context_.dbado = connection_;
  }
  ~Session() override { install_host({}); }

  SelectionDialog& dialog() const { return selection_editor(); }
  WindowUser user() const { return WindowUser(*QApplication::activeModalWidget()); }

  void start(const char* relation) {
    facade_.c_Selection_Init(context_, relation, "", from_where_, formula_);
  }

  // Shows the window to a user who does these steps.
  void show(std::vector<std::function<void()>> steps) {
    when_idle(std::move(steps));
    facade_.c_form_Selection(context_, from_where_, formula_, false);
  }

  std::vector<std::string> lines() const { return user().texts(dialog().ListCriteria); }

  // The records that a FROM/WHERE text selects.
  std::vector<std::vector<std::string>> selected(const std::string& column,
                                                 const std::string& from_where) const {
    return rows(*connection_, "SELECT " + column + from_where + " ORDER BY 1");
  }

  std::string translated(const char* relation, const std::string& criteria) const {
    return Comm_Sel().D_SelectionFromStr(context_, relation, "", criteria, "",
                                         context_.lngAccessLevel);
  }

  std::shared_ptr<Connection> connection_ = make_forest(200);
  std::shared_ptr<QtUserInterface> user_interface_ = std::make_shared<QtUserInterface>();
  KesVar context_ = forest_user("DE", 1, "SELECT ID FROM ACCESS_LEVELS");
  SelectionFacade facade_;
  std::string from_where_;
  std::string formula_;
};

TEST_F(Session, AFilterComposedWithMouseAndKeyboardSelectsWhatItsStoredFormSelects) {
  start(kLots);
  show({[this] {
    const WindowUser clerk = user();
    SelectionDialog& d = dialog();
    clerk.click(d.btnNew);
    clerk.pick(d.cboField, "Holzart");
    clerk.pick(d.cboOperator, "=");
    clerk.pick(d.cboValue, "FI");
    clerk.click(d.btnInsert);
    clerk.click(d.btnOr);
    EXPECT_EQ(clerk.focused(), "cboField");
    clerk.pick(d.cboField, "Holzart");
    clerk.pick(d.cboOperator, "IN");
    clerk.pick(d.cboValue, "BU");
    clerk.key(Qt::Key_Plus, Qt::ControlModifier);
    clerk.pick(d.cboValue, "EI");
    clerk.click(d.btnPlus);
    clerk.key(Qt::Key_E, Qt::AltModifier);
    clerk.pick(d.cboField, "Durchmesser (cm)");
    clerk.pick(d.cboOperator, ">=");
    clerk.focus(d.cboValue);
    clerk.type("40x");  // a number: the letter is refused
    EXPECT_EQ(clerk.combo(d.cboValue).currentText(), "40");
    clerk.key(Qt::Key_Return);
    EXPECT_THAT(lines(), ElementsAre("Holzart = 'FI'", "=== ODER ===", "Holzart IN ('BU', 'EI')",
                                     "Durchmesser (cm) >= 40"));
    clerk.key(Qt::Key_Return, Qt::ControlModifier);
  }});
  EXPECT_TRUE(facade_.WasOKClick());
  EXPECT_EQ(formula_, "Holzart = 'FI' OR Holzart IN ('BU', 'EI') AND  AND Durchmesser (cm) >= 40");
  const std::string criteria = facade_.GetWriteString(context_);
  EXPECT_EQ(criteria, "703 = 'FI';=== ODER ===;703 IN ('BU', 'EI') ;711 >= 40;");
  const auto records = selected("LOGS.ID", from_where_);
  EXPECT_GT(records.size(), 0U);
  EXPECT_EQ(records, selected("LOGS.ID", translated(kLots, criteria)));
}

TEST_F(Session, AFilterOfACatalogueRelationSelectsWhatItsStoredFormSelects) {
  start(kTransports);
  show({[this] {
    const WindowUser clerk = user();
    SelectionDialog& d = dialog();
    clerk.click(d.btnNew);
    clerk.focus(d.cboField);
    clerk.pick(d.cboField, 3);
    clerk.pick(d.cboOperator, ">");
    clerk.focus(d.cboValue);
    clerk.type("60");
    clerk.key(Qt::Key_Insert);
    clerk.key(Qt::Key_O, Qt::ControlModifier);
    clerk.pick(d.cboField, 3);
    clerk.pick(d.cboOperator, "<");
    clerk.focus(d.cboValue);
    clerk.type("20");
    clerk.key(Qt::Key_Return);
    clerk.click(d.btnOk);
  }});
  EXPECT_TRUE(facade_.WasOKClick());
  const std::string criteria = facade_.GetWriteString(context_);
  EXPECT_EQ(criteria, "4 > 60;=== ODER ===;4 < 20;");
  const auto records = selected("TRANSPORTLOGISTIK_KOPF.ID", from_where_);
  EXPECT_GT(records.size(), 0U);
  EXPECT_EQ(records, selected("TRANSPORTLOGISTIK_KOPF.ID", translated(kTransports, criteria)));
}

TEST_F(Session, TheStandardModelIsLoadedAtTheStartAndAnotherByDoubleClick) {
  context_.lngUserID = 1;
  start("1VM");
  show({[this] {
    const WindowUser clerk = user();
    SelectionDialog& d = dialog();
    EXPECT_EQ(QApplication::activeModalWidget()->windowTitle(), "Selektion: Fichte stark");
    EXPECT_THAT(lines(), ElementsAre("Holzart = 'FI'", "Durchmesser (cm) >= 40"));
    EXPECT_EQ(d.txtStandard.text(), "Fichte stark");
    EXPECT_EQ(clerk.list(d.Model).currentItem()->text(), "Fichte stark");
    const std::vector<std::string> models = clerk.texts(d.Model);
    const auto at = std::find(models.begin(), models.end(), "Buche oder Eiche");
    clerk.double_click(d.Model, static_cast<int>(at - models.begin()));
    EXPECT_EQ(QApplication::activeModalWidget()->windowTitle(), "Selektion: Buche oder Eiche");
    EXPECT_THAT(lines(), ElementsAre("Holzart = 'BU'", "=== ODER ===", "Holzart = 'EI'"));
    EXPECT_TRUE(d.Check1.checked());
    clerk.key(Qt::Key_Escape);
  }});
  EXPECT_FALSE(facade_.WasOKClick());
}

TEST_F(Session, LinesAreDraggedAndMovedByKeys) {
  start(kLots);
  facade_.FillListCriteria(context_, "703 = 'FI';711 >= 40;=== ODER ===;703 = 'BU';", kLots);
  show({[this] {
    const WindowUser clerk = user();
    SelectionDialog& d = dialog();
    clerk.drag(d.ListCriteria, 0, 3);
    EXPECT_THAT(lines(), ElementsAre("Durchmesser (cm) >= 40", "=== ODER ===", "Holzart = 'BU'",
                                     "Holzart = 'FI'"));
    EXPECT_EQ(clerk.list(d.ListCriteria).currentRow(), 3);
    clerk.focus(d.ListCriteria);
    clerk.key(Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_THAT(lines(), ElementsAre("Durchmesser (cm) >= 40", "=== ODER ===", "Holzart = 'FI'",
                                     "Holzart = 'BU'"));
    clerk.key(Qt::Key_Delete);
    EXPECT_THAT(lines(), ElementsAre("Durchmesser (cm) >= 40", "=== ODER ===", "Holzart = 'BU'"));
    clerk.click(d.btnCancel);
  }});
}

TEST_F(Session, AnOrLineAtTheEndIsRefusedWithAMessageAndTheWindowStays) {
  start(kLots);
  show({[this] {
          const WindowUser clerk = user();
          clerk.click(dialog().btnNew);
          clerk.click(dialog().btnOr);
          clerk.click(dialog().btnOk);
        },
        [] {
          auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
          ASSERT_NE(box, nullptr);
          EXPECT_EQ(box->text(), "Die erste Zeile der Selektion darf keine ODER-Zeile sein.");
          EXPECT_EQ(box->icon(), QMessageBox::Warning);
          box->accept();
        },
        [this] { user().click(dialog().btnCancel); }});
  EXPECT_FALSE(facade_.WasOKClick());
}

TEST_F(Session, CountingSelectsWhatTheResultSelectsAndChangesNothing) {
  start(kLots);
  facade_.FillListCriteria(context_, "703 = 'FI';711 >= 40;", kLots);
  const std::shared_ptr<RowCounter> counter = make_row_counter(selection_editor());
  EXPECT_EQ(counter->begin(), RowCount::kCounting);
  while (counter->advance(std::chrono::milliseconds(5)) == RowCount::kCounting) {
  }
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, "");
  facade_.OK_Click(from_where_, formula_);
  EXPECT_EQ(counter->rows(), static_cast<std::int64_t>(selected("LOGS.ID", from_where_).size()));
}

TEST_F(Session, AListThatTheDatabaseRefusesIsNotCounted) {
  start(kLots);
  facade_.FillListCriteria(context_, "703 = 'FI';=== ODER ===;", kLots);
  EXPECT_THROW(make_row_counter(selection_editor())->begin(), DatabaseError);
  start("LEISTUNGS_BB");
  EXPECT_EQ(make_row_counter(selection_editor())->begin(), RowCount::kNone);
}

}  // namespace
}  // namespace kestrova::test
