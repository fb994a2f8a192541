// kestrova-sel edit CODE: the dialog "Selektion"
#include <QApplication>
#include <QPalette>
#include <QPixmap>
#include <QStyle>
#include <QStyleFactory>
#include <QTimer>
#include <QWidget>

#include "editor/f_selection.h"
#include "editor/row_counter.h"
#include "interface/c_selection_init.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/qt/qt_user_interface.h"
#include "tools/commands.h"
#include "tools/fields.h"
#include "tools/session.h"

namespace kestrova::tool {
namespace {

constexpr const char* kProgram = "kestrova-sel";

// Qt takes its own options from the command line; there are none for it here.
struct Application {
  int argc = 1;
  char name[sizeof "kestrova-sel"] = "kestrova-sel";
  char* argv[2] = {name, nullptr};
  QApplication application{argc, argv};
};

QPalette light_palette() { return QStyleFactory::create("Fusion")->standardPalette(); }

QPalette dark_palette() {
  QPalette palette(QColor(53, 53, 53), QColor(45, 45, 45));
  palette.setColor(QPalette::Base, QColor(35, 35, 35));
  palette.setColor(QPalette::AlternateBase, QColor(60, 60, 60));
  palette.setColor(QPalette::ToolTipBase, QColor(60, 60, 60));
  palette.setColor(QPalette::Highlight, QColor(42, 110, 180));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(80, 80, 80));
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor(150, 150, 150));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                         QPalette::ToolTipText, QPalette::PlaceholderText}) {
    palette.setColor(role, QColor(225, 225, 225));
    palette.setColor(QPalette::Disabled, role, QColor(125, 125, 125));
  }
  return palette;
}

void set_theme(const std::string& theme) {
  if (theme == "system") return;
  QApplication::setStyle("Fusion");
  QApplication::setPalette(theme == "dark" ? dark_palette() : light_palette());
}

// Takes a picture of the window when it has been painted, and closes it.
void take_screenshot(const std::string& file, bool& taken) {
  constexpr int kPainted = 1500;  // milliseconds; the records are counted by then
  QTimer::singleShot(kPainted, [file, &taken] {
    QWidget* const window = QApplication::activeModalWidget();
    if (window == nullptr) return;
    taken = window->grab().save(QString::fromStdString(file), "PNG");
    window->close();
  });
}

std::string text_or_dash(const std::string& text) { return text.empty() ? "-" : text; }

}  // namespace

int edit(const GlobalOptions& options, const EditArguments& arguments, std::ostream& out) {
  const auto user_interface = std::make_shared<QtUserInterface>();
  const Session session = open_editor_session(options, arguments.read_only, user_interface);
  require_known_relation(session, arguments.code);
  Application application;
  set_theme(arguments.theme);
  QtSettings& settings = user_interface->settings();
  settings.language = options.language;
  settings.text = [&session](std::int32_t number) {
    return loc_texts().GetText(number, session.context);
  };
  // A picture shows the window as it is without anybody's settings.
  if (!arguments.screenshot) settings.application = kProgram;
  if (arguments.count_rows) settings.row_counter = make_row_counter(selection_editor());

  SelectionFacade facade;
  std::string from_where;
  std::string formula;
  facade.c_Selection_Init(session.context, arguments.code, arguments.variant, from_where, formula);
  if (arguments.subset) {
    facade.FillListCriteria(session.context, *arguments.subset, arguments.code);
  }
  bool taken = false;
  if (arguments.screenshot) take_screenshot(*arguments.screenshot, taken);
  bool confirmed = false;
  facade.c_form_SelectionNML(session.context, from_where, formula, arguments.subset.value_or(""),
                             confirmed, arguments.read_only);
  settings = {};  // they refer to this session
  if (arguments.screenshot) {
    if (!taken) throw InvalidArgument("the picture '" + *arguments.screenshot + "' was not taken");
    out << "Took the picture '" << *arguments.screenshot << "'.\n";
    return kExitOk;
  }
  const std::string criteria = facade.GetWriteString(session.context);
  if (options.json) {
    print_json(out, Json{{"relation", arguments.code},
                         {"confirmed", confirmed},
                         {"criteria", criteria},
                         {"from_where", from_where},
                         {"formula", formula}});
    return confirmed ? kExitOk : kExitCancelled;
  }
  if (!confirmed) {
    out << "Not confirmed.\n";
    return kExitCancelled;
  }
  out << "FROM/WHERE\n  " << text_or_dash(from_where) << "\n\nFormula\n  " << text_or_dash(formula)
      << "\n\nCriteria\n  " << text_or_dash(criteria) << '\n';
  return kExitOk;
}

}  // namespace kestrova::tool
