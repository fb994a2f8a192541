// The line below the list: how many records its lines select, or why they select none.
//
// Counting begins when the user pauses and runs in slices too short to be felt; the next action of
// the user breaks it off.
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>
#include <functional>
#include <string_view>

#include "platform/qt/captions.h"
#include "platform/row_counter.h"

namespace kestrova::qt {

class RowCountLine final : public QWidget {
 public:
  RowCountLine(RowCounter& counter, const Captions& captions);
  ~RowCountLine() override;

  // The user is about to act: whatever is being counted gives the connection free.
  void interrupt();
  // The user has acted; the lines may be others.
  void resume(bool lines_changed);

  const QString& text() const { return text_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void timerEvent(QTimerEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void begin();
  void advance();
  void follow(const std::function<RowCount()>& step);
  QString number(std::string_view caption) const;
  QString so_far() const;
  void finish(const QString& text);
  void show_text(const QString& text);

  RowCounter& counter_;
  const Captions& captions_;
  QBasicTimer pause_;    // runs until the user has paused long enough
  QBasicTimer slices_;   // runs while counting
  QElapsedTimer spent_;  // since counting began
  bool is_due_ = true;   // the lines have not been counted
  QString text_;
};

}  // namespace kestrova::qt
