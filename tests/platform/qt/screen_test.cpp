// The window on a real X screen, which the program starts for itself: every control is on the
// picture of the screen, none covers another, none is cut off.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTest>
#include <QTimer>
#include <set>

#include "platform/qt/qt_user_interface.h"
#include "platform/qt/selection_window.h"
#include "tests/platform/qt/window_user.h"
#include "tests/support/controls_contract.h"

namespace kestrova::test {
namespace {

// All controls of the dialog but the frames around them.
std::vector<QWidget*> leaf_widgets(const QWidget& window) {
  std::vector<QWidget*> result;
  for (QWidget* const widget : window.findChildren<QWidget*>()) {
    const bool is_control = !widget->objectName().isEmpty() &&
                            !widget->objectName().startsWith("qt_") &&
                            !widget->objectName().startsWith("Frame");
    const bool is_label = qobject_cast<QLabel*>(widget) != nullptr;
    if ((is_control || is_label) && widget->isVisible()) result.push_back(widget);
  }
  return result;
}

std::string name_of(const QWidget& widget) {
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) {
    return "label " + label->text().toStdString();
  }
  return widget.objectName().toStdString();
}

QRect place_in(const QWidget& window, const QWidget& widget) {
  return QRect(widget.mapTo(&window, QPoint(0, 0)), widget.size());
}

// The part of a picture of the screen, in the pixels that the screen has.
QImage part_of(const QImage& picture, const QRect& place) {
  const double ratio = picture.devicePixelRatio();
  return picture
      .copy(QRect((QPointF(place.topLeft()) * ratio).toPoint(),
                  (QSizeF(place.size()) * ratio).toSize()))
      .convertToFormat(QImage::Format_RGB32);
}

// How many colours the picture has.
std::size_t colours(const QImage& picture) {
  std::set<QRgb> found;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) found.insert(picture.pixel(x, y));
  }
  return found.size();
}

class OnScreen : public testing::TestWithParam<const char*> {
 protected:
  OnScreen() {
    settings_.language = GetParam();
    dialog_.cboField.add("Durchmesser mit Rinde in der Mitte des Stammes (cm)");
    dialog_.cboField.set_index(0);
    dialog_.cboOperator.add("LIKE");
    dialog_.cboOperator.set_index(0);
    dialog_.cboValue.set_text("Georg Müller");
    dialog_.Formula.set_text("Durchmesser mit Rinde in der Mitte des Stammes (cm) LIKE 'G%'");
    for (const char* const line : {"Holzart = 'FI'", "=== ODER ===", "Menge (fm) > 3.5"}) {
      dialog_.ListCriteria.add(line);
    }
    dialog_.ListCriteria.set_index(0);
    dialog_.Model.add("Fichte stark");
    dialog_.txtStandard.set_text("Fichte stark");
    dialog_.chkAL.set_caption("Niederlassung Nord");
    window_ = std::make_unique<SelectionWindow>(dialog_, user_interface_, settings_);
  }

  PlainDialog dialog_;
  QtUserInterface user_interface_;
  QtSettings settings_;
  std::unique_ptr<SelectionWindow> window_;
};

TEST_P(OnScreen, EveryControlIsVisibleNoneOverlappingNoneCut) {
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  // At its usual size, and as small as it goes.
  for (const QSize& size : {window_->size(), window_->minimumSizeHint()}) {
    window_->resize(size);
    QTest::qWait(300);
    const QRect inside(QPoint(0, 0), window_->size());
    const std::vector<QWidget*> widgets = leaf_widgets(*window_);
    EXPECT_EQ(widgets.size(), 28U + 6U) << "28 controls and 6 labels";
    for (std::size_t i = 0; i < widgets.size(); ++i) {
      const QWidget& widget = *widgets[i];
      const QRect place = place_in(*window_, widget);
      EXPECT_TRUE(inside.contains(place)) << name_of(widget);
      EXPECT_FALSE(widget.visibleRegion().isEmpty()) << name_of(widget);
      EXPECT_EQ(widget.visibleRegion().boundingRect(), widget.rect())
          << name_of(widget) << " is cut";
      for (std::size_t j = i + 1; j < widgets.size(); ++j) {
        EXPECT_FALSE(place.intersects(place_in(*window_, *widgets[j])))
            << name_of(widget) << " and " << name_of(*widgets[j]);
      }
      // Captions have the room that they ask for.
      const bool has_caption = qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
                               qobject_cast<const QLabel*>(&widget) != nullptr;
      if (has_caption) {
        EXPECT_GE(widget.width(), widget.minimumSizeHint().width()) << name_of(widget);
        EXPECT_GE(widget.height(), widget.fontMetrics().height()) << name_of(widget);
      }
    }
  }
}

TEST_P(OnScreen, TheReasonOfARefusedLineIsReadWhole) {
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  const WindowUser user(*window_);
  for (const LineRefusal why : {LineRefusal::kSemicolon, LineRefusal::kApostrophe,
                                LineRefusal::kNotClosed, LineRefusal::kListCut}) {
    dialog_.refused = {why, "Georg D''Angelo & Söhne, Baumschulen und Forstpflanzen"};
    user.click(dialog_.btnInsert);
    for (const QSize& size : {window_->sizeHint(), window_->minimumSizeHint()}) {
      window_->resize(size);
      QTest::qWait(100);
      const auto& sentence = dynamic_cast<const QLabel&>(user.widget("refusal"));
      const QWidget& offer = user.widget("refusal.offer");
      EXPECT_GE(sentence.height(), sentence.heightForWidth(sentence.width()));
      for (const QWidget* const widget : {static_cast<const QWidget*>(&sentence), &offer}) {
        EXPECT_EQ(widget->visibleRegion().boundingRect(), widget->rect())
            << name_of(*widget) << " is cut";
      }
      EXPECT_GE(offer.width(), offer.minimumSizeHint().width());
    }
  }
}

TEST_P(OnScreen, TheScreenShowsEveryControlAsItIs) {
  window_->move(0, 0);
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  QTest::qWait(500);
  const QImage screen = window_->screen()->grabWindow(0).toImage();
  const QImage drawn = window_->grab().toImage();
  const QPoint corner = window_->mapToGlobal(QPoint(0, 0));
  for (const QWidget* const widget : leaf_widgets(*window_)) {
    const QRect place = place_in(*window_, *widget);
    const QImage shown = part_of(screen, place.translated(corner));
    EXPECT_GE(colours(shown), 2U) << name_of(*widget) << " shows nothing";
    if (widget->hasFocus()) continue;  // its cursor blinks
    EXPECT_EQ(shown, part_of(drawn, place)) << name_of(*widget);
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, OnScreen, testing::Values("DE", "EN"),
                         [](const auto& language) { return std::string(language.param); });

}  // namespace
}  // namespace kestrova::test

namespace {

// The number of the display that Xvfb has chosen; "" when it does not start.
QByteArray start_screen(QProcess& xvfb) {
  xvfb.start(KESTROVA_XVFB,
             {"-displayfd", "1", "-screen", "0", "1920x1200x24", "-nolisten", "tcp"});
  if (!xvfb.waitForReadyRead(30000)) return {};
  return xvfb.readAllStandardOutput().trimmed();
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QProcess xvfb;
  const QByteArray display = start_screen(xvfb);
  if (display.isEmpty()) {
    qCritical("Xvfb does not start: %s", qPrintable(xvfb.errorString()));
    return 1;
  }
  qputenv("DISPLAY", ":" + display);
  qputenv("QT_QPA_PLATFORM", "xcb");
  int result = 0;
  {
    QApplication application(argc, argv);
    QApplication::setStyle("Fusion");
    result = RUN_ALL_TESTS();
  }
  xvfb.terminate();
  xvfb.waitForFinished();
  return result;
}
