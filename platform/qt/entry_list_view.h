// A list whose entries a user picks and double-clicks, and whose rows can be dragged within it.
#pragma once

#include <QBasicTimer>
#include <QListWidget>
#include <functional>
#include <vector>

#include "platform/controls.h"

namespace kestrova::qt {

class EntryListView final : public QListWidget {
 public:
  EntryListView();

  // The user picks a row, also the one that is selected already; double-clicks one.
  std::function<void(int row)> on_pick;
  std::function<void()> on_double_click;
  // Whether Enter is a double click, too.
  bool enter_double_clicks = false;

  // The user drags the selected row. Both are absent in a list whose rows stay in their order.
  // Whether the drag may begin, and the row dropped at this point of the list, or nowhere.
  std::function<bool()> on_drag;
  std::function<void(QPoint position)> on_drop;
  std::function<void()> on_drag_cancelled;

  // The entry with this text separates groups.
  void set_separator(const QString& text) { separator_ = text; }
  bool is_separator(int row) const;

  // Shows entries and selection without a word to the handlers.
  void show_entries(const std::vector<ListEntry>& entries, int selected);

  // First visible row, where it begins, and the height of a row.
  int top_row() const;
  int top_of_rows() const;
  int row_height() const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void begin_drag();
  void end_drag();
  // The row on which a drop at this height lands.
  int target_row(int y) const;

  QString separator_;
  bool showing_ = false;  // entries are being shown, not picked
  bool pressed_ = false;  // the left button went down on a row
  bool dragging_ = false;
  QPoint press_;
  QPoint pointer_;
  QBasicTimer scrolling_;
};

}  // namespace kestrova::qt
