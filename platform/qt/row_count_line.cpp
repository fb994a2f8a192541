#include "platform/qt/row_count_line.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QTimerEvent>
#include <chrono>

#include "platform/error.h"

namespace kestrova::qt {
namespace {

using namespace std::chrono_literals;

constexpr auto kPause = 400ms;
constexpr auto kSlice = 15ms;
constexpr auto kBudget = 2000ms;

}  // namespace

RowCountLine::RowCountLine(RowCounter& counter, const Captions& captions)
    : counter_(counter), captions_(captions) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  setAccessibleName(captions_.plain("rows"));
  resume(true);
}

RowCountLine::~RowCountLine() { counter_.stop(); }

void RowCountLine::interrupt() {
  pause_.stop();
  if (!slices_.isActive()) return;
  slices_.stop();
  counter_.stop();
}

void RowCountLine::resume(bool lines_changed) {
  if (lines_changed) {
    is_due_ = true;
    show_text({});
  }
  if (is_due_) pause_.start(static_cast<int>(kPause.count()), this);
}

void RowCountLine::timerEvent(QTimerEvent* event) {
  if (event->timerId() == pause_.timerId()) {
    pause_.stop();
    begin();
  } else if (event->timerId() == slices_.timerId()) {
    advance();
  } else {
    QWidget::timerEvent(event);
  }
}

void RowCountLine::begin() {
  follow([this] {
    spent_.start();
    return counter_.begin();
  });
  if (!is_due_) return;
  show_text(captions_("rows.counting"));
  slices_.start(0, this);
}

void RowCountLine::advance() {
  follow([this] { return counter_.advance(kSlice); });
  if (is_due_ && spent_.elapsed() > kBudget.count()) finish(so_far());
}

// Takes a step and shows what came of it, unless counting goes on.
void RowCountLine::follow(const std::function<RowCount()>& step) {
  try {
    switch (step()) {
      case RowCount::kCounting:
        return;
      case RowCount::kNone:
        return finish({});
      case RowCount::kAll:
        return finish(counter_.rows() == 1 ? captions_("rows.one") : number("rows.many"));
      case RowCount::kMore:
        return finish(so_far());
    }
  } catch (const std::exception& error) {
    finish(to_qt(error.what()));
  }
}

QString RowCountLine::so_far() const {
  return counter_.rows() == 0 ? captions_("rows.slow") : number("rows.more");
}

QString RowCountLine::number(std::string_view caption) const {
  return captions_(caption).arg(
      captions_.locale().toString(static_cast<qlonglong>(counter_.rows())));
}

void RowCountLine::finish(const QString& text) {
  is_due_ = false;
  slices_.stop();
  counter_.stop();
  show_text(text);
}

void RowCountLine::show_text(const QString& text) {
  text_ = text.simplified();
  setToolTip(text);
  setAccessibleDescription(text_);
  update();
}

QSize RowCountLine::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 40, fontMetrics().height()};
}

QSize RowCountLine::minimumSizeHint() const { return {0, fontMetrics().height()}; }

void RowCountLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        fontMetrics().elidedText(text_, Qt::ElideRight, width()),
                        QPalette::WindowText);
}

}  // namespace kestrova::qt
