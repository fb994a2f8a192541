// Criteria strings of any bytes: a record falls into its parts without losing a byte, and a
// translation ends in a text or in an error of the library.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "engine/comm_sel.h"
#include "engine/criterion.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "tests/support/fake_suite.h"
#include "tests/support/recording_connection.h"

namespace kestrova {
namespace {

constexpr std::string_view kOrLine = "=== ODER ===";

void require(bool holds) {
  if (!holds) std::abort();
}

// Field, operator and value stand behind each other and end with the record; between the field and
// the operator there are only the blanks that trimming takes.
void check_parts(std::string_view record) {
  RecordParts parts;
  try {
    parts = split_record(record);
  } catch (const InvalidArgument&) {
    return;
  }
  require(parts.value.data() + parts.value.size() == record.data() + record.size());
  if (parts.op.empty()) {
    require(parts.value == record && parts.field.empty());
    return;
  }
  require(parts.op.data() + parts.op.size() == parts.value.data());
  const std::string_view before =
      record.substr(0, record.size() - parts.op.size() - parts.value.size());
  require(parts.field == text::trim(before));
}

void check_translation(std::string_view criteria, std::string_view relation) {
  const auto suite = std::make_shared<test::FakeSuite>();
  install_host(
      {.suite = suite,
       .user_interface = nullptr,
       .user_locale = std::make_shared<test::FakeLocale>(test::FakeLocale::Language::kGerman)});
  KesVar context;
  context.strOderLine = kOrLine;
  context.strDateOrder = "DMY";
  context.dbado = std::make_shared<test::RecordingConnection>();
  try {
    const std::string text =
        Comm_Sel().D_SelectionFromStr(context, relation, "4ARB", criteria, "", 0);
    require(text.starts_with(" FROM "));
    require(criteria.empty() || text.ends_with(")"));
  } catch (const Error&) {
    // A malformed criterion is refused, not translated.
  }
  require(suite->live_services() == 0);
}

}  // namespace
}  // namespace kestrova

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The first byte chooses a catalogue relation, a restricted one, and one that reads SELEKTION.
  constexpr std::string_view kRelations[] = {"1WL", "1EXP", "4PLN17"};
  if (size == 0) return 0;
  const std::string_view criteria(reinterpret_cast<const char*>(data) + 1, size - 1);
  for (const std::string_view record : kestrova::text::split(criteria, ';')) {
    kestrova::check_parts(record);
  }
  kestrova::check_translation(criteria, kRelations[data[0] % 3]);
  return 0;
}
