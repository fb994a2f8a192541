// The dialog on the command line. Its use is tested with the window (tests/platform/qt).
#include <cstdlib>

#include "tests/tools/program_fixture.h"

namespace kestrova::tool {
namespace {

class Edit : public Program {
 protected:
  Edit() { setenv("QT_QPA_PLATFORM", "offscreen", 1); }
};

TEST_F(Edit, TakesAPictureOfTheWindow) {
  const std::string picture = file("window.png");
  const ProgramResult result = on_database({"edit", "1VM", "--count", "--screenshot", picture});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "Took the picture '" + picture + "'.\n");
  EXPECT_EQ(text_of(picture).substr(1, 3), "PNG");
}

TEST_F(Edit, RefusesARelationThatIsNotKnown) {
  const ProgramResult result = on_database({"edit", "NOWHERE"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result), error_line(on_database({"fields", "NOWHERE"})));
}

TEST_F(Edit, RefusesAPictureThatCannotBeWritten) {
  const std::string picture = file("nowhere/window.png");
  const ProgramResult result = on_database({"edit", "1VM", "--screenshot", picture});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("the picture '" + picture + "' was not taken"), std::string::npos);
}

}  // namespace
}  // namespace kestrova::tool
