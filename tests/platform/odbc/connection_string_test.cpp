// Connection strings, and that no secret of them leaks.
#include "platform/odbc/connection_string.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"
#include "platform/odbc/odbc_connection.h"

namespace kestrova::odbc {
namespace {

using testing::ElementsAre;

std::vector<std::string> parsed(std::string_view connection_string) {
  std::vector<std::string> result;
  for (const Attribute& a : parse_connection_string(connection_string)) {
    result.push_back(a.name + "|" + a.value + "|" + a.text);
  }
  return result;
}

std::string refusal(std::string_view connection_string) {
  try {
    parse_connection_string(connection_string);
  } catch (const InvalidArgument& error) {
    return error.what();
  }
  return "no error";
}

TEST(ConnectionString, IsAListOfAttributes) {
  EXPECT_THAT(parsed("DSN=forest;UID=anna"), ElementsAre("DSN|forest|forest", "UID|anna|anna"));
  EXPECT_THAT(parsed(" DSN = forest ; ;UID=;"), ElementsAre("DSN|forest|forest", "UID||"));
}

TEST(ConnectionString, AValueInBracesMayHoldAnything) {
  EXPECT_THAT(parsed("Driver={ODBC Driver 18 for SQL Server};PWD={a;b=}}c{} ;UID=x"),
              ElementsAre("Driver|ODBC Driver 18 for SQL Server|{ODBC Driver 18 for SQL Server}",
                          "PWD|a;b=}c{|{a;b=}}c{}", "UID|x|x"));
}

TEST(ConnectionString, AValueOutsideBracesMayHoldAnEqualsSign) {
  EXPECT_THAT(parsed("PWD=a=b;UID=x"), ElementsAre("PWD|a=b|a=b", "UID|x|x"));
}

TEST(ConnectionString, WhatCannotBeReadIsRefusedWithoutBeingQuoted) {
  EXPECT_EQ(refusal(""), "The connection string cannot be read: it is empty.");
  EXPECT_EQ(refusal(" ; "), "The connection string cannot be read: it is empty.");
  EXPECT_EQ(refusal("geheim"), "The connection string cannot be read: an attribute has no \"=\".");
  EXPECT_EQ(refusal("UID=a;geheim;"),
            "The connection string cannot be read: an attribute has no \"=\".");
  EXPECT_EQ(refusal("=geheim"), "The connection string cannot be read: a value has no name.");
  EXPECT_EQ(refusal("PWD={geheim"), "The connection string cannot be read: a \"}\" is missing.");
  EXPECT_EQ(refusal("PWD={geheim}}"), "The connection string cannot be read: a \"}\" is missing.");
  EXPECT_EQ(refusal("PWD={ge}heim"), "The connection string cannot be read: text follows a \"}\".");
}

struct SecretCase {
  const char* name;
  bool secret;
};

class Secret : public testing::TestWithParam<SecretCase> {};

TEST_P(Secret, IsToldByTheNameOfItsAttribute) {
  EXPECT_EQ(is_secret(GetParam().name), GetParam().secret);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Attributes, Secret, testing::Values(
    SecretCase{"ClientCertificate", true}, SecretCase{"ClientKey", true}, SecretCase{"Pqopt", true},
    SecretCase{"PWD", true}, SecretCase{"pwd", true}, SecretCase{"Password", true},
    SecretCase{"NewPWD", true}, SecretCase{"SSLKeyPassphrase", true}, SecretCase{"ClientSecret", true},
    SecretCase{"KeyStoreSecret", true}, SecretCase{"AccessToken", true}, SecretCase{"ClientCredential", true},
    SecretCase{"UID", false}, SecretCase{"Driver", false}, SecretCase{"Server", false},
    SecretCase{"Database", false}, SecretCase{"Encrypt", false}, SecretCase{"Trusted_Connection", false}),
    [](const auto& test) { return std::string(test.param.name); });
// clang-format on

TEST(MaskedConnectionString, ShowsEverythingButSecrets) {
  EXPECT_EQ(
      masked_connection_string("Driver={SQL Server};Server=db;UID=anna;PWD={a;b};Encrypt=yes"),
      "Driver={SQL Server};Server=db;UID=anna;PWD=***;Encrypt=yes");
  EXPECT_EQ(masked_connection_string("DSN=forest;password=x;AccessToken=y"),
            "DSN=forest;password=***;AccessToken=***");
}

TEST(MaskedConnectionString, ShowsNothingOfAStringThatCannotBeRead) {
  EXPECT_EQ(masked_connection_string("UID=anna;PWD={geheim"), "***");
}

TEST(SecretMask, TakesSecretsOutOfTextsAsTheyStandAndAsTheyAreRead) {
  const SecretMask mask(parse_connection_string("UID=anna;PWD={a}}b};ClientSecret=a}bc"));
  EXPECT_EQ(mask.apply("login of anna with {a}}b}, which is a}b, failed: a}bc"),
            "login of anna with ***, which is ***, failed: ***");
}

TEST(SecretMask, LeavesTextsAloneWithoutASecret) {
  EXPECT_EQ(SecretMask(parse_connection_string("UID=anna;PWD=")).apply("anna"), "anna");
  EXPECT_EQ(SecretMask().apply("text"), "text");
}

TEST(ReadOnlyIntent, IsAddedUnlessTheStringHasOne) {
  EXPECT_EQ(with_read_only_intent("DSN=x"), "DSN=x;ApplicationIntent=ReadOnly");
  EXPECT_EQ(with_read_only_intent("DSN=x;"), "DSN=x;ApplicationIntent=ReadOnly");
  EXPECT_EQ(with_read_only_intent("DSN=x;applicationintent=ReadWrite"),
            "DSN=x;applicationintent=ReadWrite");
}

}  // namespace
}  // namespace kestrova::odbc
