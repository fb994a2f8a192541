// Whole sessions with the editor on the sample database, without a window: a user composes a list
// and presses OK, and the records that the text selects are those of a statement written by hand.
#include <functional>
#include <string>
#include <vector>

#include "interface/module_state.h"
#include "platform/error.h"
#include "tests/examples/editor_fixture.h"

namespace kestrova::test {
namespace {

using Texts = std::vector<std::string>;

const std::string kAnd = " AND  AND ";  // as hosts show it

class EditorSession : public ForestEditor {
 protected:
  using ForestEditor::ForestEditor;

  // The records of the text, next to those written by hand; neither none nor all of the table.
  void expect_records(const std::string& table, const std::string& from_where,
                      const std::string& by_hand) {
    const Texts expected = column(by_hand + " ORDER BY 1");
    EXPECT_EQ(column("SELECT " + table + ".ID" + from_where + " ORDER BY 1"), expected);
    EXPECT_GT(expected.size(), 0U);
    EXPECT_LT(static_cast<std::int64_t>(expected.size()),
              number(db(), "SELECT COUNT(*) FROM " + table));
  }
};

// --- Composing and committing

TEST_F(EditorSession, OfACatalogueRelation) {
  open("1WL");
  const Result result = run([&] {
    add_typed("Kilometer", ">", "60.5");
    add_picked("Abgeschlossen", "=", "0");
    add_or();
    add_picked("Fuhren", "=", "3");
    add_typed("Spediteur", "LIKE", "%e%");
  });
  EXPECT_EQ(lines(), (Texts{"Kilometer > 60.5", "Abgeschlossen = 0", "=== ODER ===", "Fuhren = 3",
                            "Spediteur LIKE '%e%'"}));
  EXPECT_EQ(result.from_where,
            " FROM TRANSPORTLOGISTIK_KOPF LEFT JOIN PERSONAL SPEDITEUR ON SPEDITEUR.ID = "
            "TRANSPORTLOGISTIK_KOPF.ID_SPEDITEUR WHERE TRANSPORTLOGISTIK_KOPF.ID_ACCESS_LEVELS IN "
            "(SELECT ID FROM ACCESS_LEVELS WHERE ID IN (2)) AND (TRANSPORTLOGISTIK_KOPF.KILOMETER "
            "> 60.5 AND TRANSPORTLOGISTIK_KOPF.ABGESCHLOSSEN = 0 OR TRANSPORTLOGISTIK_KOPF.FUHREN "
            "= 3 AND SPEDITEUR.NAME LIKE '%e%')");
  EXPECT_EQ(result.formula, "Kilometer > 60.5" + kAnd + "Abgeschlossen = 0 OR Fuhren = 3" + kAnd +
                                "Spediteur LIKE '%e%'");
  EXPECT_EQ(module_state().blnOK, "Wahr");
  expect_records("TRANSPORTLOGISTIK_KOPF", result.from_where,
                 "SELECT ID FROM TRANSPORTLOGISTIK_KOPF WHERE ID_ACCESS_LEVELS = 2 AND ((KILOMETER "
                 "> 60.5 AND ABGESCHLOSSEN = 0) OR (FUHREN = 3 AND ID_SPEDITEUR IN (SELECT ID FROM "
                 "PERSONAL WHERE NAME LIKE '%e%')))");
}

TEST_F(EditorSession, OfARestrictedRelation) {
  open("1EXP");
  editor().btnNew.click();
  const Result result = run([&] {
    add_list("Holzart", {"BU", "EI"});
    add_typed("Einschlagsdatum", ">=", "01.01.2025");
    add_or();
    add_picked("FSC-zertifiziert", "=", "1");
    add_typed("Käufer", "LIKE", "S%");
  });
  EXPECT_EQ(lines(), (Texts{"Holzart IN ('BU', 'EI')", "Einschlagsdatum >= '01.01.2025'",
                            "=== ODER ===", "FSC-zertifiziert = 1", "Käufer LIKE 'S%'"}));
  EXPECT_EQ(result.formula, "Holzart IN ('BU', 'EI')" + kAnd +
                                "Einschlagsdatum >= '01.01.2025' OR FSC-zertifiziert = 1" + kAnd +
                                "Käufer LIKE 'S%'");
  expect_records("LOGS", result.from_where,
                 "SELECT ID FROM LOGS WHERE (ID_HOLZART IN (SELECT ID FROM HOLZART WHERE HA = 'BU' "
                 "OR HA = 'EI') AND EINSCHLAG >= '20250101') OR (FSC = 1 AND ID_KUNDE IN (SELECT "
                 "ID FROM PERSONAL WHERE NAME LIKE 'S%'))");
}

TEST_F(EditorSession, OfARestrictedRelationWithoutACatalogueEntry) {
  open("4ARB17");
  editor().btnNew.click();
  const Result result = run([&] {
    add_typed("Menge (fm)", ">", "10");
    add_picked("Abgeschlossen", "=", "Falsch");
    add_or();
    add_typed("Beginn", "<", "01.01.2025");
  });
  EXPECT_EQ(lines(), (Texts{"Menge (fm) > 10", "Abgeschlossen = Falsch",
                            "=== ODER ===", "Beginn < '01.01.2025'"}));
  EXPECT_EQ(result.from_where,
            " FROM ARBEITSAUFTRAG_KOPF WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID = 17 AND "
            "(ARBEITSAUFTRAG_KOPF.MENGE > 10 AND ARBEITSAUFTRAG_KOPF.ABGESCHLOSEN = 0 OR "
            "ARBEITSAUFTRAG_KOPF.BEGINN < '01.01.2025')");
  expect_records("ARBEITSAUFTRAG_KOPF", result.from_where,
                 "SELECT ID FROM ARBEITSAUFTRAG_KOPF WHERE PERSONAL_ID = 17 AND ((MENGE > 10 AND "
                 "ABGESCHLOSEN = 0) OR BEGINN < '20250101')");
}

TEST_F(EditorSession, OfASelektionRelation) {
  open("1VN");
  const Result result = run([&] {
    add_picked("Warengruppe", "=", "Schutzausrüstung");
    add_typed("Bestand", ">", "10");
    add_or();
    add_typed("Revier des Lieferanten", "LIKE", "%a%");
    add_picked("Lagerartikel", "=", "Wahr");
  });
  EXPECT_EQ(lines(), (Texts{"Warengruppe = 'Schutzausrüstung'", "Bestand > 10", "=== ODER ===",
                            "Revier des Lieferanten LIKE '%a%'", "Lagerartikel = Wahr"}));
  EXPECT_EQ(result.from_where,
            " WARENKATALOG, WARENGRUPPE, REVIER, PERSONAL WHERE WARENKATALOG.ID_WARENGRUPPE = "
            "WARENGRUPPE.ID AND WARENKATALOG.ID_LIEFERANT = PERSONAL.ID AND REVIER.ID = "
            "PERSONAL.ID_REVIER AND (WARENGRUPPE.NAME = 'Schutzausrüstung' AND "
            "WARENKATALOG.BESTAND > 10 OR REVIER.NAME LIKE '%a%' AND WARENKATALOG.LAGERFUEHREND = "
            "1)");
  // The tables of all fields are joined for all groups: articles without supplier's district go.
  expect_records("WARENKATALOG", " FROM" + result.from_where,
                 "SELECT W.ID FROM WARENKATALOG W, PERSONAL P WHERE P.ID = W.ID_LIEFERANT AND "
                 "P.ID_REVIER IN (SELECT ID FROM REVIER) AND ((W.ID_WARENGRUPPE IN (SELECT ID FROM "
                 "WARENGRUPPE WHERE NAME = 'Schutzausrüstung') AND W.BESTAND > 10) OR (P.ID_REVIER "
                 "IN (SELECT ID FROM REVIER WHERE NAME LIKE '%a%') AND W.LAGERFUEHREND = 1))");
}

TEST_F(EditorSession, OfPlannedWork) {
  open("4PLN17");
  const Result result = run([&] {
    add_list("Holzart", {"FI", "KI"});
    add_picked("Abgeschlosen", "=", "Wahr");
    add_or();
    add_picked("DM/EURO", "=", "DM");
    add_typed("Plandatum", ">=", "01.01.2025");
  });
  EXPECT_EQ(lines(), (Texts{"Holzart IN ('FI', 'KI')", "Abgeschlosen = Wahr",
                            "=== ODER ===", "DM/EURO = DM", "Plandatum >= '01.01.2025'"}));
  expect_records("ARBEITSAUFTRAG_PLANN", " FROM" + result.from_where,
                 "SELECT P.ID FROM ARBEITSAUFTRAG_PLANN P, ARBEITSAUFTRAG_KOPF K WHERE K.ID = "
                 "P.ID_ARBEITSAUFTRAG_KOPF AND P.PERSONAL_ID = 17 AND (((P.HA = 'FI' OR P.HA = "
                 "'KI') AND K.ABGESCHLOSEN = 1) OR (P.IN_EURO = 0 AND P.PLANDATUM >= '20250101'))");
}

TEST_F(EditorSession, OfARelationWithAStandardModelBeginsWithIt) {
  user().lngUserID = 2;  // chose a model of the lot run
  open("1VM");
  EXPECT_EQ(editor().caption(), "Selektion: Ohne Abfuhr");
  EXPECT_EQ(editor().txtStandard.text(), "Ohne Abfuhr");
  const Result result = run([&] { add_typed("Menge (fm)", ">", "2"); });
  EXPECT_EQ(lines(), (Texts{"Abfuhrdatum = Null", "Menge (fm) > 2"}));
  expect_records("LOGS", result.from_where,
                 "SELECT ID FROM LOGS WHERE ABFUHR IS NULL AND MENGE > 2 AND ID IN (SELECT ID_LOGS "
                 "FROM LOGS_RECH WHERE R_NAME IS NOT NULL)");
}

TEST_F(EditorSession, BeginsWithTheSubsetOfTheHost) {
  open("NML");
  const Result result =
      run([&] { add_typed("Stückzahl", ">=", "2"); }, "703 = 'FI';=== ODER ===;703 = 'KI';");
  EXPECT_EQ(lines(), (Texts{"Holzart = 'FI'", "Stückzahl >= 2", "=== ODER ===", "Holzart = 'KI'"}));
  expect_records("LOGS", result.from_where,
                 "SELECT L.ID FROM LOGS L, HOLZART H WHERE H.ID = L.ID_HOLZART AND ((H.HA = 'FI' "
                 "AND L.STUECK >= 2) OR H.HA = 'KI')");
}

TEST_F(EditorSession, KeepsEveryLineThroughMovesAndReplacing) {
  open("1EXP");
  editor().btnNew.click();
  const Result result = run([&] {
    add_typed("Menge (fm)", ">", "1");
    add_picked("FSC-zertifiziert", "=", "1");
    add_or();
    add_picked("Holzart", "=", "FI");
    editor().btnFirst.click();
    editor().cmdDown.click();  // FSC, Menge, ODER, Holzart
    editor().btnLast.click();
    pick(editor().cboField, "Holzart");
    pick(editor().cboOperator, "<>");
    pick(editor().cboValue, "FI");
    editor().btnReplace.click();
  });
  EXPECT_EQ(lines(),
            (Texts{"FSC-zertifiziert = 1", "Menge (fm) > 1", "=== ODER ===", "Holzart <> 'FI'"}));
  expect_records("LOGS", result.from_where,
                 "SELECT L.ID FROM LOGS L, HOLZART H WHERE H.ID = L.ID_HOLZART AND ((L.FSC = 1 AND "
                 "L.MENGE > 1) OR H.HA <> 'FI')");
}

TEST_F(EditorSession, ThatEndsWithAnOrLineIsRefusedAndGoesOn) {
  open("1WL");
  ui().expect_modal("Selektion", [&](ModalDialog&) {
    add_typed("Fuhren", ">", "2");
    add_or();
    ui().expect_message({"Die letzte Zeile der Selektion darf keine ODER-Zeile sein.",
                         kExclamationIcon, "Kestrova", "", 0});
    editor().btnOk.click();
    EXPECT_TRUE(editor().is_visible());
    EXPECT_EQ(module_state().blnOK, "Falsch");
    editor().btnDelete.click();
    editor().btnOk.click();
  });
  Result result;
  editor().Run(user(), result.from_where, result.formula, false, "");
  EXPECT_EQ(result.formula, "Fuhren > 2");
}

// --- Contracts

class ContractSession : public EditorSession {
 protected:
  ContractSession() : EditorSession(contracts_forest()) { db().execute("BEGIN TRANSACTION"); }
  ~ContractSession() override { db().execute("ROLLBACK TRANSACTION"); }

  static const std::shared_ptr<Connection>& contracts_forest() {
    static const std::shared_ptr<Connection> shared = make_forest(300);
    return shared;
  }

  // The editor's own form of a criteria string: behind the list of IN stands an empty value.
  static std::string as_written(std::string criteria) {
    for (std::size_t at = criteria.find(");"); at != std::string::npos;
         at = criteria.find(");", at)) {
      const std::size_t record = criteria.rfind(';', at) + 1;  // 0 for the first one
      if (criteria.substr(record, at - record).find(" IN (") != std::string::npos) {
        criteria.insert(at + 1, " ");
      }
      at += 2;
    }
    return criteria;
  }
  std::string stored(const std::string& table, int record) {
    return column("SELECT SELEKTION_VALUE FROM " + table +
                  " WHERE ID = " + std::to_string(record))[0];
  }
  void store(const std::string& table, int record, const std::string& criteria) {
    std::string quoted;
    for (const char c : criteria) quoted += c == '\'' ? "''" : std::string(1, c);
    db().execute("UPDATE " + table + " SET SELEKTION_VALUE = '" + quoted +
                 "' WHERE ID = " + std::to_string(record));
  }
};

TEST_F(ContractSession, StoresExactlyTheRecordsOfTheList) {
  store("VERTRAG_PREISE", 12, "703 = 'BU';707 IN ('A','B');");
  const std::string quantities = stored("VERTRAG_MENGEN", 12);
  open("VERTP12");
  const Result result = run([&] {
    // The list belongs to the operator: behind it comes an empty value.
    EXPECT_EQ(lines(), (Texts{"Holzart = 'BU'", "Güteklasse IN ('A','B') "}));
    editor().btnLast.click();
    editor().btnDelete.click();
    add_typed("Einschlagsdatum", ">=", "01.01.2025");
    add_or();
    add_list("Holzart", {"FI", "KI"});
  });
  EXPECT_EQ(stored("VERTRAG_PREISE", 12),
            "703 = 'BU';713 >= '01.01.2025';=== ODER ===;703 IN ('FI', 'KI') ;");
  EXPECT_EQ(stored("VERTRAG_MENGEN", 12), quantities) << "the other table stays";
  expect_records("LOGS", result.from_where,
                 "SELECT L.ID FROM LOGS L, HOLZART H WHERE H.ID = L.ID_HOLZART AND L.ID NOT IN "
                 "(SELECT G.ID FROM LOGS G, FHP_IMPORT F WHERE F.ID = G.ID_FHP_IMPORT AND "
                 "(F.ERRORTEXT IS NOT NULL OR F.ID_FHP_IMPORT IS NOT NULL)) AND ((H.HA = 'BU' AND "
                 "L.EINSCHLAG >= '20250101') OR H.HA IN ('FI', 'KI'))");

  open("VERTP12");
  const Result again = run([&] {
    EXPECT_EQ(lines(), (Texts{"Holzart = 'BU'", "Einschlagsdatum >= '01.01.2025'",
                              "=== ODER ===", "Holzart IN ('FI', 'KI') "}));
  });
  EXPECT_EQ(again.formula, result.formula + " ");
  EXPECT_EQ(column("SELECT LOGS.ID" + again.from_where + " ORDER BY 1"),
            column("SELECT LOGS.ID" + result.from_where + " ORDER BY 1"));
}

TEST_F(ContractSession, StoresQuantitiesInTheirOwnTable) {
  store("VERTRAG_MENGEN", 12, "703 = 'BU';");
  const std::string prices = stored("VERTRAG_PREISE", 12);
  open("vertm12");
  run([&] { add_typed("Menge (fm)", ">=", "2.5"); });
  EXPECT_EQ(stored("VERTRAG_MENGEN", 12), "703 = 'BU';712 >= 2.5;");
  EXPECT_EQ(stored("VERTRAG_PREISE", 12), prices);
}

TEST_F(ContractSession, StoresWhatItLoadedWhenNothingChanged) {
  constexpr int kRecords = 40;  // each filter of the generator is among the first ones
  for (const auto& [code, table] : std::vector<std::pair<std::string, std::string>>{
           {"VERTP", "VERTRAG_PREISE"}, {"VERTM", "VERTRAG_MENGEN"}}) {
    for (int record = 1; record <= kRecords; ++record) {
      const std::string before = stored(table, record);
      SCOPED_TRACE(code + std::to_string(record) + " " + before);
      open(code + std::to_string(record));
      ok();
      EXPECT_EQ(stored(table, record), before == "(null)" ? "" : as_written(before));
    }
  }
}

TEST_F(ContractSession, StoresOtherKindsOfRecordsAsTheyWere) {
  for (const char* criteria :
       {"713 = Null;714 <> Null;", "712 >= 2.5;=== ODER ===;712 < 0.75;",
        "713 >= '01.01.2025';713 < '15.03.2025';", "713 IN ('01.01.2025','02.01.2025');",
        "713 >= GETDATE()-30;", "702 LIKE '%ä%';721 <> 'Sägewerk';", "715 = 1;719 = 0;"}) {
    SCOPED_TRACE(criteria);
    store("VERTRAG_PREISE", 3, criteria);
    for (int round = 0; round < 2; ++round) {
      open("VERTP3");
      ok();
      EXPECT_EQ(stored("VERTRAG_PREISE", 3), as_written(criteria));
    }
  }
}

TEST_F(ContractSession, OfAContractThatDoesNotExistFails) {
  open("VERTP99999");
  Result result;
  EXPECT_THROW(editor().Run(user(), result.from_where, result.formula, false, ""), NoCurrentRecord);
  EXPECT_EQ(number(db(), "SELECT COUNT(*) FROM VERTRAG_PREISE WHERE ID = 99999"), 0);
}

TEST_F(ContractSession, ThatCannotStoreFailsAndGoesOn) {
  open("VERTP12");
  ui().expect_modal(editor().caption(), [&](ModalDialog&) {
    editor().btnNew.click();
    add_picked("Holzart", "=", "FI");
    db().execute("SELECT * INTO PREISE FROM VERTRAG_PREISE");
    db().execute("DROP TABLE VERTRAG_PREISE");
    EXPECT_THROW(editor().btnOk.click(), DatabaseError);
    EXPECT_TRUE(editor().is_visible());
    EXPECT_EQ(ui().pointer(), PointerShape::kDefault);
    db().execute("SELECT * INTO VERTRAG_PREISE FROM PREISE");
    editor().btnOk.click();
  });
  Result result;
  editor().Run(user(), result.from_where, result.formula, false, "");
  EXPECT_EQ(stored("VERTRAG_PREISE", 12), "703 = 'FI';");
}

// --- Failures of the database

class BrokenSession : public ContractSession {};

TEST_F(BrokenSession, AFieldWhoseValuesCannotBeReadLeavesTheOthersUsable) {
  db().execute("DROP TABLE HOLZART");
  open("1EXP");
  editor().btnNew.click();
  EXPECT_THROW(pick(editor().cboField, "Holzart"), DatabaseError);
  EXPECT_EQ(ui().pointer(), PointerShape::kDefault);
  const Result result = run([&] { add_picked("FSC-zertifiziert", "=", "1"); });
  expect_records("LOGS", result.from_where, "SELECT ID FROM LOGS WHERE FSC = 1");
}

TEST_F(BrokenSession, ARelationThatCannotBeOpenedLeavesOthersUsable) {
  db().execute("SELECT * INTO SAVED FROM MODELS");
  db().execute("DROP TABLE MODELS");
  EXPECT_THROW(open("1EXP"), DatabaseError);
  EXPECT_THROW(open("HIZ_SELEKTION_7"), DatabaseError);
  db().execute("SELECT * INTO MODELS FROM SAVED");
  open("1WL");
  const Result result = run([&] { add_typed("Fuhren", ">", "4"); });
  expect_records("TRANSPORTLOGISTIK_KOPF", result.from_where,
                 "SELECT ID FROM TRANSPORTLOGISTIK_KOPF WHERE ID_ACCESS_LEVELS = 2 AND FUHREN > 4");
}

TEST_F(BrokenSession, ASelektionThatIsGoneLeavesCatalogueRelationsUsable) {
  db().execute("DROP TABLE SELEKTION");
  EXPECT_THROW(open("1VN"), DatabaseError);
  open("1WL");
  const Result result = run([&] { add_typed("Fuhren", ">", "4"); });
  EXPECT_EQ(result.formula, "Fuhren > 4");
}

}  // namespace
}  // namespace kestrova::test
