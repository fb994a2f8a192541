#include "tools/stored_filters.h"

#include <gtest/gtest.h>

namespace kestrova::tool {
namespace {

TEST(ModelRelation, IsMostlyARelationCodeItself) {
  for (const std::string_view relation : {"2PVK", "2ABR1", "2ABR1-A", "WAREN", "4ARB", "1VM", "",
                                          "LEISTUNGS_BB", "2vabr", "2VABR "}) {
    EXPECT_EQ(code_of_model_relation(relation), relation);
  }
}

TEST(ModelRelation, OfAGroupIsTranslatedByOneOfItsCodes) {
  EXPECT_EQ(code_of_model_relation("2VABR"), "2VABR1");
  EXPECT_EQ(code_of_model_relation("4PAG"), "4PAG0");
  EXPECT_EQ(code_of_model_relation("4PLN"), "4PLN0");
}

}  // namespace
}  // namespace kestrova::tool
