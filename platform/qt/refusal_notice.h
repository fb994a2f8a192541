// Why the last Insert or Replace did not take the line, below the pickers: a sentence, a mark in
// the value box, and a button for the text that would be taken.
#pragma once

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <functional>
#include <string>

#include "platform/qt/captions.h"
#include "platform/qt/value_edit.h"
#include "platform/selection_dialog.h"

namespace kestrova::qt {

class RefusalNotice final : public QWidget {
 public:
  // Hidden until a refusal is shown. It marks the value box.
  RefusalNotice(const Captions& captions, ValueEdit& value);

  // Shows why a line was refused; hides for one that was not.
  void show_refusal(const RefusedLine& refused);

  // The user takes the offered text.
  std::function<void(const std::string& offered)> on_take;

  QPushButton& offer() const { return offer_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void make_room();
  void show_offer(const std::string& offered);

  const Captions& captions_;
  ValueEdit& value_;
  QLabel& sentence_;
  QPushButton& offer_;
  QAction& mark_;
  std::string offered_;
};

}  // namespace kestrova::qt
