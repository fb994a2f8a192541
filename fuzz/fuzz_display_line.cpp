// Display lines of any bytes, and records of a stored filter: the parser and the editor answer with
// a text or with an error of the library, show no message, and work afterwards. What is stored
// loads as it was: loading, storing and loading again shows the same line.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <iostream>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "engine/comm_sel.h"
#include "platform/error.h"
#include "tests/attack/sql_closure.h"
#include "tests/editor/round_trip_host.h"

namespace kestrova::test {
namespace {

constexpr std::string_view kGoodLine = "Feld 202 = 'FI'";
constexpr std::string_view kGoodRecord = "20200 = 'FI';";

void require(bool holds) {
  if (!holds) std::abort();
}

// Tells both texts when they differ. A text that is refused now is not changed.
void require_same(const std::optional<std::string>& now, const std::string& before) {
  if (!now || now == before) return;
  std::cerr << "was " << before << "\nis  " << *now << "\n";
  std::abort();
}

template <class Function>
void allowing_errors(Function function) {
  try {
    function();
  } catch (const Error&) {
    // An error of the library is a right answer to any line.
  }
}

// A host with a field of every kind that values are treated by. An unexpected message throws.
ModelRoundTrip& the_host() {
  static const std::set<std::string_view> kinds = {"Feld 5",   "Feld 7",   "Feld 11",  "Größe 130",
                                                   "Feld 133", "Feld 135", "Feld 202", "Größe 20"};
  static ModelRoundTrip host({"DE", "DMY"});
  static const bool is_made = [] {
    GTEST_FLAG_SET(throw_on_failure, true);
    ComboBox& fields = host.editor->cboField;
    for (int i = fields.count(); i-- > 0;) {
      if (!kinds.contains(fields.entry_text(i))) fields.remove(i);
    }
    return fields.count() == static_cast<int>(kinds.size());
  }();
  require(is_made);
  return host;
}

void set_lines(F_Selection& editor, std::initializer_list<std::string_view> lines) {
  editor.ListCriteria.clear();
  for (const std::string_view line : lines) editor.ListCriteria.add(line);
}

// Fields by their formats, as the editor does not see them here.
void check_parser(const KesVar& context, std::string_view line) {
  for (const char* part : {"GETOPERATOR", "GETVALUE"}) {
    allowing_errors(
        [&] { Comm_Sel().TransComp_NoLabels(context, "1EXP", line, part, false, false); });
  }
}

// The criteria string of the list; nothing when it is refused.
std::optional<std::string> stored(ModelRoundTrip& host) {
  try {
    return host.store();
  } catch (const Error&) {
    return std::nullopt;
  }
}

// The lines of a criteria string, one below the other; nothing when it is refused.
std::optional<std::string> loaded(ModelRoundTrip& host, std::string_view criteria) {
  try {
    host.editor->FillListCriteria(host.context, criteria, "SONST");
  } catch (const Error&) {
    return std::nullopt;
  }
  std::string lines;
  for (const ListEntry& line : host.editor->ListCriteria.entries()) lines += line.text + "\n";
  return lines;
}

// Loading, storing and loading again shows the same lines. (Storing may put the elements of a list
// into the order in which they can be read back, and blanks may come and go.) What is not closed is
// stored nowhere.
void check_storing(ModelRoundTrip& host) {
  const auto first = stored(host);
  if (!first) return;
  require(first->ends_with(';'));
  const std::string_view record = std::string_view(*first).substr(0, first->size() - 1);
  if (is_open(record) || is_unprintable(record)) return;
  // Loading takes GETDATE() away wherever it stands, between quotes, too, where it is no date.
  const bool quotes_today = record.find("GETDATE()") != std::string_view::npos &&
                            record.find('\'') != std::string_view::npos;
  if (quotes_today) return;
  const auto lines = loaded(host, *first);
  const auto second = stored(host);
  if (lines && second) require_same(loaded(host, *second), *lines);
}

void check_committing(ModelRoundTrip& host, std::string_view line) {
  if (line == host.context.strOderLine) return;  // refused with a message
  set_lines(*host.editor, {line});
  allowing_errors([&] {
    std::string text;
    std::string formula;
    host.editor->btnOK2_Click(text, formula);
    require(!is_open(text) && !is_unprintable(text));
  });
}

void check_editor(ModelRoundTrip& host, std::string_view line) {
  F_Selection& editor = *host.editor;
  set_lines(editor, {line});
  allowing_errors([&] { editor.ListCriteria.set_index(0); });  // SetListButtons
  allowing_errors([&] { editor.btnReplace_Click(); });
  set_lines(editor, {line});
  check_storing(host);
  if (!line.empty() && std::isdigit(static_cast<unsigned char>(line[0]))) {
    if (loaded(host, line)) check_storing(host);
  }
  check_committing(host, line);
}

void check_works(ModelRoundTrip& host) {
  require(host.user->pointer() == PointerShape::kDefault);
  set_lines(*host.editor, {kGoodLine});
  require(host.store() == kGoodRecord);
}

}  // namespace
}  // namespace kestrova::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // What a line may hold fits into few bytes; longer ones only take time.
  constexpr std::size_t kLongest = 160;
  if (size > kLongest) return -1;
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  kestrova::test::ModelRoundTrip& host = kestrova::test::the_host();
  host.clear_logs();
  kestrova::test::check_parser(host.context, line);
  kestrova::test::check_editor(host, line);
  kestrova::test::check_works(host);
  return 0;
}
