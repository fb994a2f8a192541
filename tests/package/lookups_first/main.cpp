// A module that asks single questions about fields before any selection has been started, and
// without having installed anything: the library makes its editor, whose lists are empty.
#include <iostream>

#include "engine/comm_sel.h"
#include "platform/error.h"

namespace {

template <class Lookup>
void print(const char* name, const Lookup& lookup) {
  std::cout << name << ": ";
  try {
    std::cout << lookup() << "\n";
  } catch (const kestrova::Error& error) {
    std::cout << "error " << error.number() << ", " << error.what() << "\n";
  }
}

}  // namespace

int main() {
  const kestrova::Comm_Sel fields;
  const kestrova::KesVar context;
  print("get_FieldID", [&] { return fields.get_FieldID("Menge"); });
  print("TransComp_NoLabels", [&] {
    return fields.TransComp_NoLabels(context, "1WL", "Menge >= 5", "GETFIELD", false, false);
  });
  print("Get_TypeOfField",
        [&] { return fields.Get_TypeOfField(context, "Menge", true, nullptr, "1WL"); });
  print("ApcboValue", [&] { return fields.ApcboValue(context, "5", "Menge", nullptr, "1WL"); });
}
