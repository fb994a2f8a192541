#include "editor/editor_texts.h"

#include <array>

#include "platform/text.h"

namespace kestrova {
namespace {

struct TextRow {
  EditorText text;
  std::string_view german;
  std::string_view english;
};

// %1 is the subject, %2 the reason.
// clang-format off
constexpr std::array kTexts = {
    TextRow{EditorText::kModelChanged, "Das Modell '%1' ist geändert worden, seit es hier geladen oder gespeichert wurde. Soll es trotzdem überschrieben werden?", "The model '%1' has been changed since it was loaded or saved here. Shall it be overwritten all the same?"},
    TextRow{EditorText::kModelUnreadable, "Das Modell '%1' kann nicht geladen werden; die Liste ist leer. Grund: %2", "The model '%1' cannot be loaded; the list is empty. Reason: %2"},
    TextRow{EditorText::kContractUnreadable, "Die Selektion des Vertrags kann nicht geladen werden; die Liste ist leer. Grund: %2", "The selection of the contract cannot be loaded; the list is empty. Reason: %2"},
    TextRow{EditorText::kContractIsKept, "Die Selektion des Vertrags konnte nicht geladen werden und bleibt deshalb, wie sie ist. Soll sie leer werden, erst 'Neu' drücken, dann 'OK'.", "The selection of the contract could not be loaded and therefore stays as it is. To empty it, press 'New' first, then 'OK'."},
};
// clang-format on

constexpr bool rows_are_in_order() {
  for (std::size_t i = 0; i < kTexts.size(); ++i) {
    if (kTexts[i].text != static_cast<EditorText>(i)) return false;
  }
  return true;
}
static_assert(rows_are_in_order());

}  // namespace

std::string editor_text(const KesVar& context, EditorText text, std::string_view subject,
                        std::string_view reason) {
  const TextRow& row = kTexts[static_cast<std::size_t>(text)];
  const bool is_german = text::equal_ignoring_case(context.strLanguage, "DE");
  // Only the wording is searched for places: what stands in them may read "%1" itself.
  std::string message;
  bool is_place = false;
  for (const std::string_view piece : text::split(is_german ? row.german : row.english, '%')) {
    if (is_place) message += piece.starts_with('1') ? subject : reason;
    message += piece.substr(is_place ? 1 : 0);
    is_place = true;
  }
  return message;
}

}  // namespace kestrova
