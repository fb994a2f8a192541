#include "examples/forest/forest_generator.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>
#include <string_view>

#include "examples/forest/forest_scripts.h"
#include "examples/forest/row_dice.h"
#include "examples/forest/sql_script.h"
#include "platform/error.h"

namespace kestrova {
namespace {

constexpr std::string_view kSurnames[] = {
    "Bauer", "Brandl",  "Dörfler", "Eichhorn", "Forster",  "Größl",   "Haslinger", "Huber",
    "Jäger", "Kögl",    "Lechner", "Meißner",  "O'Connor", "Pichler", "Rößler",    "Schäffler",
    "Süß",   "Tannhof", "Vogl",    "Waldner",  "Weiß",     "Zöttl"};
constexpr std::string_view kFirstNames[] = {"Anna",  "Bernd",   "Cäcilia", "Dieter",  "Elfriede",
                                            "Franz", "Günther", "Hedwig",  "Ignaz",   "Jörg",
                                            "Käthe", "Ludwig",  "Monika",  "Norbert", "Ulrike"};
constexpr std::string_view kCompanies[] = {"Sägewerk",  "Holzhandel",  "Zimmerei",
                                           "Brennholz", "Parketterie", "Schreinerei"};
constexpr std::string_view kStreets[] = {"Hauptstraße 1",  "Am Waldrand 12", "Mühlgasse 3",
                                         "Lindenallee 27", "Försterweg 8",   "Römerstraße 40"};
constexpr std::string_view kTowns[] = {"Bad Tölz",    "München",  "Lenggries", "Wolfratshausen",
                                       "Holzkirchen", "Landshut", "Füssen",    "Köln"};
constexpr std::string_view kPlaces[] = {"Hirschlacke",   "Oberer Schlag",  "Saugraben",
                                        "Große Dickung", "Steinbruch",     "Moosbrücke",
                                        "Kälberalm",     "Teufel's Kanzel"};
constexpr std::string_view kRemarks[] = {"nur bei Frost abfahren", "Käferholz, schnell abfahren",
                                         "Kunde O'Brien informieren", "Maß nachprüfen"};
constexpr std::string_view kFindings[] = {"Maß bestätigt", "Stückzahl weicht ab", "nicht gefunden"};
constexpr std::string_view kSubjects[] = {"Fichte-Stammholz", "Laubwertholz",
                                          "Industrieholz frei Werk", "Brennholz für Selbstwerber",
                                          "Holz laut Vertrag"};
constexpr std::string_view kContracts[] = {"Rahmenvertrag Nadelstammholz",
                                           "Liefervertrag Industrieholz", "Rahmenvertrag Laubholz",
                                           "Brennholzvertrag", "Frühjahrsvertrag"};
constexpr std::string_view kImportErrors[] = {"Losnummer unbekannt", "Prüfsumme falsch",
                                              "Käufer nicht zugeordnet"};
constexpr std::string_view kYards[] = {"Lagerplatz Bahnhof", "Nasslager Kühbrunn", "Waldstraße Süd",
                                       "Wertholzplatz"};
constexpr std::string_view kMeasures[] = {"Durchforstung",   "Endnutzung", "Pflanzung Eiche",
                                          "Jungwuchspflege", "Wegebau",    "Zaunbau",
                                          "Käfersuche"};
constexpr std::string_view kActivities[] = {"Holzernte", "Pflanzung", "Jungwuchspflege",
                                            "Wegebau",   "Zaunbau",   "Büroarbeit"};
constexpr std::string_view kWageTypes[] = {"Zeitlohn", "Akkordlohn", "Überstunden", "Urlaub",
                                           "Motorsägengeld"};
constexpr std::string_view kCostCentres[] = {"4000", "4010", "4100", "4200", "5100", "6000"};
constexpr std::string_view kCosts[] = {"Unternehmereinsatz", "Dieselkraftstoff", "Pflanzgut",
                                       "Löhne", "Gerätereparatur"};
constexpr std::string_view kTrips[] = {"Revierfahrt", "Holzabfuhr", "Werkstatt", "Schulung"};
constexpr std::string_view kHunts[] = {"Treibjagd", "Entenstrich", "Ansitz am Weiher"};
constexpr std::string_view kArticles[] = {
    "Fichte 2/2, 30-50 cm",  "Rotbuche 1/2, 50-80 cm", "Schnittschutzhose",    "Gehörschutz",
    "Motorsägenkette 3/8''", "Wildzaun 160 cm",        "Sonderkraftstoff 5 l", "Rehrücken"};
constexpr std::string_view kSpecies[] = {"FI", "KI", "TA", "DGL", "LÄ", "BU", "EI"};
constexpr std::string_view kAssortments[] = {"L", "LAS", "PAL", "IS", "BRH"};
constexpr std::string_view kGrades[] = {"A", "B", "C", "D"};
constexpr std::string_view kDiameterClasses[] = {"1b", "2a", "2b", "3a", "3b", "4", "5"};
constexpr std::string_view kUses[] = {"EN", "VN", "ZE", "JD"};
constexpr std::string_view kCalamities[] = {"BK", "ST", "SN", "DÜ"};
constexpr std::string_view kRanges[] = {"Bauholz", "Furnierholz", "Schwellenholz", "Scheitholz"};
constexpr std::string_view kHints[] = {"Seillinie abstimmen", "Naturschutz: Höhlenbäume markiert",
                                       "Zufahrt über O'Brien-Weg"};
constexpr std::string_view kPrintStates[] = {"D", "E"};
constexpr std::array<std::array<std::string_view, 2>, 10> kAttributes = {{{"GAK", "KUP"},
                                                                          {"WSG", "FFH"},
                                                                          {"HARV", "MMS"},
                                                                          {"EIG", "UNT"},
                                                                          {"FRÜH", "HERB"},
                                                                          {"LKW", "FROST"},
                                                                          {"PEFC", "FSC"},
                                                                          {"HANG", "EBEN"},
                                                                          {"ERH", "SCHU"},
                                                                          {"PRIO1", "PRIO2"}}};
constexpr std::string_view kInvoiceRuns[] = {"R", "A1", "A2", "A3", "A4", "A5", "A6", "A7", "A8"};
// Lot filters of contracts, in the identifiers of the lot relations.
constexpr std::string_view kLotFilters[] = {"703 = 'FI';", "703 = 'BU';707 IN ('A','B');",
                                            "706 = 'L';711 >= 30;=== ODER ===;706 = 'LAS';",
                                            "713 >= GETDATE() - 180;"};

constexpr std::int64_t kDistricts = 8;
constexpr std::int64_t kFirstWorker = 15, kLastWorker = 20;  // hand-written persons
constexpr std::int64_t kHandWrittenPersons = 20;
constexpr std::int64_t kPersons = 240;
constexpr std::int64_t kContractCount = 135;
constexpr std::int64_t kImports = 60;
constexpr std::int64_t kVouchers = 180;  // a third of them each billing document, offer and invoice
constexpr std::int64_t kPileRecords = 150, kPiles = 360;
constexpr std::int64_t kPostings = 120;
constexpr std::int64_t kOrders = 120, kOrderPositions = 240;

// How many rows one INSERT carries; the server takes at most 1,000.
constexpr std::int64_t kRowsPerInsert = 500;

using Row = std::initializer_list<std::string>;

std::string joined(Row values) {
  std::string text;
  for (const std::string& value : values) {
    if (!text.empty()) text += ',';
    text += value;
  }
  return text;
}

class Generator {
 public:
  Generator(Connection& connection, const ForestOptions& options)
      : connection_(connection), options_(options) {}

  void run() {
    people();
    contracts();
    lots();
    invoices();
    transport();
    stock();
    work_orders();
    plans();
    labour();
    costs();
    machines();
    hunting();
  }

 private:
  // Fills a table whose first column is ID with the rows first to last. values answers the texts of
  // the other columns, or "" to leave the row out.
  template <class Values>
  void fill(std::string_view table, std::string_view columns, std::int64_t first, std::int64_t last,
            Values values) {
    const TableDice dice{options_.seed, table, options_.today};
    const std::string head =
        "INSERT INTO " + std::string(table) + " (ID," + std::string(columns) + ") VALUES\n";
    std::string statement;
    std::int64_t rows = 0;
    const auto send = [&] {
      if (rows == 0) return;
      execute(table, statement);
      statement.clear();
      rows = 0;
    };
    for (std::int64_t id = first; id <= last; ++id) {
      const std::string row = values(id, RowDice(dice, id));
      if (row.empty()) continue;
      statement += rows == 0 ? head : ",\n";
      statement += '(' + std::to_string(id) + ',' + row + ')';
      if (++rows == kRowsPerInsert) send();
    }
    send();
  }

  void execute(std::string_view table, std::string_view statement) {
    try {
      connection_.execute(statement);
    } catch (const DatabaseError& error) {
      throw DatabaseError("Generated rows of " + std::string(table) + ": " + error.what(),
                          error.sqlstate(), error.native_code());
    }
  }

  // References that most tables have.
  static std::string district(const RowDice& d) {
    return d.nullable("ID_REVIER", 10, d.number("ID_REVIER", 1, kDistricts));
  }
  static std::string access(const RowDice& d) {
    return d.nullable("ID_ACCESS_LEVELS", 8, d.number("ID_ACCESS_LEVELS", 1, 4));
  }
  static std::string person(const RowDice& d, std::string_view column) {
    return d.nullable(column, 12, d.number(column, 1, kPersons));
  }
  static std::string worker(const RowDice& d) {
    return d.number("ID_PERSONAL", kFirstWorker, kLastWorker);
  }
  static std::string labelled(std::string_view label, std::int64_t number) {
    return sql_text(std::string(label) + std::to_string(100000 + number));
  }

  void people() {
    fill("PERSONAL",
         "NUMMER,NAME,VORNAME,STRASSE,PLZ,ORT,ANGELEGT,GEBURTSDATUM,STUNDENSATZ,KUNDE,ARBEITER,"
         "LIEFERANT,MANDANTEN,SONSTIGER,WALDBESITZER,ANSPRECHPARTNER,ABRECH1,ABRECH2,ABRECH3,"
         "ABRECH4,ABRECH5,ABRECH6,ABRECH7,ABRECH8,ID_REVIER,ID_ACCESS_LEVELS",
         kHandWrittenPersons + 1, kPersons, [](std::int64_t id, const RowDice& d) {
           const auto surname = kSurnames[static_cast<std::size_t>(d.between("NAME", 0, 21))];
           const bool company = d.percent("COMPANY", 30);
           const auto kind = kCompanies[static_cast<std::size_t>(d.between("KIND", 0, 5))];
           const bool works = !company && d.percent("ARBEITER", 25);
           return joined(
               {sql_number(70000 + id),
                sql_text(company ? std::string(kind) + " " + std::string(surname)
                                 : std::string(surname)),
                company ? "NULL" : d.text("VORNAME", kFirstNames),
                d.nullable("STRASSE", 5, d.text("STRASSE", kStreets)),
                d.nullable("PLZ", 5, sql_text(std::to_string(d.between("PLZ", 80331, 87700)))),
                d.nullable("ORT", 5, d.text("ORT", kTowns)),
                d.date("ANGELEGT", -4000, -30),
                company ? "NULL"
                        : d.nullable("GEBURTSDATUM", 20, d.date("GEBURTSDATUM", -28000, -7000)),
                works ? d.decimal("STUNDENSATZ", 1850, 3600, 2) : "NULL",
                company ? "1" : d.bit("KUNDE", 30),
                works ? "1" : "0",
                d.bit("LIEFERANT", 12),
                d.bit("MANDANTEN", 5),
                d.bit("SONSTIGER", 10),
                d.bit("WALDBESITZER", 25),
                d.bit("ANSPRECHPARTNER", 10),
                d.bit("ABRECH1", 12),
                d.bit("ABRECH2", 12),
                d.bit("ABRECH3", 12),
                d.bit("ABRECH4", 12),
                d.bit("ABRECH5", 12),
                d.bit("ABRECH6", 12),
                d.bit("ABRECH7", 12),
                d.bit("ABRECH8", 12),
                district(d),
                access(d)});
         });
  }

  void contracts() {
    fill("VERTRAEGE",
         "NUMMER,BEZEICHNUNG,ID_FAKTART,VERTRAGSDATUM,LAUFZEIT_BIS,MENGE,PREIS,POSITIONEN,"
         "VERLAENGERBAR,ID_KUNDE,ID_ACCESS_LEVELS",
         1, kContractCount, [](std::int64_t id, const RowDice& d) {
           return joined({sql_number(3000 + id), d.text("BEZEICHNUNG", kContracts),
                          sql_number((id - 1) % 9), d.date("VERTRAGSDATUM", -1400, -5),
                          d.nullable("LAUFZEIT_BIS", 15, d.date("LAUFZEIT_BIS", -300, 500)),
                          d.nullable("MENGE", 5, d.decimal("MENGE", 50000, 4000000, 3)),
                          d.nullable("PREIS", 10, d.decimal("PREIS", 2800, 18000, 2)),
                          d.number("POSITIONEN", 1, 12), d.bit("VERLAENGERBAR", 40),
                          person(d, "ID_KUNDE"), access(d)});
         });
    fill("VERTRAG_PREISE", "ID_VERTRAEGE,PREIS,SELEKTION_VALUE", 1, kContractCount,
         [](std::int64_t id, const RowDice& d) {
           return joined(
               {sql_number(id), d.decimal("PREIS", 2800, 18000, 2),
                d.nullable("SELEKTION_VALUE", 15, d.text("SELEKTION_VALUE", kLotFilters))});
         });
    fill("VERTRAG_MENGEN", "ID_VERTRAEGE,MENGE,SELEKTION_VALUE", 1, kContractCount,
         [](std::int64_t id, const RowDice& d) {
           return joined(
               {sql_number(id), d.decimal("MENGE", 50000, 4000000, 3),
                d.nullable("SELEKTION_VALUE", 15, d.text("SELEKTION_VALUE", kLotFilters))});
         });
  }

  void lots() {
    fill("FHP_IMPORT",
         "DATEINAME,IMPORTDATUM,STUECK,MENGE,ABGEGLICHEN,ERRORTEXT,ID_FHP_IMPORT,ID_PERSONAL", 1,
         kImports, [](std::int64_t id, const RowDice& d) {
           return joined({sql_text("fhp_" + std::to_string(1000 + id) + ".xml"),
                          d.date("IMPORTDATUM", -700, -1), d.number("STUECK", 5, 400),
                          d.nullable("MENGE", 5, d.decimal("MENGE", 8000, 400000, 3)),
                          d.bit("ABGEGLICHEN", 70),
                          d.nullable("ERRORTEXT", 85, d.text("ERRORTEXT", kImportErrors)),
                          d.nullable("ID_FHP_IMPORT", 85, d.number("ID_FHP_IMPORT", 1, kImports)),
                          d.nullable("ID_PERSONAL", 10, d.number("ID_PERSONAL", 1, 6))});
         });
    fill("LISTENKOPF",
         "LISTENNUMMER,AUFNAHMEDATUM,GESPERRTLISTE,ID_REVIER,ID_PERSONAL,ID_ACCESS_LEVELS", 1,
         list_of(options_.lots), [](std::int64_t id, const RowDice& d) {
           return joined({labelled("L-", id), d.date("AUFNAHMEDATUM", -800, -2),
                          d.nullable("GESPERRTLISTE", 60, d.bit("GESPERRTLISTE", 30)), district(d),
                          d.nullable("ID_PERSONAL", 10, worker(d)), access(d)});
         });
    fill("LOGS",
         "NUMMER,WALDORT,STUECK,LAENGE,DURCHMESSER,MENGE,PREIS,EINSCHLAG,ABFUHR,FSC,BEMERKUNG,"
         "ID_LISTENKOPF,ID_HOLZART,ID_HOLZSORTE,ID_GUETEKLASSE,ID_STKL,ID_KUNDE,ID_FHP_IMPORT",
         1, options_.lots, [](std::int64_t id, const RowDice& d) {
           const std::int64_t felled = d.between("EINSCHLAG", -800, -3);
           return joined(
               {sql_number(200000 + id), d.nullable("WALDORT", 5, d.text("WALDORT", kPlaces)),
                d.number("STUECK", 1, 60), d.nullable("LAENGE", 8, d.decimal("LAENGE", 20, 200, 1)),
                d.nullable("DURCHMESSER", 8, d.number("DURCHMESSER", 12, 75)),
                d.decimal("MENGE", 350, 95000, 3),
                d.nullable("PREIS", 10, d.decimal("PREIS", 2500, 16000, 2)), d.day(felled),
                d.nullable("ABFUHR", 40, d.day(felled / 2)), d.bit("FSC", 65),
                d.nullable("BEMERKUNG", 80, d.text("BEMERKUNG", kRemarks)), sql_number(list_of(id)),
                d.number("ID_HOLZART", 1, 10), d.number("ID_HOLZSORTE", 1, 7),
                d.nullable("ID_GUETEKLASSE", 15, d.number("ID_GUETEKLASSE", 1, 4)),
                d.nullable("ID_STKL", 15, d.number("ID_STKL", 1, 8)),
                d.nullable("ID_KUNDE", 20, d.number("ID_KUNDE", 1, 30)),
                d.nullable("ID_FHP_IMPORT", 60, d.number("ID_FHP_IMPORT", 1, kImports))});
         });
    fill("LOGS_RECH",
         "ID_LOGS,R_NAME,R_PREIS,R_DATUM,A1_NAME,A2_NAME,A3_NAME,A4_NAME,A5_NAME,A6_NAME,A7_NAME,"
         "A8_NAME",
         1, options_.lots, [](std::int64_t id, const RowDice& d) -> std::string {
           if (d.percent("ID_LOGS", 10)) return "";
           const bool sold = d.percent("R_NAME", 55);
           const auto run = [&](std::string_view column) {
             return d.nullable(column, 85,
                               labelled(column.substr(0, 2), d.between(column, 1, 400)));
           };
           return joined({sql_number(id),
                          sold ? labelled("R-", d.between("R_NUMMER", 1, 400)) : "NULL",
                          sold ? d.decimal("R_PREIS", 2500, 16000, 2) : "NULL",
                          sold ? d.date("R_DATUM", -400, 0) : "NULL", run("A1_NAME"),
                          run("A2_NAME"), run("A3_NAME"), run("A4_NAME"), run("A5_NAME"),
                          run("A6_NAME"), run("A7_NAME"), run("A8_NAME")});
         });
    fill("SERVICEPROTOKOLL", "ID_LOGS,DATUM,BEFUND", 1, options_.lots,
         [](std::int64_t id, const RowDice& d) -> std::string {
           if (!d.percent("ID_LOGS", 6)) return "";
           return joined({sql_number(id), d.date("DATUM", -300, 0),
                          d.nullable("BEFUND", 10, d.text("BEFUND", kFindings))});
         });
  }

  // A measuring list holds ten lots.
  static std::int64_t list_of(std::int64_t lot) { return (lot - 1) / 10 + 1; }

  void invoices() {
    const std::int64_t invoices = std::max<std::int64_t>(180, options_.lots / 5);
    fill("HEADERRECH",
         "NUMMER,VER_TYPE,INVDATE,FAELLIG,NETTO,STEUERSATZ,POSITIONEN,BEZAHLT,BETREFF,ID_KUNDE,"
         "ID_ACCESS_LEVELS",
         1, invoices, [](std::int64_t id, const RowDice& d) {
           const std::int64_t made = d.between("INVDATE", -720, 0);
           return joined(
               {sql_number(500000 + id), sql_text(kInvoiceRuns[static_cast<std::size_t>(id % 9)]),
                d.day(made), d.nullable("FAELLIG", 5, d.day(made + 30)),
                d.decimal("NETTO", 4500, 2500000, 2), d.percent("STEUERSATZ", 60) ? "19" : "5.5",
                d.number("POSITIONEN", 1, 25), d.bit("BEZAHLT", 70),
                d.nullable("BETREFF", 15, d.text("BETREFF", kSubjects)), person(d, "ID_KUNDE"),
                access(d)});
         });
    fill("RECHNUNGSJOURNAL", "BELEGNUMMER,BUCHUNGSDATUM,BETRAG,ZEILEN,STORNIERT,ID_HEADERRECH", 1,
         invoices / 2, [&](std::int64_t id, const RowDice& d) {
           return joined({labelled("RJ-", id), d.date("BUCHUNGSDATUM", -720, 0),
                          d.decimal("BETRAG", 4500, 2500000, 2), d.number("ZEILEN", 1, 30),
                          d.bit("STORNIERT", 8),
                          d.nullable("ID_HEADERRECH", 10, d.number("ID_HEADERRECH", 1, invoices))});
         });
  }

  void transport() {
    fill("TRANSPORTLOGISTIK_KOPF",
         "NUMMER,ABFUHRDATUM,FUHREN,KILOMETER,ABGESCHLOSSEN,ID_SPEDITEUR,ID_ACCESS_LEVELS", 1, 110,
         [](std::int64_t id, const RowDice& d) {
           return joined({labelled("T-", id),
                          d.nullable("ABFUHRDATUM", 15, d.date("ABFUHRDATUM", -300, 20)),
                          d.number("FUHREN", 1, 14),
                          d.nullable("KILOMETER", 10, d.decimal("KILOMETER", 80, 4200, 1)),
                          d.bit("ABGESCHLOSSEN", 60), person(d, "ID_SPEDITEUR"), access(d)});
         });
    fill("BEREITSTELLUNG_KOPF",
         "NUMMER,LAGERORT,DATUM,POLTER,MENGE,FREIGEGEBEN,ID_KUNDE,ID_ACCESS_LEVELS", 1, 110,
         [](std::int64_t id, const RowDice& d) {
           return joined({sql_number(8000 + id),
                          d.nullable("LAGERORT", 8, d.text("LAGERORT", kYards)),
                          d.date("DATUM", -400, 0), d.number("POLTER", 1, 9),
                          d.nullable("MENGE", 5, d.decimal("MENGE", 5000, 480000, 3)),
                          d.bit("FREIGEGEBEN", 55), person(d, "ID_KUNDE"), access(d)});
         });
    fill("MV_LOSE", "LOSNUMMER,GEBOTSFRIST,GEBOTE,MINDESTPREIS,ZUGESCHLAGEN,ID_HOLZART,ID_KUNDE", 1,
         90, [](std::int64_t id, const RowDice& d) {
           const bool awarded = d.percent("ZUGESCHLAGEN", 50);
           return joined(
               {labelled("MV-", id), d.date("GEBOTSFRIST", -200, 60), d.number("GEBOTE", 0, 11),
                d.nullable("MINDESTPREIS", 10, d.decimal("MINDESTPREIS", 15000, 120000, 2)),
                awarded ? "1" : "0", d.number("ID_HOLZART", 1, 10),
                awarded ? d.number("ID_KUNDE", 1, 6) : "NULL"});
         });
  }

  void stock() {
    fill("BB_FAKTURA_KOPF",
         "NUMMER,TYP,DATUM,BETREFF,POSITIONEN,NETTO,GEDRUCKT,ID_KUNDE,ID_ACCESS_LEVELS", 1,
         kVouchers, [](std::int64_t id, const RowDice& d) {
           return joined({sql_number(9000 + id), sql_number((id - 1) % 3 + 1),
                          d.date("DATUM", -500, 0),
                          d.nullable("BETREFF", 10, d.text("BETREFF", kSubjects)),
                          d.number("POSITIONEN", 1, 20), d.decimal("NETTO", 9000, 1800000, 2),
                          d.bit("GEDRUCKT", 60), person(d, "ID_KUNDE"), access(d)});
         });
    fill("BB_HAB_KOPF",
         "NUMMER,AUFNAHMEDATUM,STORNODATUM,AUFNAHMEZUSTAND,ID_REVIER,ID_ACCESS_LEVELS", 1,
         kPileRecords, [](std::int64_t id, const RowDice& d) {
           return joined({sql_number(6000 + id), d.date("AUFNAHMEDATUM", -600, -1),
                          d.nullable("STORNODATUM", 88, d.date("STORNODATUM", -100, 0)),
                          d.percent("AUFNAHMEZUSTAND", 75) ? "1" : "0", district(d), access(d)});
         });
    // The last records have no piles yet.
    fill("BB_HAB",
         "ID_BB_HAB_KOPF,POLTER,STUECK,MENGE,FSC,MV_BEZUG,MV_SCHLUSSAUFNAHME,ABGANGSART_DATUM,"
         "ID_BB_T_ABGANGSART,ID_BB_FAKTURA_KOPF_ANGEBOT,ID_BB_FAKTURA_KOPF_RECHNUNG,ID_HOLZART,"
         "ID_HOLZSORTE",
         1, kPiles, [](std::int64_t id, const RowDice& d) {
           const bool left = d.percent("LEFT", 35);
           const std::int64_t thirds = kVouchers / 3;
           const std::string offer = sql_number(3 * d.between("ANGEBOT", 0, thirds - 1) + 2);
           const std::string invoice = sql_number(3 * d.between("RECHNUNG", 0, thirds - 1) + 3);
           return joined({sql_number((id - 1) % (kPileRecords - 8) + 1), labelled("P-", id),
                          d.number("STUECK", 1, 90), d.decimal("MENGE", 900, 88000, 3),
                          d.bit("FSC", 60), d.nullable("MV_BEZUG", 85, d.number("MV_BEZUG", 1, 90)),
                          d.nullable("MV_SCHLUSSAUFNAHME", 85, "1"),
                          left ? d.date("ABGANGSART_DATUM", -300, 0) : "NULL",
                          left ? d.number("ID_BB_T_ABGANGSART", 1, 5) : "NULL",
                          d.nullable("ANGEBOT", 78, offer), d.nullable("RECHNUNG", 74, invoice),
                          d.number("ID_HOLZART", 1, 10),
                          d.nullable("ID_HOLZSORTE", 4, d.number("ID_HOLZSORTE", 1, 7))});
         });
    fill("STEH_AUFNAHMEPROTOKOLL_KOPF",
         "NUMMER,ABTEILUNG,ERFASSUNGSDATUM,BAEUME,VORRAT,ABGESCHLOSSEN,DRUCKSTATUS,ID_WALDBESITZER,"
         "ID_REVIER,ID_ACCESS_LEVELS",
         1, 75, [](std::int64_t id, const RowDice& d) {
           return joined({sql_number(400 + id), labelled("Abt. ", d.between("ABTEILUNG", 1, 99)),
                          d.date("ERFASSUNGSDATUM", -500, 0), d.number("BAEUME", 12, 900),
                          d.nullable("VORRAT", 8, d.decimal("VORRAT", 9000, 1400000, 3)),
                          d.bit("ABGESCHLOSSEN", 50),
                          d.nullable("DRUCKSTATUS", 30, d.text("DRUCKSTATUS", kPrintStates)),
                          d.nullable("ID_WALDBESITZER", 10, d.number("ID_WALDBESITZER", 11, 13)),
                          district(d), access(d)});
         });
    fill("WARENKATALOG",
         "ARTIKELNUMMER,NAME,ANGELEGT,BESTAND,PREIS,LAGERFUEHREND,ID_FORMULA,ID_WARENGRUPPE,"
         "ID_LIEFERANT,ID_ACCESS_LEVELS",
         1, 110, [](std::int64_t id, const RowDice& d) {
           return joined({labelled("W-", id), d.text("NAME", kArticles),
                          d.date("ANGELEGT", -1500, 0), d.number("BESTAND", 0, 400),
                          d.nullable("PREIS", 8, d.decimal("PREIS", 95, 48000, 2)),
                          d.bit("LAGERFUEHREND", 70),
                          d.nullable("ID_FORMULA", 80, d.number("ID_FORMULA", 1, 9)),
                          d.number("ID_WARENGRUPPE", 1, 6), person(d, "ID_LIEFERANT"), access(d)});
         });
  }

  void work_orders() {
    constexpr std::int64_t orders = 180;
    fill("ARBEITSAUFTRAG_KOPF",
         "NUMMER,BEZEICHNUNG,PERSONAL_ID,BEGINN,ENDE,MENGE,ABGESCHLOSEN,STATUS,RELTABLE1,RELTABLE2,"
         "RELTABLE3,RELTABLE4,RELTABLE5,RELTABLE6,RELTABLE7,RELTABLE8,RELTABLE9,RELTABLE10,ID_"
         "REVIER",
         1, orders, [](std::int64_t id, const RowDice& d) {
           const std::int64_t start = d.between("BEGINN", -400, 30);
           const auto attribute = [&](std::string_view column, std::size_t list) {
             return d.nullable(column, 30, d.text(column, kAttributes[list - 1]));
           };
           return joined({sql_number(1000 + id), d.text("BEZEICHNUNG", kMeasures),
                          d.number("PERSONAL_ID", kFirstWorker, kLastWorker), d.day(start),
                          d.nullable("ENDE", 35, d.day(start + d.between("ENDE", 1, 60))),
                          d.nullable("MENGE", 10, d.decimal("MENGE", 5000, 900000, 3)),
                          d.bit("ABGESCHLOSEN", 45), d.bit("STATUS", 80), attribute("RELTABLE1", 1),
                          attribute("RELTABLE2", 2), attribute("RELTABLE3", 3),
                          attribute("RELTABLE4", 4), attribute("RELTABLE5", 5),
                          attribute("RELTABLE6", 6), attribute("RELTABLE7", 7),
                          attribute("RELTABLE8", 8), attribute("RELTABLE9", 9),
                          attribute("RELTABLE10", 10), district(d)});
         });
    fill("ARBEITSAUFTRAG_PLANN",
         "ID_ARBEITSAUFTRAG_KOPF,PERSONAL_ID,PLANDATUM,HA,HS,GKL,STKL,NA,KA,SORTIMENT,STUECK,MENGE,"
         "PREIS,RINDE_PROZENT,IN_EURO,HINWEIS",
         1, 2 * orders, [](std::int64_t id, const RowDice& d) {
           return joined({sql_number((id - 1) / 2 + 1),
                          d.number("PERSONAL_ID", kFirstWorker, kLastWorker),
                          d.nullable("PLANDATUM", 10, d.date("PLANDATUM", -400, 60)),
                          d.nullable("HA", 5, d.text("HA", kSpecies)),
                          d.nullable("HS", 5, d.text("HS", kAssortments)),
                          d.nullable("GKL", 20, d.text("GKL", kGrades)),
                          d.nullable("STKL", 20, d.text("STKL", kDiameterClasses)),
                          d.nullable("NA", 10, d.text("NA", kUses)),
                          d.nullable("KA", 70, d.text("KA", kCalamities)),
                          d.nullable("SORTIMENT", 30, d.text("SORTIMENT", kRanges)),
                          d.number("STUECK", 1, 300),
                          d.nullable("MENGE", 10, d.decimal("MENGE", 200, 90000, 2)),
                          d.nullable("PREIS", 20, d.decimal("PREIS", 2500, 16000, 2)),
                          d.bit("RINDE_PROZENT", 50), d.bit("IN_EURO", 75),
                          d.nullable("HINWEIS", 70, d.text("HINWEIS", kHints))});
         });
    fill("BB_T_AUFTRAGS_PLANUNG",
         "NUMMER,NAME,GUELTIG_AB,DAUER_TAGE,RICHTSATZ,AKTIV,ID_BB_T_AUFTRAGSTYP,ID_ACCESS_LEVELS",
         1, 60, [](std::int64_t id, const RowDice& d) {
           return joined({labelled("K-", id), d.text("NAME", kMeasures),
                          d.date("GUELTIG_AB", -900, 100), d.number("DAUER_TAGE", 1, 45),
                          d.nullable("RICHTSATZ", 10, d.decimal("RICHTSATZ", 150, 98000, 2)),
                          d.bit("AKTIV", 80), d.number("ID_BB_T_AUFTRAGSTYP", 1, 3), access(d)});
         });
    fill("BB_AUFTRAG_KOPF",
         "NUMMER,BEZEICHNUNG,DATUM,STORNODATUM,DRINGEND,ID_PRODUKT,ID_BB_T_AUFTRAGSTYP,ID_REVIER,"
         "ID_ACCESS_LEVELS",
         1, kOrders, [](std::int64_t id, const RowDice& d) {
           // All orders of one product are cancelled, so that plans for it have no order left.
           // left.
           const std::int64_t product = d.between("ID_PRODUKT", 1, 6);
           const std::string cancelled = d.date("STORNODATUM", -90, 0);
           return joined({labelled("A-", id), d.text("BEZEICHNUNG", kMeasures),
                          d.date("DATUM", -500, 0),
                          product == 6 ? cancelled : d.nullable("STORNODATUM", 90, cancelled),
                          d.bit("DRINGEND", 25), d.nullable("ID_PRODUKT", 5, sql_number(product)),
                          d.number("ID_BB_T_AUFTRAGSTYP", 1, 3), district(d), access(d)});
         });
    // The last orders have no positions yet.
    fill(
        "BB_AUFTRAG",
        "ID_BB_AUFTRAG_KOPF,POSITION,SOLL_MENGE,IST_MENGE,STORNODATUM,ID_BB_T_AUFTRAGSSTATUS", 1,
        kOrderPositions, [](std::int64_t id, const RowDice& d) {
          const std::int64_t target = d.between("SOLL_MENGE", 1000, 900000);
          const std::int64_t done = d.percent("DONE", 30) ? target : d.between("IST", 0, target);
          return joined(
              {sql_number((id - 1) % (kOrders - 10) + 1), sql_number((id - 1) / (kOrders - 10) + 1),
               sql_decimal(target, 3), d.nullable("IST_MENGE", 25, sql_decimal(done, 3)),
               d.nullable("STORNODATUM", 90, d.date("STORNODATUM", -90, 0)),
               d.nullable("ID_BB_T_AUFTRAGSSTATUS", 5, d.number("ID_BB_T_AUFTRAGSSTATUS", 1, 4))});
        });
    const int year = options_.today.year;
    fill("BB_MAP_KOPF", "JAHR,MONAT,ERSTELLT,ID_BB_AUFTRAG,ID_ACCESS_LEVELS", 1, 90,
         [&](std::int64_t, const RowDice& d) {
           return joined({sql_number(year - d.between("JAHR", 0, 1)), d.number("MONAT", 1, 12),
                          d.date("ERSTELLT", -400, 0),
                          d.number("ID_BB_AUFTRAG", 1, kOrderPositions), access(d)});
         });
  }

  void plans() {
    const int year = options_.today.year;
    fill("PLAN_KOPF", "BEZEICHNUNG,JAHR,ERSTELLT,FLAECHE,GENEHMIGT,ID_REVIER,ID_ACCESS_LEVELS", 1,
         50, [&](std::int64_t, const RowDice& d) {
           return joined({d.text("BEZEICHNUNG", kMeasures),
                          sql_number(year + 1 - d.between("JAHR", 0, 4)),
                          d.date("ERSTELLT", -1200, 0),
                          d.nullable("FLAECHE", 5, d.decimal("FLAECHE", 80, 24000, 2)),
                          d.bit("GENEHMIGT", 60), district(d), access(d)});
         });
    constexpr std::int64_t plans = 75;
    fill("BB_PLAN_KOPF",
         "NUMMER,BEZEICHNUNG,PLANDATUM,STORNODATUM,ABGESCHLOSSEN,ID_REVIER,ID_ACCESS_LEVELS", 1,
         plans, [](std::int64_t id, const RowDice& d) {
           return joined({sql_number(700 + id), d.text("BEZEICHNUNG", kMeasures),
                          d.date("PLANDATUM", -500, 200),
                          d.nullable("STORNODATUM", 88, d.date("STORNODATUM", -100, 0)),
                          d.bit("ABGESCHLOSSEN", 40), district(d), access(d)});
         });
    fill("BB_PLAN", "ID_BB_PLAN_KOPF,ID_PRODUKT,MENGE,KOSTEN", 1, 170,
         [](std::int64_t id, const RowDice& d) {
           return joined({sql_number((id - 1) % (plans - 5) + 1),
                          d.nullable("ID_PRODUKT", 6, d.number("ID_PRODUKT", 1, 6)),
                          d.decimal("MENGE", 1000, 900000, 3),
                          d.nullable("KOSTEN", 10, d.decimal("KOSTEN", 20000, 4000000, 2))});
         });
  }

  void labour() {
    fill("BB_LEISTUNGS_KOPF",
         "NUMMER,TAETIGKEIT,DATUM,STORNODATUM,STUNDEN,POSITIONEN,AKKORD,ID_PERSONAL,ID_REVIER,"
         "ID_ACCESS_LEVELS",
         1, 300, [](std::int64_t id, const RowDice& d) {
           return joined({sql_number(20000 + id), d.text("TAETIGKEIT", kActivities),
                          d.date("DATUM", -300, 0),
                          d.nullable("STORNODATUM", 92, d.date("STORNODATUM", -60, 0)),
                          d.decimal("STUNDEN", 50, 1100, 2), d.number("POSITIONEN", 1, 6),
                          d.bit("AKKORD", 30), d.nullable("ID_PERSONAL", 5, worker(d)), district(d),
                          access(d)});
         });
    fill("LOHNERFASSUNG_KOPF",
         "NUMMER,LOHNMONAT,TAGE,STUNDEN,BRUTTO,GEPRUEFT,ID_PERSONAL,ID_ACCESS_LEVELS", 1, 180,
         [](std::int64_t id, const RowDice& d) {
           return joined(
               {labelled("LE-", id), d.date("LOHNMONAT", -720, 0), d.number("TAGE", 1, 23),
                d.nullable("STUNDEN", 5, d.decimal("STUNDEN", 800, 18400, 2)),
                d.nullable("BRUTTO", 5, d.decimal("BRUTTO", 18000, 460000, 2)),
                d.bit("GEPRUEFT", 65), d.nullable("ID_PERSONAL", 5, worker(d)), access(d)});
         });
    fill("BB_WALDARBEITERLOHN_KOPF",
         "LOHNART,ABRECHNUNGSDATUM,TAGE,BETRAG,AUSGEZAHLT,ID_PERSONAL,ID_ACCESS_LEVELS", 1, 110,
         [](std::int64_t, const RowDice& d) {
           return joined({d.text("LOHNART", kWageTypes), d.date("ABRECHNUNGSDATUM", -500, 0),
                          d.number("TAGE", 1, 23),
                          d.nullable("BETRAG", 6, d.decimal("BETRAG", 9000, 380000, 2)),
                          d.bit("AUSGEZAHLT", 75), d.nullable("ID_PERSONAL", 5, worker(d)),
                          access(d)});
         });
  }

  void costs() {
    const int year = options_.today.year;
    fill("KLR",
         "KOSTENSTELLE,BEZEICHNUNG,BUCHUNGSDATUM,JAHR,BETRAG,GESPERRT,ID_REVIER,ID_ACCESS_LEVELS",
         1, kPostings, [&](std::int64_t, const RowDice& d) {
           return joined({d.text("KOSTENSTELLE", kCostCentres), d.text("BEZEICHNUNG", kCosts),
                          d.date("BUCHUNGSDATUM", -700, 0),
                          sql_number(year - d.between("JAHR", 0, 2)),
                          d.decimal("BETRAG", 2000, 1500000, 2), d.bit("GESPERRT", 15), district(d),
                          access(d)});
         });
    fill("BB_BELEGE_KOPF",
         "BELEGNUMMER,BELEGDATUM,POSITIONEN,BETRAG,GEBUCHT,ID_KLR,ID_ACCESS_LEVELS", 1, 150,
         [](std::int64_t id, const RowDice& d) {
           return joined({labelled("B-", id), d.date("BELEGDATUM", -600, 0),
                          d.number("POSITIONEN", 1, 8), d.decimal("BETRAG", 1500, 900000, 2),
                          d.bit("GEBUCHT", 70),
                          d.nullable("ID_KLR", 10, d.number("ID_KLR", 1, kPostings)), access(d)});
         });
    fill("SCH_BELEGE_KOPF",
         "BELEGNUMMER,BELEGDATUM,POSITIONEN,BETRAG,VERBUCHT,ID_PERSONAL,ID_ACCESS_LEVELS", 1, 110,
         [](std::int64_t id, const RowDice& d) {
           return joined({labelled("S-", id), d.date("BELEGDATUM", -600, 0),
                          d.number("POSITIONEN", 1, 8), d.decimal("BETRAG", 500, 120000, 2),
                          d.bit("VERBUCHT", 70), person(d, "ID_PERSONAL"), access(d)});
         });
    fill("BB_VERTEILSCHLUSSEL_KOPF",
         "NAME,GUELTIG_AB,ANTEILE,SUMME,AKTIV,ID_REVIER,ID_ACCESS_LEVELS", 1, 40,
         [](std::int64_t id, const RowDice& d) {
           return joined({labelled("Schlüssel ", id), d.date("GUELTIG_AB", -1500, 60),
                          d.number("ANTEILE", 2, 8),
                          d.nullable("SUMME", 10, d.decimal("SUMME", 10000, 100000, 2)),
                          d.bit("AKTIV", 80), district(d), access(d)});
         });
  }

  void machines() {
    fill("SCH_MASCHINENBUCH",
         "DATUM,EINSATZ,BETRIEBSSTUNDEN,LITER,WARTUNG,ID_MASCHINE,ID_ACCESS_LEVELS", 1, 150,
         [](std::int64_t, const RowDice& d) {
           return joined({d.date("DATUM", -400, 0),
                          d.nullable("EINSATZ", 10, d.text("EINSATZ", kActivities)),
                          d.decimal("BETRIEBSSTUNDEN", 5, 140, 1), d.number("LITER", 0, 260),
                          d.bit("WARTUNG", 12), d.number("ID_MASCHINE", 1, 8), access(d)});
         });
    fill(
        "BB_FAHRTENBUCH_KOPF", "DATUM,ZWECK,FAHRTEN,KILOMETER,PRIVAT,ID_MASCHINE,ID_ACCESS_LEVELS",
        1, 150, [](std::int64_t, const RowDice& d) {
          return joined({d.date("DATUM", -400, 0), d.nullable("ZWECK", 10, d.text("ZWECK", kTrips)),
                         d.number("FAHRTEN", 1, 6), d.decimal("KILOMETER", 15, 4100, 1),
                         d.bit("PRIVAT", 10), d.number("ID_MASCHINE", 6, 8), access(d)});
        });
  }

  void hunting() {
    const int year = options_.today.year;
    fill("BB_ABSCHUSSPLAN_KOPF",
         "JAGDJAHR,SOLL,ERFUELLT,EINGEREICHT,GENEHMIGT,ID_WILDART,ID_BB_JAGDBEZIRKE,ID_ACCESS_"
         "LEVELS",
         1, 60, [&](std::int64_t, const RowDice& d) {
           const std::int64_t start = year - d.between("JAGDJAHR", 0, 3);
           return joined({sql_text(std::to_string(start) + "/" + std::to_string((start + 1) % 100)),
                          d.number("SOLL", 1, 80),
                          d.nullable("ERFUELLT", 10, d.decimal("ERFUELLT", 0, 13000, 2)),
                          d.date("EINGEREICHT", -1200, 0), d.bit("GENEHMIGT", 70),
                          d.number("ID_WILDART", 1, 4),
                          d.nullable("ID_BB_JAGDBEZIRKE", 10, d.number("ID_BB_JAGDBEZIRKE", 1, 8)),
                          access(d)});
         });
    fill("BB_WILDURSPRUNGS",
         "SCHEINNUMMER,ERLEGT,LEBENSALTER,GEWICHT,TRICHINENPROBE,ID_WILDART,ID_SCHUETZE,"
         "ID_ACCESS_LEVELS",
         1, 150, [](std::int64_t id, const RowDice& d) {
           return joined({labelled("WU-", id), d.date("ERLEGT", -700, 0),
                          d.nullable("LEBENSALTER", 20, d.number("LEBENSALTER", 0, 12)),
                          d.nullable("GEWICHT", 5, d.decimal("GEWICHT", 80, 1400, 1)),
                          d.bit("TRICHINENPROBE", 35), d.number("ID_WILDART", 1, 4),
                          person(d, "ID_SCHUETZE"), access(d)});
         });
    fill("BB_STRECKE_NIEDER",
         "DATUM,STUECK,GEWICHT,GESELLSCHAFTSJAGD,BEMERKUNG,ID_WILDART,ID_BB_JAGDBEZIRKE,"
         "ID_ACCESS_LEVELS",
         1, 75, [](std::int64_t, const RowDice& d) {
           return joined({d.date("DATUM", -700, 0), d.number("STUECK", 1, 45),
                          d.nullable("GEWICHT", 15, d.decimal("GEWICHT", 8, 900, 1)),
                          d.bit("GESELLSCHAFTSJAGD", 40),
                          d.nullable("BEMERKUNG", 30, d.text("BEMERKUNG", kHunts)),
                          d.number("ID_WILDART", 5, 9),
                          d.nullable("ID_BB_JAGDBEZIRKE", 10, d.number("ID_BB_JAGDBEZIRKE", 1, 8)),
                          access(d)});
         });
  }

  Connection& connection_;
  const ForestOptions& options_;
};

// Undoes what was done since it was made, unless commit() was called.
class Transaction {
 public:
  explicit Transaction(Connection& connection) : connection_(connection) {
    connection_.execute("BEGIN TRANSACTION");
  }
  ~Transaction() {
    if (committed_) return;
    try {
      connection_.execute("ROLLBACK TRANSACTION");
    } catch (const Error&) {
      // The failure that led here is on its way to the caller and says more than this one.
    }
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit() {
    connection_.execute("COMMIT TRANSACTION");
    committed_ = true;
  }

 private:
  Connection& connection_;
  bool committed_ = false;
};

}  // namespace

void build_forest_database(Connection& connection, const ForestOptions& options) {
  if (options.lots < 1) {
    throw InvalidArgument("The sample database needs at least one lot, not " +
                          std::to_string(options.lots) + ".");
  }
  Transaction transaction(connection);
  for (const ForestScript& script : forest_scripts()) {
    run_script(connection, script.name, script.text);
  }
  Generator(connection, options).run();
  transaction.commit();
}

}  // namespace kestrova
