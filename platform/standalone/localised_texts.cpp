#include "platform/standalone/localised_texts.h"

#include <algorithm>

#include "platform/error.h"

namespace kestrova::standalone {
namespace {

// The code becomes part of column names.
void check_language(const std::string& language) {
  const bool is_plain = std::all_of(language.begin(), language.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  });
  if (language.empty() || !is_plain) {
    throw InvalidArgument("'" + language + "' is no language code.");
  }
}

}  // namespace

std::string LocalisedTexts::GetText(std::int32_t number, const KesVar& context) {
  const Texts& texts = texts_of(context.strLanguage);
  const auto found = texts.find(number);
  return found == texts.end() ? std::string() : found->second;
}

const LocalisedTexts::Texts& LocalisedTexts::texts_of(const std::string& language) {
  const auto known = languages_.find(language);
  if (known != languages_.end()) return known->second;
  check_language(language);
  // Brackets, because a language code can be a key word ("IS").
  const auto rows = connection_->open(
      "SELECT ID_STRING, [" + language + "], [CUSTOM_" + language + "] FROM STRINGS",
      CursorType::kForwardOnly, LockType::kReadOnly);
  Texts texts;
  for (; !rows->eof(); rows->move_next()) {
    const std::string custom = rows->value(2).text_or_empty();
    texts.emplace(rows->value(0).integer(),
                  custom.empty() ? rows->value(1).text_or_empty() : custom);
  }
  return languages_.emplace(language, std::move(texts)).first->second;
}

}  // namespace kestrova::standalone
