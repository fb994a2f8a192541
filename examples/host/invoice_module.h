// A suite module that lists the invoices of the first run.
#pragma once

#include <optional>
#include <string>

#include "platform/kes_var.h"

// Lets the user select invoices and prints them. Returns the criteria string to keep, nothing when
// the user cancelled.
std::optional<std::string> select_invoices(const kestrova::KesVar& context);

// Prints the invoices of a kept criteria string, without a dialog.
void list_invoices(const kestrova::KesVar& context, const std::string& criteria);
