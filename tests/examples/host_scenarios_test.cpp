// Whole sessions of suite modules on the sample database, through the headers that a host sees:
// what a module does, what its user does in the dialog, and the texts and rows that come of it.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/comm_sel.h"
#include "interface/c_selection_init.h"
#include "interface/module_state.h"
#include "platform/selection_dialog.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"
#include "tests/examples/forest_fixture.h"
#include "tests/support/fake_user_interface.h"

namespace kestrova::test {
namespace {

using Texts = std::vector<std::string>;

const std::string kOr = "=== ODER ===";

// A user at the dialog: picks entries by their text, types, and presses buttons.
class Clerk {
 public:
  explicit Clerk(ModalDialog& dialog) : dialog_(dynamic_cast<SelectionDialog&>(dialog)) {}

  SelectionDialog* operator->() const { return &dialog_; }

  void pick(EntryList& list, const std::string& text) const {
    for (int i = 0; i < list.count(); ++i) {
      if (list.entry_text(i) == text) return list.pick(i);
    }
    ADD_FAILURE() << list.name() << " has no entry '" << text << "'";
  }

  // Types into the value box key by key and leaves it.
  void type(const std::string& text) const {
    if (!dialog_.cboValue.reachable()) return;
    std::string typed;
    for (const char character : text) {
      int key = static_cast<unsigned char>(character);
      dialog_.cboValue.on_key_press(key);
      if (key != 0) typed += character;
      dialog_.cboValue.set_text(typed);
    }
    bool cancel = false;
    dialog_.cboValue.on_validate(cancel);
  }

  void criterion_picked(const std::string& field, const std::string& op,
                        const std::string& value) const {
    pick(dialog_.cboField, field);
    pick(dialog_.cboOperator, op);
    pick(dialog_.cboValue, value);
    dialog_.btnInsert.click();
  }
  void criterion_typed(const std::string& field, const std::string& op,
                       const std::string& value) const {
    pick(dialog_.cboField, field);
    pick(dialog_.cboOperator, op);
    type(value);
    dialog_.btnInsert.click();
  }

  Texts lines() const {
    Texts result;
    for (const ListEntry& line : dialog_.ListCriteria.entries()) result.push_back(line.text);
    return result;
  }

 private:
  SelectionDialog& dialog_;
};

// A host with a database of its own for all sessions: contracts and models are written.
class HostScenario : public ::testing::Test {
 protected:
  HostScenario() {
    const auto locale = std::make_shared<SettingsUserLocale>("DE", "DMY");
    install_host({.suite = make_standalone_suite(connection(), locale),
                  .user_interface = user_interface_,
                  .user_locale = locale});
    context_ = user(1, "SELECT ID FROM ACCESS_LEVELS");
  }
  ~HostScenario() override { install_host({}); }

  static const std::shared_ptr<Connection>& connection() {
    static const std::shared_ptr<Connection> shared = make_forest();
    return shared;
  }

  static KesVar user(std::int32_t id, const std::string& access_levels) {
    KesVar context = forest_user("DE", id, access_levels);
    context.dbado = connection();
    return context;
  }

  void start(const std::string& code, const std::string& variant = "") {
    selection_.c_Selection_Init(context_, code, variant, from_where_, formula_);
  }

  // What the user does while the dialog with this caption is open.
  void expect_dialog(const std::string& caption, std::function<void(const Clerk&)> action) {
    user_interface_->expect_modal(
        caption, [action = std::move(action)](ModalDialog& dialog) { action(Clerk(dialog)); });
  }
  void show(bool read_only = false) {
    selection_.c_form_Selection(context_, from_where_, formula_, read_only);
  }

  std::string translated(const std::string& code, const std::string& mode,
                         const std::string& criteria) {
    return Comm_Sel().D_SelectionFromStr(context_, code, mode, criteria, "", 1);
  }

  // The identifiers that a module reads with a FROM/WHERE text, in order.
  static Texts ids(const std::string& column, const std::string& from_where) {
    return column_of("SELECT " + column + from_where + " ORDER BY " + column);
  }
  static Texts column_of(const std::string& sql) {
    Texts result;
    for (const auto& row : rows(*connection(), sql)) result.push_back(row.at(0));
    return result;
  }
  // The same from a query written by hand, which must tell something: neither nothing nor all.
  static Texts by_hand(const std::string& sql, const std::string& all) {
    Texts result = column_of(sql + " ORDER BY 1");
    EXPECT_FALSE(result.empty()) << sql;
    EXPECT_LT(result.size(), column_of(all).size()) << sql;
    return result;
  }

  std::shared_ptr<ScriptedUserInterface> user_interface_ =
      std::make_shared<ScriptedUserInterface>();
  KesVar context_;
  c_Selection_Init selection_;
  std::string from_where_;
  std::string formula_;
};

// --- From the dialog to the next day ---------------------------------------------------------

TEST_F(HostScenario, InvoicesAreSelectedStoredAndSelectedAgain) {
  start("2ABR1-A", "A1");
  EXPECT_EQ(selection_.c_Selection_Init_Parameter(), "2ABR1-A");
  expect_dialog("Selektion: Offene Posten", [](const Clerk& clerk) {
    clerk->btnNew.click();
    clerk.criterion_typed("Käufer", "LIKE", "S%");
    clerk.criterion_typed("Nettobetrag", ">=", "1000,50");
    clerk->btnOr.click();
    clerk.criterion_picked("Bezahlt", "=", "0");
    clerk.criterion_typed("Rechnungsdatum", "<", "1.1.2025");
    clerk->btnOk.click();
  });
  show();
  EXPECT_TRUE(selection_.WasOKClick());
  EXPECT_EQ(from_where_,
            " FROM HEADERRECH LEFT JOIN PERSONAL ON PERSONAL.ID = HEADERRECH.ID_KUNDE "
            "LEFT JOIN RECHNUNGSLAUF ON RECHNUNGSLAUF.VER_TYPE = HEADERRECH.VER_TYPE "
            "WHERE HEADERRECH.VER_TYPE = 'A1' AND "
            "(PERSONAL.NAME LIKE 'S%' AND HEADERRECH.NETTO >= 1000.50 "
            "OR HEADERRECH.BEZAHLT = 0 AND HEADERRECH.INVDATE < '01.01.2025')");
  EXPECT_EQ(formula_,
            "Käufer LIKE 'S%' AND  AND Nettobetrag >= 1000.50 OR "
            "Bezahlt = 0 AND  AND Rechnungsdatum < '1.1.2025'");
  const std::string stored = selection_.GetWriteString(context_);
  EXPECT_EQ(stored, "1510 LIKE 'S%';1504 >= 1000.50;=== ODER ===;1508 = 0;1502 < '01.01.2025';");
  EXPECT_EQ(translated("2ABR1-A", "", stored), from_where_);
  EXPECT_EQ(ids("HEADERRECH.ID", from_where_),
            by_hand("SELECT H.ID FROM HEADERRECH H LEFT JOIN PERSONAL P ON P.ID = H.ID_KUNDE "
                    "WHERE H.VER_TYPE = 'A1' AND (P.NAME LIKE 'S%' AND H.NETTO >= 1000.5 "
                    "OR H.BEZAHLT = 0 AND H.INVDATE < '20250101')",
                    "SELECT ID FROM HEADERRECH WHERE VER_TYPE = 'A1'"));
}

TEST_F(HostScenario, TransportsOfAnOfficeAreSelectedStoredAndSelectedAgain) {
  context_ = user(2, "SELECT ID FROM ACCESS_LEVELS WHERE ID IN (2)");
  start("1WL");
  expect_dialog("Selektion", [](const Clerk& clerk) {
    clerk.criterion_typed("Kilometer", ">", "40,5");
    clerk.criterion_typed("Abfuhrdatum", ">=", "-60");
    clerk->btnOr.click();
    clerk.criterion_picked("Spediteur", "=", "Huber");
    clerk->btnOk.click();
  });
  show();
  EXPECT_EQ(from_where_,
            " FROM TRANSPORTLOGISTIK_KOPF "
            "LEFT JOIN PERSONAL SPEDITEUR ON SPEDITEUR.ID = TRANSPORTLOGISTIK_KOPF.ID_SPEDITEUR "
            "WHERE TRANSPORTLOGISTIK_KOPF.ID_ACCESS_LEVELS IN "
            "(SELECT ID FROM ACCESS_LEVELS WHERE ID IN (2)) AND "
            "(TRANSPORTLOGISTIK_KOPF.KILOMETER > 40.5 "
            "AND TRANSPORTLOGISTIK_KOPF.ABFUHRDATUM >= GETDATE()-60 OR SPEDITEUR.NAME = 'Huber')");
  EXPECT_EQ(formula_, "Kilometer > 40.5 AND  AND Abfuhrdatum >= '-60' OR Spediteur = 'Huber'");
  const std::string stored = selection_.GetWriteString(context_);
  EXPECT_EQ(stored, "4 > 40.5;2 >= GETDATE()-60;=== ODER ===;6 = 'Huber';");
  EXPECT_EQ(translated("1WL", "", stored), from_where_);
  EXPECT_EQ(ids("TRANSPORTLOGISTIK_KOPF.ID", from_where_),
            by_hand("SELECT T.ID FROM TRANSPORTLOGISTIK_KOPF T "
                    "LEFT JOIN PERSONAL P ON P.ID = T.ID_SPEDITEUR WHERE T.ID_ACCESS_LEVELS = 2 "
                    "AND (T.KILOMETER > 40.5 AND T.ABFUHRDATUM >= '20250114' OR P.NAME = 'Huber')",
                    "SELECT ID FROM TRANSPORTLOGISTIK_KOPF WHERE ID_ACCESS_LEVELS = 2"));
}

// The dialog and the translator write the base condition differently; the rows are the same.
TEST_F(HostScenario, WorkOrdersOfAPersonAreSelectedStoredAndSelectedAgain) {
  const std::string from =
      " FROM ARBEITSAUFTRAG_KOPF LEFT JOIN ARBEITSAUFTRAG_PLANN "
      "ON ARBEITSAUFTRAG_PLANN.ID_ARBEITSAUFTRAG_KOPF = ARBEITSAUFTRAG_KOPF.ID WHERE ";
  const std::string criteria =
      " AND (ARBEITSAUFTRAG_PLANN.HA = 'FI' AND ARBEITSAUFTRAG_KOPF.MENGE > 100 "
      "OR ARBEITSAUFTRAG_KOPF.BEZEICHNUNG LIKE 'W%')";
  start("4ARB17");
  EXPECT_EQ(selection_.c_Selection_Init_Parameter(), "4ARB");
  expect_dialog("Selektion: Laufende Aufträge", [](const Clerk& clerk) {
    clerk->btnNew.click();
    clerk.criterion_picked("Holzart", "=", "FI");
    clerk.criterion_typed("Menge (fm)", ">", "100");
    clerk->btnOr.click();
    clerk.criterion_typed("Bezeichnung", "LIKE", "W%");
    clerk->btnOk.click();
  });
  show();
  EXPECT_EQ(from_where_, from + "ARBEITSAUFTRAG_KOPF.PERSONAL_ID = 17" + criteria);
  EXPECT_EQ(formula_, "Holzart = 'FI' AND  AND Menge (fm) > 100 OR Bezeichnung LIKE 'W%'");
  const std::string stored = selection_.GetWriteString(context_);
  EXPECT_EQ(stored, "309 = 'FI';305 > 100;=== ODER ===;302 LIKE 'W%';");
  const std::string again = translated("4ARB17", "4ARB", stored);
  EXPECT_EQ(again, from + "ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17" + criteria);
  const Texts wanted = by_hand(
      "SELECT K.ID FROM ARBEITSAUFTRAG_KOPF K "
      "LEFT JOIN ARBEITSAUFTRAG_PLANN P ON P.ID_ARBEITSAUFTRAG_KOPF = K.ID "
      "WHERE K.PERSONAL_ID = 17 AND (P.HA = 'FI' AND K.MENGE > 100 OR K.BEZEICHNUNG = 'Wegebau')",
      "SELECT ID FROM ARBEITSAUFTRAG_KOPF WHERE PERSONAL_ID = 17");
  EXPECT_EQ(ids("ARBEITSAUFTRAG_KOPF.ID", from_where_), wanted);
  EXPECT_EQ(ids("ARBEITSAUFTRAG_KOPF.ID", again), wanted);
}

// Of a relation that SELEKTION describes, the dialog leaves the word FROM to the module, and the
// translator begins with the suite's tables.
TEST_F(HostScenario, ArticlesAreSelectedStoredAndSelectedAgain) {
  const std::string criteria =
      " WHERE WARENKATALOG.ID_WARENGRUPPE = WARENGRUPPE.ID "
      "AND WARENKATALOG.ID_LIEFERANT = PERSONAL.ID AND (WARENGRUPPE.NAME = 'Schutzausrüstung' "
      "AND WARENKATALOG.PREIS > 50 OR PERSONAL.ORT = 'München')";
  start("1VN");
  expect_dialog("Selektion", [](const Clerk& clerk) {
    clerk.criterion_picked("Warengruppe", "=", "Schutzausrüstung");
    clerk.criterion_typed("Einzelpreis", ">", "50");
    clerk->btnOr.click();
    clerk.criterion_picked("Ort des Lieferanten", "=", "München");
    clerk->btnOk.click();
  });
  show();
  EXPECT_EQ(from_where_, " WARENKATALOG, WARENGRUPPE, PERSONAL" + criteria);
  EXPECT_EQ(formula_,
            "Warengruppe = 'Schutzausrüstung' AND  AND Einzelpreis > 50 OR "
            "Ort des Lieferanten = 'München'");
  const std::string stored = selection_.GetWriteString(context_);
  EXPECT_EQ(stored, "208 = 'Schutzausrüstung';205 > 50;=== ODER ===;210 = 'München';");
  const std::string again = translated("1VN", "WAREN", stored);
  EXPECT_EQ(again,
            " FROM WARENKATALOG LEFT JOIN WARENGRUPPE ON WARENGRUPPE.ID = "
            "WARENKATALOG.ID_WARENGRUPPE, PERSONAL" +
                criteria);
  const Texts wanted = by_hand(
      "SELECT W.ID FROM WARENKATALOG W INNER JOIN WARENGRUPPE G ON G.ID = W.ID_WARENGRUPPE "
      "INNER JOIN PERSONAL P ON P.ID = W.ID_LIEFERANT "
      "WHERE G.NAME = 'Schutzausrüstung' AND W.PREIS > 50 OR P.ORT = 'München'",
      "SELECT ID FROM WARENKATALOG");
  EXPECT_EQ(ids("WARENKATALOG.ID", " FROM" + from_where_), wanted);
  EXPECT_EQ(ids("WARENKATALOG.ID", again), wanted);
}

// Of planned orders the dialog selects the plans of the person, whose table a criterion must bring;
// the translator selects the orders that the person leads.
TEST_F(HostScenario, PlannedOrdersAreThoseOfAPlanInTheDialogAndOfALeaderInTheTranslation) {
  const auto commit = [this](const std::string& criteria) {
    start("4PLN17");
    selection_.FillListCriteria(context_, criteria, "4PLN17");
    selection_.OK_Click(from_where_, formula_);
  };
  commit("105 > 100;");
  EXPECT_EQ(from_where_,
            " ARBEITSAUFTRAG_KOPF WHERE ARBEITSAUFTRAG_PLANN.PERSONAL_ID = 17 AND "
            "(ARBEITSAUFTRAG_KOPF.MENGE > 100)");
  EXPECT_THROW(ids("ARBEITSAUFTRAG_KOPF.ID", " FROM" + from_where_), DatabaseError);

  const std::string tables = " ARBEITSAUFTRAG_KOPF, ARBEITSAUFTRAG_PLANN WHERE ";
  const std::string criteria =
      "ARBEITSAUFTRAG_KOPF.ID = ARBEITSAUFTRAG_PLANN.ID_ARBEITSAUFTRAG_KOPF AND "
      "(ARBEITSAUFTRAG_KOPF.MENGE > 100 AND ARBEITSAUFTRAG_PLANN.HA <> 'FI')";
  const std::string by_hand_text =
      "SELECT K.ID FROM ARBEITSAUFTRAG_KOPF K INNER JOIN ARBEITSAUFTRAG_PLANN P "
      "ON P.ID_ARBEITSAUFTRAG_KOPF = K.ID WHERE K.MENGE > 100 AND P.HA <> 'FI' AND ";
  const std::string all = "SELECT ID FROM ARBEITSAUFTRAG_PLANN";
  commit("105 > 100;108 <> 'FI';");
  EXPECT_EQ(from_where_, tables + "ARBEITSAUFTRAG_PLANN.PERSONAL_ID = 17 AND " + criteria);
  EXPECT_EQ(ids("ARBEITSAUFTRAG_KOPF.ID", " FROM" + from_where_),
            by_hand(by_hand_text + "P.PERSONAL_ID = 17", all));
  const std::string again = translated("4PLN17", "4ARB", selection_.GetWriteString(context_));
  EXPECT_EQ(again, " FROM" + tables + "ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND " + criteria);
  EXPECT_EQ(ids("ARBEITSAUFTRAG_KOPF.ID", again),
            by_hand(by_hand_text + "K.PERSONAL_ID = 17", all));
}

// --- From a subset ------------------------------------------------------------------------------

TEST_F(HostScenario, ASubsetIsShownChangedAndHandedBack) {
  bool ok = false;
  start("NML");
  expect_dialog("Selektion", [](const Clerk& clerk) {
    EXPECT_EQ(clerk.lines(), (Texts{"Holzart = 'FI'", kOr, "Holzart IN ('TA','KI') ",
                                    "Einschlagsdatum >= '01.02.2025'"}));
    clerk->ListCriteria.pick(0);
    EXPECT_EQ(clerk->cboField.text(), "Holzart");
    EXPECT_EQ(clerk->cboOperator.text(), "=");
    clerk.pick(clerk->cboValue, "EI");
    clerk->btnReplace.click();
    clerk.criterion_typed("Menge (fm)", ">", "40");
    clerk->btnOk.click();
  });
  selection_.c_form_SelectionNML(context_, from_where_, formula_,
                                 "703 = 'FI';=== ODER ===;703 IN ('TA','KI') ;713 >= '01.02.2025';",
                                 ok, false);
  EXPECT_TRUE(ok);
  EXPECT_EQ(from_where_,
            " FROM LOGS LEFT JOIN LISTENKOPF ON LISTENKOPF.ID = LOGS.ID_LISTENKOPF "
            "LEFT JOIN LOGS_RECH ON LOGS_RECH.ID_LOGS = LOGS.ID "
            "LEFT JOIN FHP_IMPORT ON FHP_IMPORT.ID = LOGS.ID_FHP_IMPORT "
            "LEFT JOIN PERSONAL ON PERSONAL.ID = LOGS.ID_KUNDE "
            "LEFT JOIN HOLZART ON HOLZART.ID = LOGS.ID_HOLZART WHERE (HOLZART.HA = 'EI' "
            "AND LOGS.MENGE > 40 OR HOLZART.HA IN ('TA','KI')  "
            "AND LOGS.EINSCHLAG >= '01.02.2025')");
  EXPECT_EQ(formula_,
            "Holzart = 'EI' AND  AND Menge (fm) > 40 OR Holzart IN ('TA','KI')  AND  AND "
            "Einschlagsdatum >= '01.02.2025'");
  const std::string stored = selection_.GetWriteString(context_);
  EXPECT_EQ(stored, "703 = 'EI';712 > 40;=== ODER ===;703 IN ('TA','KI') ;713 >= '01.02.2025';");
  EXPECT_EQ(translated("NML", "", stored), from_where_);
  EXPECT_EQ(ids("LOGS.ID", from_where_),
            by_hand("SELECT L.ID FROM LOGS L INNER JOIN HOLZART H ON H.ID = L.ID_HOLZART "
                    "WHERE H.HA = 'EI' AND L.MENGE > 40 "
                    "OR H.HA IN ('TA','KI') AND L.EINSCHLAG >= '20250201'",
                    "SELECT ID FROM LOGS"));
}

TEST_F(HostScenario, AnEmptySubsetShowsAnEmptyListAndCancelTellsSo) {
  bool ok = true;
  start("NML");
  expect_dialog("Selektion", [](const Clerk& clerk) {
    EXPECT_EQ(clerk.lines(), Texts{});
    clerk->btnCancel.click();
  });
  selection_.c_form_SelectionNML(context_, from_where_, formula_, "", ok, false);
  EXPECT_FALSE(ok);
  EXPECT_FALSE(selection_.WasOKClick());
}

// --- The selection of a contract
// ------------------------------------------------------------------

class ContractScenario : public HostScenario {
 protected:
  ContractScenario() {
    connection()->execute(
        "UPDATE VERTRAG_PREISE SET SELEKTION_VALUE = "
        "'706 = ''L'';711 >= 30;=== ODER ===;713 >= GETDATE() - 180;' WHERE ID = 12");
  }
  static std::string stored() {
    return column_of("SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12").at(0);
  }
};

TEST_F(ContractScenario, IsLoadedChangedStoredAndLoadedAgain) {
  start("VERTP12");
  expect_dialog("Selektion", [](const Clerk& clerk) {
    EXPECT_EQ(clerk.lines(), (Texts{"Sorte = 'L'", "Durchmesser (cm) >= 30", kOr,
                                    "Einschlagsdatum >= GETDATE() - 180"}));
    clerk->ListCriteria.pick(3);
    clerk.criterion_picked("Holzart", "=", "FI");
    clerk->btnOk.click();
  });
  show();
  EXPECT_EQ(from_where_,
            " FROM LOGS LEFT JOIN LISTENKOPF ON LISTENKOPF.ID = LOGS.ID_LISTENKOPF "
            "LEFT JOIN LOGS_RECH ON LOGS_RECH.ID_LOGS = LOGS.ID "
            "LEFT JOIN FHP_IMPORT ON FHP_IMPORT.ID = LOGS.ID_FHP_IMPORT "
            "LEFT JOIN PERSONAL ON PERSONAL.ID = LOGS.ID_KUNDE "
            "LEFT JOIN HOLZSORTE ON HOLZSORTE.ID = LOGS.ID_HOLZSORTE "
            "LEFT JOIN HOLZART ON HOLZART.ID = LOGS.ID_HOLZART "
            "WHERE FHP_IMPORT.ERRORTEXT IS NULL AND FHP_IMPORT.ID_FHP_IMPORT IS NULL AND "
            "(HOLZSORTE.HS = 'L' AND LOGS.DURCHMESSER >= 30 "
            "OR LOGS.EINSCHLAG >= GETDATE() - 180 AND HOLZART.HA = 'FI')");
  EXPECT_EQ(stored(), "706 = 'L';711 >= 30;=== ODER ===;713 >= GETDATE() - 180;703 = 'FI';");
  EXPECT_EQ(stored(), selection_.GetWriteString(context_));
  EXPECT_EQ(translated("VERTP12", "", stored()), from_where_);
  EXPECT_EQ(ids("LOGS.ID", from_where_),
            by_hand("SELECT L.ID FROM LOGS L LEFT JOIN FHP_IMPORT I ON I.ID = L.ID_FHP_IMPORT "
                    "LEFT JOIN HOLZSORTE S ON S.ID = L.ID_HOLZSORTE "
                    "LEFT JOIN HOLZART H ON H.ID = L.ID_HOLZART "
                    "WHERE I.ERRORTEXT IS NULL AND I.ID_FHP_IMPORT IS NULL "
                    "AND (S.HS = 'L' AND L.DURCHMESSER >= 30 "
                    "OR L.EINSCHLAG >= '20240916' AND H.HA = 'FI')",
                    "SELECT ID FROM LOGS"));

  start("VERTP12");
  expect_dialog("Selektion", [](const Clerk& clerk) {
    EXPECT_EQ(clerk.lines(), (Texts{"Sorte = 'L'", "Durchmesser (cm) >= 30", kOr,
                                    "Einschlagsdatum >= GETDATE() - 180", "Holzart = 'FI'"}));
    clerk->btnCancel.click();
  });
  show();
}

TEST_F(ContractScenario, StaysAsItIsWhenTheUserCancels) {
  const std::string before = stored();
  start("vertp12");
  expect_dialog("Selektion", [](const Clerk& clerk) {
    clerk->btnNew.click();
    clerk->btnCancel.click();
  });
  show();
  EXPECT_EQ(stored(), before);
}

// --- Models --------------------------------------------------------------------------------------

TEST_F(HostScenario, TheStandardModelIsLoadedAtTheStart) {
  start("2PVA3");
  EXPECT_EQ(selection_.c_Selection_Init_Parameter(), "2PVK");
  EXPECT_EQ(selection_.GetWriteString(context_), "6 = 'München';");
  expect_dialog("Selektion: Kunden in München", [](const Clerk& clerk) {
    EXPECT_EQ(clerk->txtStandard.text(), "Kunden in München");
    clerk->btnOk.click();
  });
  show();
  EXPECT_EQ(from_where_,
            " FROM PERSONAL WHERE PERSONAL.ABRECH3 = 1 AND (PERSONAL.ID_ACCESS_LEVELS IS NULL OR "
            "PERSONAL.ID_ACCESS_LEVELS IN (SELECT ID FROM ACCESS_LEVELS)) AND "
            "(PERSONAL.ORT = 'München')");
  EXPECT_EQ(from_where_, Comm_Sel().D_Selection(context_, "2PVA3", "Kunden in München", "", 1));
  EXPECT_EQ(ids("PERSONAL.ID", from_where_),
            by_hand("SELECT ID FROM PERSONAL WHERE ABRECH3 = 1 AND ORT = 'München'",
                    "SELECT ID FROM PERSONAL WHERE ABRECH3 = 1"));
}

TEST_F(HostScenario, AnotherModelIsLoadedByADoubleClickOfTheHost) {
  start("2PVA3");
  selection_.c_Selection_Model_DblClick("Waldbesitzer und Lieferanten");
  EXPECT_EQ(selection_.GetWriteString(context_), "11 = 1;=== ODER ===;12 = 1;");
  selection_.OK_Click(from_where_, formula_);
  EXPECT_EQ(from_where_,
            " FROM PERSONAL WHERE PERSONAL.ABRECH3 = 1 AND (PERSONAL.ID_ACCESS_LEVELS IS NULL OR "
            "PERSONAL.ID_ACCESS_LEVELS IN (SELECT ID FROM ACCESS_LEVELS)) AND "
            "(PERSONAL.WALDBESITZER = 1 OR PERSONAL.LIEFERANT = 1)");
  EXPECT_EQ(formula_, "Waldbesitzer = 1 OR Lieferant = 1");
  EXPECT_EQ(ids("PERSONAL.ID", from_where_),
            by_hand("SELECT ID FROM PERSONAL "
                    "WHERE ABRECH3 = 1 AND (WALDBESITZER = 1 OR LIEFERANT = 1)",
                    "SELECT ID FROM PERSONAL WHERE ABRECH3 = 1"));
}

TEST_F(HostScenario, ADoubleClickOnAModelThatIsNotThereChangesNothing) {
  start("2PVA3");
  EXPECT_THROW(selection_.c_Selection_Model_DblClick("Offene Posten"), InvalidArgument);
  EXPECT_EQ(selection_.GetWriteString(context_), "6 = 'München';");
}

// --- Without a window
// -------------------------------------------------------------------------------

TEST_F(HostScenario, AStoredSelectionIsCommittedWithoutAWindow) {
  const std::string stored =
      "703 = 'FI';713 >= GETDATE()-60;=== ODER ===;703 IN ('BU','EI') ;712 > 3.5;";
  start("1EXP");
  selection_.FillListCriteria(context_, stored, "1EXP");
  EXPECT_EQ(selection_.GetWriteString(context_), stored);
  EXPECT_FALSE(selection_.WasOKClick());
  selection_.OK_Click(from_where_, formula_);
  EXPECT_TRUE(selection_.WasOKClick());
  EXPECT_EQ(from_where_,
            " FROM LOGS LEFT JOIN LISTENKOPF ON LISTENKOPF.ID = LOGS.ID_LISTENKOPF "
            "LEFT JOIN LOGS_RECH ON LOGS_RECH.ID_LOGS = LOGS.ID "
            "LEFT JOIN FHP_IMPORT ON FHP_IMPORT.ID = LOGS.ID_FHP_IMPORT "
            "LEFT JOIN PERSONAL ON PERSONAL.ID = LOGS.ID_KUNDE "
            "LEFT JOIN HOLZART ON HOLZART.ID = LOGS.ID_HOLZART WHERE (HOLZART.HA = 'FI' "
            "AND LOGS.EINSCHLAG >= GETDATE()-60 OR HOLZART.HA IN ('BU','EI')  "
            "AND LOGS.MENGE > 3.5)");
  EXPECT_EQ(formula_,
            "Holzart = 'FI' AND  AND Einschlagsdatum >= -60 OR Holzart IN ('BU','EI')  AND  AND "
            "Menge (fm) > 3.5");
  EXPECT_EQ(translated("1EXP", "", stored), from_where_);
  EXPECT_EQ(ids("LOGS.ID", from_where_),
            by_hand("SELECT L.ID FROM LOGS L LEFT JOIN HOLZART H ON H.ID = L.ID_HOLZART "
                    "WHERE H.HA = 'FI' AND L.EINSCHLAG >= '20250114' "
                    "OR H.HA IN ('BU','EI') AND L.MENGE > 3.5",
                    "SELECT ID FROM LOGS"));
}

TEST_F(HostScenario, ARelativeDateIsListedAsItsOffset) {
  start("1EXP");
  for (const char* stored :
       {"713 >= GETDATE()-60;", "713 < GETDATE()+0;", "713 < GETDATE()+1.5;"}) {
    SCOPED_TRACE(stored);
    selection_.FillListCriteria(context_, stored, "1EXP");
    EXPECT_EQ(selection_.GetWriteString(context_), stored);
  }
  // Today itself has an offset too.
  selection_.FillListCriteria(context_, "713 < GETDATE();", "1EXP");
  EXPECT_EQ(selection_.GetWriteString(context_), "713 < GETDATE()+0;");
  selection_.FillListCriteria(context_, "713 >= GETDATE() - 60;", "1EXP");
  EXPECT_EQ(selection_.GetWriteString(context_), "713 >= GETDATE()-60;");
}

TEST_F(HostScenario, AListThatEndsWithAnOrLineIsRefusedAndTheTextsComeBack) {
  start("1EXP");
  selection_.FillListCriteria(context_, "703 = 'FI';=== ODER ===;", "1EXP");
  user_interface_->expect_message({"Die letzte Zeile der Selektion darf keine ODER-Zeile sein.",
                                   kExclamationIcon, "Kestrova", "", 0});
  from_where_ = " FROM LOGS";
  formula_ = "alle Lose";
  selection_.OK_Click(from_where_, formula_);
  EXPECT_EQ(from_where_, " FROM LOGS");
  EXPECT_EQ(formula_, "alle Lose");
  EXPECT_FALSE(selection_.WasOKClick());
}

// A committed list without a line selects by no text at all; the base selection of the relation is
// what the translator makes of the empty string.
TEST_F(HostScenario, AnEmptyListCommitsEmptyTexts) {
  start("2PVA3");
  selection_.FillListCriteria(context_, "", "2PVA3");
  from_where_ = formula_ = "before";
  selection_.OK_Click(from_where_, formula_);
  EXPECT_EQ(from_where_, "");
  EXPECT_EQ(formula_, "");
  EXPECT_EQ(selection_.GetWriteString(context_), "");
  EXPECT_EQ(ids("PERSONAL.ID", translated("2PVA3", "", "")),
            by_hand("SELECT ID FROM PERSONAL WHERE ABRECH3 = 1", "SELECT ID FROM PERSONAL"));
}

// --- One selection after another
// ----------------------------------------------------------------------

TEST_F(HostScenario, EachSelectionStartsWithItsOwnFieldsModelAndTexts) {
  const auto expect_and_confirm = [this](const std::string& code, const std::string& caption,
                                         const std::string& first_field, const Texts& lines) {
    SCOPED_TRACE(code);
    from_where_ = "text of " + code;
    formula_ = "formula of " + code;
    start(code);
    EXPECT_EQ(module_state().strSelektion_Fr_Wh, "text of " + code);
    EXPECT_EQ(module_state().strSelektionFormula, "formula of " + code);
    expect_dialog(caption, [&](const Clerk& clerk) {
      EXPECT_EQ(clerk->cboField.entry_text(0), first_field);
      EXPECT_EQ(clerk.lines(), lines);
      EXPECT_FALSE(selection_.WasOKClick());
      clerk->btnOk.click();
    });
    show();
    EXPECT_TRUE(selection_.WasOKClick());
    return from_where_;
  };
  const Texts customers = {"Ort = 'München'"};
  const Texts conifers = {"Laub/Nadel = 'Nadelholz'"};
  const std::string first =
      expect_and_confirm("2PVA3", "Selektion: Kunden in München", "Personennummer", customers);
  const std::string second =
      expect_and_confirm("2ABR4", "Selektion: Abschlag Nadelholz", "Losnummer", conifers);
  EXPECT_EQ(second, Comm_Sel().D_Selection(context_, "2ABR4", "Abschlag Nadelholz", "", 1));
  EXPECT_EQ(
      expect_and_confirm("2PVA3", "Selektion: Kunden in München", "Personennummer", customers),
      first);
}

// --- Cancel and read-only
// -----------------------------------------------------------------------------

TEST_F(HostScenario, CancelHandsBackTheTextsOfTheStart) {
  const std::string before = translated("2PVA3", "", "2 LIKE 'M%';");
  from_where_ = before;
  formula_ = "Name LIKE 'M%'";
  start("2PVA3");
  for (const bool by_button : {true, false}) {
    // The caption tells of the model until the dialog closes.
    expect_dialog(by_button ? "Selektion: Kunden in München" : "Selektion",
                  [by_button](const Clerk& clerk) {
                    clerk.criterion_typed("PLZ", "LIKE", "8%");
                    by_button ? clerk->btnCancel.click() : clerk->close_requested();
                  });
    from_where_ = formula_ = "not yet";
    show();
    EXPECT_FALSE(selection_.WasOKClick());
    EXPECT_EQ(from_where_, before);
    EXPECT_EQ(formula_, "Name LIKE 'M%'");
  }
  // The list itself is the user's and stays; a module stores it after OK only.
  EXPECT_EQ(selection_.GetWriteString(context_), "6 = 'München';5 LIKE '8%';5 LIKE '8%';");
}

TEST_F(HostScenario, AReadOnlySelectionCanBeSeenAndNotChanged) {
  start("2PVA3");
  selection_.c_Selection_Model_DblClick("Waldbesitzer und Lieferanten");
  from_where_ = formula_ = "before";
  expect_dialog("Selektion: Waldbesitzer und Lieferanten", [](const Clerk& clerk) {
    const Texts lines = {"Waldbesitzer = 1", kOr, "Lieferant = 1"};
    EXPECT_EQ(clerk.lines(), lines);
    clerk->ListCriteria.pick(2);
    EXPECT_EQ(clerk->Formula.text(), "Lieferant = 1");
    EXPECT_EQ(clerk->cboField.text(), "Lieferant");
    clerk.criterion_typed("Name", "=", "Huber");
    for (Button* button : {&clerk->btnNew, &clerk->btnInsert, &clerk->btnReplace, &clerk->btnDelete,
                           &clerk->btnOr, &clerk->btnPlus, &clerk->btnMinus, &clerk->btnSaveModelle,
                           &clerk->btnSaveModelleAs, &clerk->btnDeleteModelle, &clerk->btnOk}) {
      EXPECT_FALSE(button->reachable()) << button->name();
      button->click();
    }
    clerk->Model.pick(0);
    clerk->chkStandard.click();
    clerk->Check1.click();
    clerk->chkAL.click();
    EXPECT_EQ(clerk.lines(), lines);
    EXPECT_TRUE(clerk->is_visible());
    EXPECT_EQ(clerk->Model.text(), "Waldbesitzer und Lieferanten");
    clerk->btnCancel.click();
  });
  const auto models = rows(*connection(), "SELECT * FROM MODELS ORDER BY ID");
  show(true);
  EXPECT_FALSE(selection_.WasOKClick());
  EXPECT_EQ(rows(*connection(), "SELECT * FROM MODELS ORDER BY ID"), models);

  // The next run of the same selection may change it again.
  expect_dialog("Selektion", [](const Clerk& clerk) {
    EXPECT_TRUE(clerk->btnOk.reachable());
    clerk->btnOk.click();
  });
  show();
  EXPECT_TRUE(selection_.WasOKClick());
}

// --- Services and lifetime
// ------------------------------------------------------------------------

TEST_F(HostScenario, AModuleThatOnlyTranslatesNeedsTheSuiteAlone) {
  struct Stored {
    std::string code;
    std::string mode;
    std::string criteria;
  };
  for (const Stored& stored :
       {Stored{"2ABR1-A", "", "1510 LIKE 'S%';1504 >= 1000.50;=== ODER ===;1508 = 0;"},
        Stored{"1WL", "", "2 >= GETDATE()-60;"},
        Stored{"4ARB17", "4ARB", "303 >= '01.01.2025';306 = 0;"},
        Stored{"1VN", "WAREN", "208 = 'Schutzausrüstung';203 <= GETDATE();"},
        Stored{"LEISTUNGS_BB", "", "5 > 4;"}}) {
    SCOPED_TRACE(stored.code);
    const auto locale = std::make_shared<SettingsUserLocale>("DE", "DMY");
    const auto suite = make_standalone_suite(connection(), locale);
    install_host({.suite = suite, .user_interface = user_interface_, .user_locale = locale});
    const std::string with_all_services = translated(stored.code, stored.mode, stored.criteria);
    EXPECT_NE(with_all_services, "");
    install_host({.suite = suite});
    EXPECT_EQ(translated(stored.code, stored.mode, stored.criteria), with_all_services);
    EXPECT_THROW(start(stored.code), ObjectNotSet);
  }
}

// A connection of its own to the database of all sessions.
class FurtherConnection : public Connection {
 public:
  explicit FurtherConnection(Connection& database) : database_(database) {}
  std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                  LockType lock) override {
    return database_.open(source, cursor, lock);
  }
  std::int64_t execute(std::string_view batch) override { return database_.execute(batch); }
  ConnectionKind kind() const override { return database_.kind(); }

 private:
  Connection& database_;
};

TEST_F(HostScenario, ASelectionLetsGoOfTheConnectionOfTheOneBefore) {
  std::weak_ptr<Connection> before;
  {
    KesVar context = context_;
    context.dbado = std::make_shared<FurtherConnection>(*connection());
    before = context.dbado;
    selection_.c_Selection_Init(context, "4ARB17", "", from_where_, formula_);
  }
  EXPECT_FALSE(before.expired());
  start("4ARB18");
  EXPECT_TRUE(before.expired());
}

TEST_F(HostScenario, AHostThatIsTakenAwayLeavesNothingBehind) {
  start("4ARB17");
  context_.dbado.reset();
  install_host({});
  EXPECT_EQ(connection().use_count(), 1);
}

}  // namespace
}  // namespace kestrova::test
