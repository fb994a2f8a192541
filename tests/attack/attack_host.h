// A host on a small sample forestry database that is under attack: it translates stored filters and
// commits lists of the editor, appends the texts to a SELECT of its own and runs it, and looks what
// has become of the database.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "editor/f_selection.h"
#include "interface/c_selection_init.h"
#include "platform/kes_var.h"
#include "platform/user_interface.h"

namespace kestrova::test {

// A relation code, with the mode in which its stored filters are translated.
struct Subject {
  std::string code;
  std::string mode;
};

// Every code that the tables name and the translator serves, and the ones with a number behind
// them.
std::vector<Subject> attacked_relations();

// A user who answers every message with OK and every question with the text given.
class PassiveUser : public UserInterface {
 public:
  std::string answer;
  int messages = 0;

  MessageResult show_message(const Message&) override {
    ++messages;
    return MessageResult::kOk;
  }
  std::optional<std::string> ask_text(std::string_view, std::string_view) override {
    return answer;
  }
  PointerShape pointer() const override { return pointer_; }
  void set_pointer(PointerShape shape) override { pointer_ = shape; }
  void show_modal(ModalDialog&) override {}

 private:
  PointerShape pointer_ = PointerShape::kDefault;
};

// What a field's criteria become when nobody attacks.
struct PeacefulField {
  std::string name;
  std::int32_t id = 0;
  std::string before;      // the text up to the parenthesis around the criteria, and with it
  std::string expression;  // the field in a criterion
  bool is_date = false;
  bool is_verbatim = true;  // whether values come into the text as they were written
};

using Ids = std::unordered_set<std::string>;

class AttackHost {
 public:
  AttackHost();
  ~AttackHost();

  enum Level { kHeadOffice = 1, kNorth = 2 };
  enum Path { kStoredString, kEditor };

  // Starts a selection of the relation for a user of that access level, with an empty list.
  void start(const Subject& subject, Level level);

  // The fields that the editor offers, by the way that their criteria go. Those that the database
  // cannot even compare with Null there are not among them.
  const std::vector<PeacefulField>& fields(Path path);

  // The FROM/WHERE text of the criteria, which stand behind the field, by one of the two ways.
  // Raises the library's errors; "" for a list that the editor refused with a message.
  std::string from_where(Path path, const PeacefulField& field,
                         const std::vector<std::string>& criteria);

  // The rows of the relation that the user may see: of the empty filter, or where there are no
  // tables without a criterion, of a filter that every row meets.
  const Ids& visible(Path path, const PeacefulField& field);

  // The records that a module gets for the text: the first few thousand. Raises DatabaseError; a
  // batch has been run then, too.
  Ids records(const std::string& from_where);

  // One number for all that the database holds.
  std::uint64_t checksum();

  Connection& db() { return *context_.dbado; }
  const KesVar& context() const { return context_; }
  F_Selection& editor() { return selection_editor(); }
  PassiveUser& user() { return *user_; }
  const Subject& subject() const { return subject_; }

  // The editor's list: the criteria behind the field's name.
  void put_lines(const PeacefulField& field, const std::vector<std::string>& criteria);

 private:
  using Key = std::pair<std::string, Level>;

  std::vector<PeacefulField> find_fields(Path path);
  std::string stored(const PeacefulField& field, const std::vector<std::string>& criteria) const;

  std::shared_ptr<PassiveUser> user_;
  KesVar context_;
  Subject subject_;
  Level level_ = kNorth;
  SelectionFacade facade_;
  std::map<std::pair<Key, Path>, std::vector<PeacefulField>> fields_;
  std::map<std::pair<Key, std::string>, Ids> visible_;
};

}  // namespace kestrova::test
