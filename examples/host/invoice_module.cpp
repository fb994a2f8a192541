#include "invoice_module.h"

#include <iostream>

#include "engine/comm_sel.h"
#include "interface/c_selection_init.h"

namespace {

constexpr const char* kRelation = "2ABR1-A";
constexpr const char* kVariant = "A1";

// The FROM/WHERE text of a criteria string; of an empty one, that of all invoices of the run.
std::string translated(const kestrova::KesVar& context, const std::string& criteria) {
  return kestrova::Comm_Sel().D_SelectionFromStr(context, kRelation, "", criteria, kVariant,
                                                 context.lngAccessLevel);
}

// Appends the text to the module's own SELECT and reads the rows.
void print_invoices(kestrova::Connection& connection, const std::string& from_where) {
  const std::string sql =
      "SELECT HEADERRECH.NUMMER, HEADERRECH.NETTO" + from_where + " ORDER BY HEADERRECH.NUMMER";
  std::cout << sql << "\n";
  const auto invoices =
      connection.open(sql, kestrova::CursorType::kForwardOnly, kestrova::LockType::kReadOnly);
  for (; !invoices->eof(); invoices->move_next()) {
    std::cout << "  " << invoices->value("NUMMER").text() << "  " << invoices->value("NETTO").text()
              << "\n";
  }
}

}  // namespace

std::optional<std::string> select_invoices(const kestrova::KesVar& context) {
  kestrova::c_Selection_Init selection;
  std::string from_where;
  std::string formula;
  selection.c_Selection_Init(context, kRelation, kVariant, from_where, formula);
  selection.c_form_Selection(context, from_where, formula, /*ReadOnly=*/false);
  // After Cancel the texts are those of the start, and the list is as the user left it.
  if (!selection.WasOKClick()) return std::nullopt;
  // A list without a line is committed as no text at all.
  if (from_where.empty()) from_where = translated(context, "");
  std::cout << "\nFormula: " << formula << "\n";
  print_invoices(*context.dbado, from_where);
  return selection.GetWriteString(context);
}

void list_invoices(const kestrova::KesVar& context, const std::string& criteria) {
  print_invoices(*context.dbado, translated(context, criteria));
}
