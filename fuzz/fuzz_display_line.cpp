// Display lines of any bytes: the parser and the editor answer with a text or with an error of the
// library, show no message, and work afterwards.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "engine/comm_sel.h"
#include "platform/error.h"
#include "tests/editor/round_trip_host.h"

namespace kestrova::test {
namespace {

constexpr std::string_view kGoodLine = "Feld 202 = 'FI'";
constexpr std::string_view kGoodRecord = "20200 = 'FI';";

void require(bool holds) {
  if (!holds) std::abort();
}

template <class Function>
void allowing_errors(Function function) {
  try {
    function();
  } catch (const Error&) {
    // An error of the library is a right answer to any line.
  }
}

// A host with a field of every type. An unexpected message throws.
ModelRoundTrip& the_host() {
  static ModelRoundTrip host({"DE", "DMY"});
  static const bool messages_throw = [] {
    GTEST_FLAG_SET(throw_on_failure, true);
    return true;
  }();
  require(messages_throw);
  return host;
}

void set_lines(F_Selection& editor, std::initializer_list<std::string_view> lines) {
  editor.ListCriteria.clear();
  for (const std::string_view line : lines) editor.ListCriteria.add(line);
}

// The relations: fields of SELEKTION, fields by their formats, fields by their expressions.
void check_parser(const KesVar& context, std::string_view line) {
  for (const char* relation : {"SONST", "1WL", "1EXP"}) {
    for (const char* part : {"GETFIELD", "GETOPERATOR", "GETVALUE"}) {
      allowing_errors(
          [&] { Comm_Sel().TransComp_NoLabels(context, relation, line, part, false, false); });
    }
  }
}

void check_editor(ModelRoundTrip& host, std::string_view line) {
  F_Selection& editor = *host.editor;
  set_lines(editor, {line});
  allowing_errors([&] { editor.ListCriteria.set_index(0); });  // SetListButtons
  allowing_errors([&] { editor.btnReplace_Click(); });
  set_lines(editor, {line});
  allowing_errors([&] {
    const std::string stored = editor.GetWriteString(host.context);
    require(stored.ends_with(';'));
    editor.FillListCriteria(host.context, stored, "SONST");
    host.store();
  });
  // Between other lines, so that no OR line stands at an end.
  set_lines(editor, {kGoodLine, line, kGoodLine});
  allowing_errors([&] { editor.btnOk_Click(); });
}

void check_works(ModelRoundTrip& host) {
  require(host.user->pointer() == PointerShape::kDefault);
  set_lines(*host.editor, {kGoodLine});
  require(host.store() == kGoodRecord);
  host.editor->ListCriteria.set_index(0);
  require(host.editor->Formula.text() == kGoodLine);
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
