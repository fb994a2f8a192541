#include "platform/qt/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <algorithm>

namespace kestrova::qt {
namespace {

// The strokes of a glyph in a square from 0 to 16.
QPainterPath strokes(Glyph glyph) {
  QPainterPath path;
  const auto chevron = [&path](double base, double tip) {
    path.moveTo(4, base);
    path.lineTo(8, tip);
    path.lineTo(12, base);
  };
  const auto line = [&path](double x1, double y1, double x2, double y2) {
    path.moveTo(x1, y1);
    path.lineTo(x2, y2);
  };
  switch (glyph) {
    case Glyph::kFirst:
      line(4, 3.5, 12, 3.5);
      chevron(11.5, 7.5);
      break;
    case Glyph::kPrevious:
      chevron(10, 6);
      break;
    case Glyph::kNext:
      chevron(6, 10);
      break;
    case Glyph::kLast:
      chevron(4.5, 8.5);
      line(4, 12.5, 12, 12.5);
      break;
    case Glyph::kUp:
      line(8, 13, 8, 3);
      chevron(7, 3);
      break;
    case Glyph::kDown:
      line(8, 3, 8, 13);
      chevron(9, 13);
      break;
    case Glyph::kPlus:
      line(3, 8, 13, 8);
      line(8, 3, 8, 13);
      break;
    case Glyph::kMinus:
      line(3, 8, 13, 8);
      break;
  }
  return path;
}

class GlyphEngine final : public QIconEngine {
 public:
  explicit GlyphEngine(Glyph glyph) : glyph_(glyph) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QPalette palette = QGuiApplication::palette();
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    const double scale = std::min(rect.width(), rect.height()) / 16.0;
    painter->scale(scale, scale);
    painter->setPen(QPen(palette.color(group, QPalette::ButtonText), 1.6, Qt::SolidLine,
                         Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(strokes(glyph_));
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new GlyphEngine(*this); }

 private:
  Glyph glyph_;
};

}  // namespace

QIcon icon(Glyph glyph) { return QIcon(new GlyphEngine(glyph)); }

}  // namespace kestrova::qt
