// What a host may choose about the dialogs.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

class QWidget;

namespace kestrova {

class RowCounter;

struct QtSettings {
  // The window over which the dialogs open; nullptr: over the application's active one. It must
  // live as long as the dialogs are used.
  QWidget* parent = nullptr;

  // Language of the captions: German for "DE", English for every other.
  std::string language = "DE";

  // The suite's text with that number in the user's language, "" for none. Absent: the built-in
  // captions.
  std::function<std::string(std::int32_t number)> text{};

  // Texts of the suite that go before the built-in captions, by the key of the caption
  // (platform/qt/captions.cpp), for further languages or the host's own wording.
  std::map<std::string, std::int32_t> caption_numbers{};

  // Name under which the window's size and the width of its columns are kept in the user's
  // settings; "" keeps them for as long as the QtUserInterface lives.
  std::string application{};

  // Counts what the lines select, for a line below the list; nullptr: no such line.
  std::shared_ptr<RowCounter> row_counter{};
};

}  // namespace kestrova
