#include "platform/qt/captions.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/error.h"

namespace kestrova::qt {
namespace {

struct CaptionRow {
  std::string_view key;  // the control, with ".tip" its tooltip, with ".name" its spoken name
  std::int32_t number;   // the suite's text that goes before the two others; 0 for none
  std::string_view german;
  std::string_view english;
};

// Mnemonics are unique within a language; tooltips of controls with a shortcut get it appended.
// clang-format off
constexpr std::array kCaptions = {
    CaptionRow{"Frame1", 0, "Kriterium", "Criterion"},
    CaptionRow{"cboField", 0, "&Feld", "&Field"},
    CaptionRow{"cboField.tip", 0, "Feld, nach dem ausgewählt wird", "Field to select by"},
    CaptionRow{"cboOperator", 0, "O&perator", "O&perator"},
    CaptionRow{"cboOperator.tip", 0, "Vergleich des Feldes mit dem Wert", "How the field is compared with the value"},
    CaptionRow{"cboValue", 0, "&Wert", "&Value"},
    CaptionRow{"cboValue.tip", 0, "Wert aus der Liste oder getippt; bei Datumsfeldern auch eine Zahl von Tagen ab heute", "Value from the list or typed; for dates also a number of days from today"},
    CaptionRow{"btnPlus", 0, "", ""},
    CaptionRow{"btnPlus.name", 0, "Wert in die Liste aufnehmen", "Add value to the list"},
    CaptionRow{"btnPlus.tip", 0, "Nimmt den Wert in die Werteliste von IN auf", "Adds the value to the value list of IN"},
    CaptionRow{"btnMinus", 0, "", ""},
    CaptionRow{"btnMinus.name", 0, "Wert aus der Liste entfernen", "Remove value from the list"},
    CaptionRow{"btnMinus.tip", 0, "Entfernt den Wert aus der Werteliste von IN", "Removes the value from the value list of IN"},
    CaptionRow{"refused.semicolon", 0, "Ein Wert kann kein Semikolon enthalten, denn es trennt die gespeicherten Kriterien. Mit dem Operator LIKE steht _ für ein beliebiges Zeichen.", "A value cannot hold a semicolon, because it separates the stored criteria. With the operator LIKE, _ stands for any character."},
    CaptionRow{"refused.apostrophe", 0, "Ein Apostroph innerhalb des Wertes muss doppelt getippt werden.", "An apostrophe inside the value must be typed twice."},
    CaptionRow{"refused.closed", 0, "Im Wert ist ein Anführungszeichen oder eine Klammer nicht geschlossen, oder er enthält einen Kommentar (-- oder /*) oder ein unsichtbares Zeichen.", "A quote or bracket in the value is not closed, or the value holds a comment (-- or /*) or an invisible character."},
    CaptionRow{"refused.operator", 0, "Ein =, < oder > im Wert würde als Operator gelesen. Der Operator = nimmt solche Werte, LIKE mit _ an ihrer Stelle.", "A =, < or > inside the value would be read as the operator. The operator = takes such values, LIKE does with _ in their place."},
    CaptionRow{"refused.list", 0, "Diese Werteliste würde beim Laden an einer Klammer abgeschnitten. Statt der Liste mehrere Zeilen einfügen, mit ODER dazwischen.", "This list of values would be cut at a parenthesis when it is loaded. Insert several lines with OR between them instead of the list."},
    CaptionRow{"refused.offer", 0, "„%1“ verwenden", "Use “%1”"},
    CaptionRow{"Formula", 0, "Fo&rmel", "Form&ula"},
    CaptionRow{"Formula.tip", 0, "Die Zeile, wie sie eingefügt wird", "The line as it will be inserted"},
    CaptionRow{"btnInsert", 0, "&Einfügen", "&Insert"},
    CaptionRow{"btnInsert.tip", 0, "Fügt die Formel hinter der gewählten Zeile ein", "Inserts the formula behind the selected line"},
    CaptionRow{"btnReplace", 0, "Er&setzen", "&Replace"},
    CaptionRow{"btnReplace.tip", 0, "Ersetzt die gewählte Zeile durch die Formel", "Replaces the selected line by the formula"},
    CaptionRow{"btnDelete", 0, "&Löschen", "D&elete"},
    CaptionRow{"btnDelete.name", 0, "Zeile löschen", "Delete line"},
    CaptionRow{"btnDelete.tip", 0, "Löscht die gewählte Zeile", "Deletes the selected line"},
    CaptionRow{"btnOr", 3441, "&ODER", "&OR"},
    CaptionRow{"btnOr.name", 0, "ODER-Zeile einfügen", "Insert OR line"},
    CaptionRow{"btnOr.tip", 0, "Beginnt hinter der gewählten Zeile eine neue Gruppe", "Begins a new group behind the selected line"},
    CaptionRow{"ListCriteria", 0, "&Kriterien", "Cri&teria"},
    CaptionRow{"ListCriteria.tip", 0, "Zeilen lassen sich mit der Maus verschieben", "Lines can be moved with the mouse"},
    CaptionRow{"btnFirst", 0, "Erste", "First"},
    CaptionRow{"btnFirst.name", 0, "Erste Zeile", "First line"},
    CaptionRow{"btnFirst.tip", 0, "Wählt die erste Zeile", "Selects the first line"},
    CaptionRow{"btnPrev", 0, "Vorige", "Previous"},
    CaptionRow{"btnPrev.name", 0, "Vorige Zeile", "Previous line"},
    CaptionRow{"btnPrev.tip", 0, "Wählt die vorige Zeile", "Selects the previous line"},
    CaptionRow{"btnNext", 0, "Nächste", "Next"},
    CaptionRow{"btnNext.name", 0, "Nächste Zeile", "Next line"},
    CaptionRow{"btnNext.tip", 0, "Wählt die nächste Zeile", "Selects the next line"},
    CaptionRow{"btnLast", 0, "Letzte", "Last"},
    CaptionRow{"btnLast.name", 0, "Letzte Zeile", "Last line"},
    CaptionRow{"btnLast.tip", 0, "Wählt die letzte Zeile", "Selects the last line"},
    CaptionRow{"cmdUp", 0, "Nach oben", "Move up"},
    CaptionRow{"cmdUp.name", 0, "Zeile nach oben", "Move line up"},
    CaptionRow{"cmdUp.tip", 0, "Schiebt die gewählte Zeile nach oben", "Moves the selected line up"},
    CaptionRow{"cmdDown", 0, "Nach unten", "Move down"},
    CaptionRow{"cmdDown.name", 0, "Zeile nach unten", "Move line down"},
    CaptionRow{"cmdDown.tip", 0, "Schiebt die gewählte Zeile nach unten", "Moves the selected line down"},
    CaptionRow{"btnNew", 0, "&Neu", "&New"},
    CaptionRow{"btnNew.name", 0, "Neue Selektion", "New selection"},
    CaptionRow{"btnNew.tip", 0, "Leert die Liste der Kriterien", "Empties the list of criteria"},
    CaptionRow{"Frame4", 0, "&Modelle", "&Models"},
    CaptionRow{"Model", 0, "Modelle", "Models"},
    CaptionRow{"Model.tip", 0, "Doppelklick oder Eingabetaste lädt das Modell", "Double click or Enter loads the model"},
    CaptionRow{"txtStandard", 0, "Standardmodell", "Standard model"},
    CaptionRow{"txtStandard.tip", 0, "Dieses Modell wird beim Öffnen geladen", "This model is loaded on opening"},
    CaptionRow{"chkStandard", 0, "S&tandard", "Stan&dard"},
    CaptionRow{"chkStandard.tip", 0, "Macht das gewählte Modell zum Standard", "Makes the selected model the standard"},
    CaptionRow{"Check1", 0, "&Gesperrt", "Loc&ked"},
    CaptionRow{"Check1.tip", 0, "Sperrt das gewählte Modell gegen Änderungen", "Locks the selected model against changes"},
    CaptionRow{"chkAL", 0, "&Zugriffsebene", "A&ccess level"},
    CaptionRow{"chkAL.tip", 0, "Bindet das gewählte Modell an die eigene Zugriffsebene", "Binds the selected model to your access level"},
    CaptionRow{"btnSaveModelle", 0, "Spei&chern", "&Save"},
    CaptionRow{"btnSaveModelle.name", 0, "Modell speichern", "Save model"},
    CaptionRow{"btnSaveModelle.tip", 0, "Speichert die Kriterien im gewählten Modell", "Saves the criteria in the selected model"},
    CaptionRow{"btnSaveModelleAs", 0, "Speichern &unter…", "Save &as…"},
    CaptionRow{"btnSaveModelleAs.name", 0, "Modell speichern unter", "Save model as"},
    CaptionRow{"btnSaveModelleAs.tip", 0, "Speichert die Kriterien unter einem neuen Namen", "Saves the criteria under a new name"},
    CaptionRow{"btnDeleteModelle", 0, "Lösc&hen", "De&lete"},
    CaptionRow{"btnDeleteModelle.name", 0, "Modell löschen", "Delete model"},
    CaptionRow{"btnDeleteModelle.tip", 0, "Löscht das gewählte Modell", "Deletes the selected model"},
    CaptionRow{"btnOk", 0, "OK", "OK"},
    CaptionRow{"btnOk.tip", 0, "Übernimmt die Selektion", "Applies the selection"},
    CaptionRow{"btnCancel", 0, "A&bbrechen", "Cancel"},
    CaptionRow{"btnCancel.tip", 0, "Schließt ohne Ergebnis", "Closes without a result"},
    CaptionRow{"rows", 0, "Datensätze", "Records"},
    CaptionRow{"rows.counting", 0, "Datensätze werden gezählt …", "Counting records …"},
    CaptionRow{"rows.one", 0, "1 Datensatz", "1 record"},
    CaptionRow{"rows.many", 0, "%1 Datensätze", "%1 records"},
    CaptionRow{"rows.more", 0, "mindestens %1 Datensätze", "at least %1 records"},
    CaptionRow{"rows.slow", 0, "Das Zählen dauert zu lange", "Counting takes too long"},
    CaptionRow{"error", 0, "Das konnte nicht ausgeführt werden.", "This could not be done."},
    CaptionRow{"box.cancel", 0, "Abbrechen", "Cancel"},
    CaptionRow{"box.abort", 0, "&Beenden", "&Abort"},
    CaptionRow{"box.retry", 0, "&Wiederholen", "&Retry"},
    CaptionRow{"box.ignore", 0, "&Ignorieren", "&Ignore"},
    CaptionRow{"box.yes", 0, "&Ja", "&Yes"},
    CaptionRow{"box.no", 0, "&Nein", "&No"},
};
// clang-format on

constexpr bool keys_are_distinct() {
  for (std::size_t i = 0; i < kCaptions.size(); ++i) {
    for (std::size_t j = i + 1; j < kCaptions.size(); ++j) {
      if (kCaptions[i].key == kCaptions[j].key) return false;
    }
  }
  return true;
}
static_assert(keys_are_distinct());

const CaptionRow* find_row(std::string_view key) {
  const auto row = std::find_if(kCaptions.begin(), kCaptions.end(),
                                [key](const CaptionRow& r) { return r.key == key; });
  return row == kCaptions.end() ? nullptr : &*row;
}

// The suite's texts have no mnemonic: the built-in one, when its letter is in the text.
QString with_mnemonic(QString text, const QString& built_in) {
  const qsizetype mark = built_in.indexOf('&');
  if (mark == -1 || text.contains('&')) return text;
  const qsizetype at = text.indexOf(built_in.at(mark + 1), 0, Qt::CaseInsensitive);
  return at == -1 ? text : text.insert(at, '&');
}

}  // namespace

QString to_qt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string from_qt(const QString& text) { return text.toStdString(); }

QString Captions::operator()(std::string_view key) const {
  const CaptionRow* const row = find_row(key);
  if (row == nullptr) throw InvalidArgument("There is no caption '" + std::string(key) + "'.");
  const QString built_in = to_qt(is_german() ? row->german : row->english);
  const auto of_host = settings_.caption_numbers.find(std::string(key));
  const std::int32_t number =
      of_host == settings_.caption_numbers.end() ? row->number : of_host->second;
  if (number != 0 && settings_.text) {
    if (const std::string text = settings_.text(number); !text.empty()) {
      return with_mnemonic(to_qt(text), built_in);
    }
  }
  return built_in;
}

QString Captions::plain(std::string_view key) const {
  QString text = (*this)(key);
  return text.remove('&');
}

bool Captions::knows(std::string_view key) const { return find_row(key) != nullptr; }

QLocale Captions::locale() const {
  return QLocale(is_german() ? QLocale::German : QLocale::English);
}

}  // namespace kestrova::qt
