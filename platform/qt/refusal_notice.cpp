#include "platform/qt/refusal_notice.h"

#include <QAccessible>
#include <QStyle>
#include <QVBoxLayout>
#include <string_view>

namespace kestrova::qt {
namespace {

constexpr int kOfferedWidth = 30;  // characters of a long text that the button shows

// The caption that says it; "" for a line that was taken.
std::string_view sentence_key(LineRefusal why) {
  switch (why) {
    case LineRefusal::kNone:
      break;
    case LineRefusal::kSemicolon:
      return "refused.semicolon";
    case LineRefusal::kApostrophe:
      return "refused.apostrophe";
    case LineRefusal::kNotClosed:
      return "refused.closed";
    case LineRefusal::kOperatorInside:
      return "refused.operator";
    case LineRefusal::kListCut:
      return "refused.list";
  }
  return {};
}

}  // namespace

RefusalNotice::RefusalNotice(const Captions& captions, ValueEdit& value)
    : captions_(captions),
      value_(value),
      sentence_(*new QLabel),
      offer_(*new QPushButton),
      mark_(*value.addAction(style()->standardIcon(QStyle::SP_MessageBoxWarning),
                             QLineEdit::TrailingPosition)) {
  sentence_.setObjectName("refusal");
  sentence_.setTextFormat(Qt::PlainText);
  sentence_.setWordWrap(true);
  offer_.setObjectName("refusal.offer");
  offer_.setAutoDefault(false);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(&sentence_);
  rows->addWidget(&offer_, 0, Qt::AlignLeft);
  connect(&offer_, &QPushButton::clicked, this, [this] {
    if (on_take) on_take(offered_);
  });
  show_refusal({});
}

void RefusalNotice::show_refusal(const RefusedLine& refused) {
  const std::string_view key = sentence_key(refused.why);
  const QString sentence = key.empty() ? QString() : captions_(key);
  sentence_.setText(sentence);
  value_.setAccessibleDescription(sentence);
  mark_.setVisible(!sentence.isEmpty());
  mark_.setToolTip(sentence);
  show_offer(sentence.isEmpty() ? std::string() : refused.offered);
  setVisible(!sentence.isEmpty());
  make_room();
  if (sentence.isEmpty()) return;
  QAccessibleEvent alert(&sentence_, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void RefusalNotice::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  make_room();
}

// A splitter asks no widget how high it is at its width: the sentence must say it itself.
void RefusalNotice::make_room() {
  sentence_.setMinimumHeight(sentence_.text().isEmpty() ? 0 : sentence_.heightForWidth(width()));
}

void RefusalNotice::show_offer(const std::string& offered) {
  offered_ = offered;
  // Qt would hand the focus of a button that goes to the next one.
  if (offered.empty() && offer_.hasFocus()) value_.setFocus();
  offer_.setVisible(!offered.empty());
  const QFontMetrics metrics = offer_.fontMetrics();
  const QString whole = captions_("refused.offer").arg(to_qt(offered).simplified());
  const QString shown = captions_("refused.offer")
                            .arg(metrics.elidedText(to_qt(offered).simplified(), Qt::ElideMiddle,
                                                    kOfferedWidth * metrics.averageCharWidth()));
  offer_.setText(QString(shown).replace('&', "&&"));
  offer_.setAccessibleName(whole);
  offer_.setToolTip(whole);
}

}  // namespace kestrova::qt
