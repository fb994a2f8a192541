// The caller context, which the host fills and passes by reference into most public operations.
//
// The record belongs to the suite, not to this library: it stands here among the ports because the
// suite's services take it too.
#pragma once

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

  // The user's language code: the suffix of the text columns of STRINGS ("DE" for STRINGS.DE and
  // STRINGS.CUSTOM_DE).
  std::string strLanguage;

  // The exact text of the OR line. A line or record is an OR line only when it equals this text,
  // case and blanks included.
  std::string strOderLine;

  // Name of the national currency, shown beside "EURO" for money fields.
  std::string strNatWahrung;

  // The user's date order: "DMY", "MDY", "YDM" or "YMD".
  std::string strDateOrder;

  // The user's access level, written as a decimal number into a fixed condition and passed to the
  // suite's services.
  std::int32_t lngAccessLevel = 0;

  // Invoice date range of the relation "WIZ", in days since 1899-12-30 with the time of day as
  // fraction. 0 means not set.
  double datInvoiceFrom = 0;
  double datInvoiceTo = 0;

  // SQL list or sub-select of the access-level IDs that the user may see; inserted between
  // parentheses as it stands.
  std::string strAccessLevelList;

  // The user's identifier, stored with the models that the user saves.
  std::int32_t lngUserID = 0;
};

// The connection of the context. Raises ObjectNotSet when there is none.
inline Connection& connection_of(const KesVar& context) {
  if (!context.dbado) throw ObjectNotSet("The caller context holds no database connection.");
  return *context.dbado;
}

}  // namespace kestrova
