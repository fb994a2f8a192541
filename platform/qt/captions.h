// The captions that the suite's text service does not number: German and English, by key.
#pragma once

#include <QLocale>
#include <QString>
#include <string_view>

#include "platform/qt/qt_settings.h"

namespace kestrova::qt {

class Captions {
 public:
  explicit Captions(const QtSettings& settings) : settings_(settings) {}

  // "&" marks the mnemonic. Raises InvalidArgument for a key that is not in the table.
  QString operator()(std::string_view key) const;
  // Without the mnemonic.
  QString plain(std::string_view key) const;

  bool knows(std::string_view key) const;

  // How numbers are written in the captions' language.
  QLocale locale() const;

 private:
  bool is_german() const { return settings_.language == "DE"; }

  const QtSettings& settings_;
};

QString to_qt(std::string_view text);
std::string from_qt(const QString& text);

}  // namespace kestrova::qt
