// The caller context, which the host fills and passes by reference into most public operations.
//
// The record belongs to the suite, not to this library: it stands here among the ports because the
// suite's services take it too. The members stand in the suite's order: two objects, ten texts, a
// block of 40 bytes, three texts, four bytes, two texts, four bytes. The library reads those that
// have a name. The others, member_N by their place in the record and block_N by their first byte in
// the block, it only carries: whoever copies the record copies them, so that a service of the suite
// finds in them what the host has put there.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/database.h"
#include "platform/error.h"

namespace kestrova {

struct KesVar {
  // The host's open connection; every query and command of the library runs on it. Empty:
  // operations that need it raise ObjectNotSet.
  std::shared_ptr<Connection> dbado;
  std::shared_ptr<void> member_1;

  std::string member_2;
  // The user's language code: the suffix of the text columns of STRINGS ("DE" for STRINGS.DE and
  // STRINGS.CUSTOM_DE).
  std::string strLanguage;
  // The exact text of the OR line. A line or record is an OR line only when it equals this text,
  // case and blanks included.
  std::string strOderLine;
  // Name of the national currency, shown beside "EURO" for money fields.
  std::string strNatWahrung;
  std::string member_6;
  // The user's date order: "DMY", "MDY", "YDM" or "YMD".
  std::string strDateOrder;
  std::string member_8;
  std::string member_9;
  std::string member_10;
  std::string member_11;

  // The user's identifier, stored with the models that the user saves.
  std::int32_t lngUserID = 0;
  // The user's access level, written as a decimal number into a fixed condition and passed to the
  // suite's services.
  std::int32_t lngAccessLevel = 0;
  std::array<std::byte, 4> block_8{};
  // Invoice date range of the relation "WIZ", in days since 1899-12-30 with the time of day as
  // fraction. 0 means not set.
  double datInvoiceFrom = 0;
  double datInvoiceTo = 0;
  std::array<std::byte, 12> block_28{};

  // SQL list or sub-select of the access-level IDs that the user may see; inserted between
  // parentheses as it stands.
  std::string strAccessLevelList;
  std::string member_14;
  std::string member_15;
  std::array<std::byte, 4> member_16{};
  std::string member_17;
  std::string member_18;
  std::array<std::byte, 4> member_19{};
};

// The connection of the context. Raises ObjectNotSet when there is none.
inline Connection& connection_of(const KesVar& context) {
  if (!context.dbado) throw ObjectNotSet("The caller context holds no database connection.");
  return *context.dbado;
}

}  // namespace kestrova
