#include "platform/qt/entry_list_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTimerEvent>
#include <algorithm>

#include "platform/qt/captions.h"

namespace kestrova::qt {
namespace {

constexpr int kScrollInterval = 80;  // milliseconds per row when dragging beyond the edge

// The separator without its ornaments, "=== ODER ===".
QString separator_caption(const QString& text) {
  QString caption = text;
  return caption.remove('=').trimmed();
}

// Rows with air between them, and separators as a word between two lines.
class RowDelegate final : public QStyledItemDelegate {
 public:
  explicit RowDelegate(const EntryListView& list) : list_(list) {}

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(option.fontMetrics.height() + option.fontMetrics.height() / 2);
    return size;
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    if (!list_.is_separator(index.row())) {
      QStyledItemDelegate::paint(painter, option, index);
      return;
    }
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    row.text.clear();
    row.rect.setWidth(std::max(row.rect.width(), list_.viewport()->width() - row.rect.left()));
    if (!row.state.testFlag(QStyle::State_Selected)) {
      row.backgroundBrush = row.palette.alternateBase();
    }
    list_.style()->drawControl(QStyle::CE_ItemViewItem, &row, painter, &list_);
    draw_word(*painter, row, separator_caption(index.data().toString()));
  }

 private:
  void draw_word(QPainter& painter, const QStyleOptionViewItem& row, const QString& word) const {
    const bool selected = row.state.testFlag(QStyle::State_Selected);
    const bool enabled = row.state.testFlag(QStyle::State_Enabled);
    painter.save();
    painter.setPen(row.palette.color(enabled ? QPalette::Active : QPalette::Disabled,
                                     selected ? QPalette::HighlightedText : QPalette::Text));
    QFont bold = row.font;
    bold.setBold(true);
    painter.setFont(bold);
    const QRect place(row.rect.left(), row.rect.top(), list_.viewport()->width(),
                      row.rect.height());
    painter.drawText(place, Qt::AlignCenter, word);
    const int gap = painter.fontMetrics().horizontalAdvance("MM");
    const int half = painter.fontMetrics().horizontalAdvance(word) / 2 + gap / 2;
    const int y = place.center().y();
    const int middle = place.center().x();
    painter.drawLine(place.left() + gap / 2, y, middle - half, y);
    painter.drawLine(middle + half, y, place.right() - gap / 2, y);
    painter.restore();
  }

  const EntryListView& list_;
};

}  // namespace

EntryListView::EntryListView() {
  auto* const delegate = new RowDelegate(*this);
  delegate->setParent(this);
  setItemDelegate(delegate);
  setUniformItemSizes(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setTextElideMode(Qt::ElideNone);
  connect(this, &QListWidget::currentRowChanged, this, [this](int row) {
    if (!showing_ && row != -1) on_pick(row);
  });
}

bool EntryListView::is_separator(int row) const {
  return !separator_.isEmpty() && item(row) != nullptr && item(row)->text() == separator_;
}

void EntryListView::show_entries(const std::vector<ListEntry>& entries, int selected) {
  showing_ = true;
  const int rows = static_cast<int>(entries.size());
  while (count() > rows) delete takeItem(count() - 1);
  for (int i = 0; i < rows; ++i) {
    const QString text = to_qt(entries[static_cast<std::size_t>(i)].text);
    if (i == count()) addItem(text);
    if (item(i)->text() != text) item(i)->setText(text);
    item(i)->setToolTip(text);
  }
  setCurrentRow(selected,
                selected == -1 ? QItemSelectionModel::Clear : QItemSelectionModel::ClearAndSelect);
  if (selected == -1) clearSelection();
  showing_ = false;
}

int EntryListView::top_row() const { return std::max(0, indexAt(QPoint(1, 1)).row()); }

int EntryListView::top_of_rows() const {
  return count() == 0 ? 0 : visualItemRect(item(top_row())).top();
}

int EntryListView::row_height() const {
  return count() == 0 ? 1 : visualItemRect(item(0)).height();
}

int EntryListView::target_row(int y) const {
  return std::min(top_row() + std::max(0, y - top_of_rows()) / row_height(), count() - 1);
}

void EntryListView::mousePressEvent(QMouseEvent* event) {
  const int row = indexAt(event->pos()).row();
  const bool is_left = event->button() == Qt::LeftButton;
  pressed_ = is_left && row != -1;
  press_ = event->pos();
  const bool was_current = row != -1 && row == currentRow();
  QListWidget::mousePressEvent(event);
  if (is_left && was_current) on_pick(row);
}

// With the left button down the rows are dragged; the pointer does not select along its way.
void EntryListView::mouseMoveEvent(QMouseEvent* event) {
  if (!event->buttons().testFlag(Qt::LeftButton)) {
    QListWidget::mouseMoveEvent(event);
    return;
  }
  pointer_ = event->pos();
  const bool is_far = (pointer_ - press_).manhattanLength() >= QApplication::startDragDistance();
  if (pressed_ && !dragging_ && is_far && on_drag && on_drag()) begin_drag();
  if (dragging_) viewport()->update();
}

void EntryListView::begin_drag() {
  dragging_ = true;
  viewport()->setCursor(Qt::ClosedHandCursor);
  scrolling_.start(kScrollInterval, this);
}

void EntryListView::end_drag() {
  dragging_ = false;
  pressed_ = false;
  viewport()->unsetCursor();
  scrolling_.stop();
  viewport()->update();
}

void EntryListView::mouseReleaseEvent(QMouseEvent* event) {
  if (!dragging_) {
    pressed_ = false;
    QListWidget::mouseReleaseEvent(event);
    return;
  }
  end_drag();
  QListWidget::mouseReleaseEvent(event);
  if (viewport()->rect().contains(event->pos())) {
    on_drop(event->pos());
  } else {
    on_drag_cancelled();
  }
}

void EntryListView::mouseDoubleClickEvent(QMouseEvent* event) {
  const bool is_on_row = indexAt(event->pos()).isValid();
  if (event->button() == Qt::LeftButton && is_on_row) on_double_click();
}

void EntryListView::keyPressEvent(QKeyEvent* event) {
  if (dragging_ && event->key() == Qt::Key_Escape) {
    end_drag();
    on_drag_cancelled();
    return;
  }
  const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (is_enter && enter_double_clicks && event->modifiers() == Qt::NoModifier) {
    on_double_click();
    return;
  }
  // Alt belongs to the window's shortcuts, Enter and Escape to its buttons.
  if (is_enter || event->key() == Qt::Key_Escape || event->modifiers().testFlag(Qt::AltModifier)) {
    event->ignore();
    return;
  }
  QListWidget::keyPressEvent(event);
}

// Without a current row the view would take the first one, as if the user had picked it.
void EntryListView::focusInEvent(QFocusEvent* event) {
  const int row = currentRow();
  showing_ = true;
  QListWidget::focusInEvent(event);
  if (row == -1) setCurrentRow(-1);
  showing_ = false;
}

void EntryListView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != scrolling_.timerId()) {
    QListWidget::timerEvent(event);
    return;
  }
  QScrollBar& bar = *verticalScrollBar();
  if (pointer_.y() < row_height() / 2) bar.setValue(bar.value() - 1);
  if (pointer_.y() > viewport()->height() - row_height() / 2) bar.setValue(bar.value() + 1);
  viewport()->update();
}

void EntryListView::paintEvent(QPaintEvent* event) {
  QListWidget::paintEvent(event);
  if (!dragging_ || count() == 0) return;
  const int target = target_row(pointer_.y());
  const QRect row = visualItemRect(item(target));
  const int y = target > currentRow() ? row.bottom() : row.top();
  QPainter painter(viewport());
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter.drawLine(0, y, viewport()->width(), y);
}

}  // namespace kestrova::qt
