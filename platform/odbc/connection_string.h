// ODBC connection strings: attributes, and the secrets among them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrova::odbc {

struct Attribute {
  std::string name;   // as it stands
  std::string value;  // without braces
  std::string text;   // the value as it stands
};

// The attributes "name=value" between ";". A value in braces may hold any character, "}" doubled.
// Raises InvalidArgument, without quoting the string, for one that cannot be read.
std::vector<Attribute> parse_connection_string(std::string_view connection_string);

// Whether an attribute of this name holds a secret.
bool is_secret(std::string_view attribute_name);

// The string again with "***" for every secret.
std::string masked(const std::vector<Attribute>& attributes);

// The string with the attribute ApplicationIntent=ReadOnly, unless it has one of that name.
std::string with_read_only_intent(std::string connection_string);

// Takes the secrets of a connection string out of texts.
class SecretMask {
 public:
  SecretMask() = default;
  explicit SecretMask(const std::vector<Attribute>& attributes);
  std::string apply(std::string text) const;

 private:
  std::vector<std::string> secrets_;
};

}  // namespace kestrova::odbc
