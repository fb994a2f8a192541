// The texts of the table STRINGS, one language after another as it is asked for.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "platform/standalone/catalogue.h"
#include "platform/suite.h"

namespace kestrova::standalone {

// STRINGS has two columns for each language: its own text ("DE") and the customer's ("CUSTOM_DE"),
// which goes before unless it is empty. A language is read whole when it is first asked for and
// kept.
class LocalisedTexts : public LocTexts {
 public:
  explicit LocalisedTexts(std::shared_ptr<Connection> connection)
      : connection_(std::move(connection)) {}

  // Raises InvalidArgument for a language code that is empty or holds anything but letters, digits
  // and underscores, and the database's own error for a language without columns.
  std::string GetText(std::int32_t number, const KesVar& context) override;

 private:
  using Texts = std::unordered_map<std::int32_t, std::string>;

  const Texts& texts_of(const std::string& language);

  std::shared_ptr<Connection> connection_;
  TextMap<Texts> languages_;
};

}  // namespace kestrova::standalone
