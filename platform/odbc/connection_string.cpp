#include "platform/odbc/connection_string.h"

#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::odbc {
namespace {

constexpr std::string_view kMask = "***";

// An attribute is a secret when its name contains one of these: Password, NewPWD, ClientSecret.
constexpr std::array<std::string_view, 8> kSecretWords = {
    "PWD", "PASS", "SECRET", "TOKEN", "CREDENTIAL", "CLIENTCERT", "CLIENTKEY", "PQOPT"};

[[noreturn]] void reject(const char* why) {
  throw InvalidArgument(std::string("The connection string cannot be read: ") + why + ".");
}

// The value at the position, which moves behind it.
Attribute take_value(std::string_view s, std::size_t& position) {
  Attribute result;
  const std::size_t begin = position;
  if (position >= s.size() || s[position] != '{') {
    position = std::min(s.find(';', position), s.size());
    result.text = text::trim(s.substr(begin, position - begin));
    result.value = result.text;
    return result;
  }
  for (++position;; ++position) {
    if (position >= s.size()) reject("a \"}\" is missing");
    if (s[position] == '}') {
      if (position + 1 >= s.size() || s[position + 1] != '}') break;
      ++position;
    }
    result.value += s[position];
  }
  ++position;
  result.text = s.substr(begin, position - begin);
  while (position < s.size() && s[position] == ' ') ++position;
  if (position < s.size() && s[position] != ';') reject("text follows a \"}\"");
  return result;
}

}  // namespace

std::vector<Attribute> parse_connection_string(std::string_view s) {
  std::vector<Attribute> attributes;
  for (std::size_t position = 0; position < s.size(); ++position) {
    const std::size_t end = std::min(s.find_first_of("=;", position), s.size());
    const std::string_view name = text::trim(s.substr(position, end - position));
    if (end >= s.size() || s[end] == ';') {
      if (!name.empty()) reject("an attribute has no \"=\"");
      position = end;
      continue;
    }
    if (name.empty()) reject("a value has no name");
    position = end + 1;
    while (position < s.size() && s[position] == ' ') ++position;
    Attribute attribute = take_value(s, position);
    attribute.name = name;
    attributes.push_back(std::move(attribute));
  }
  if (attributes.empty()) reject("it is empty");
  return attributes;
}

bool is_secret(std::string_view attribute_name) {
  return std::any_of(kSecretWords.begin(), kSecretWords.end(),
                     [attribute_name](std::string_view word) {
                       return text::contains_ignoring_case(attribute_name, word);
                     });
}

std::string masked(const std::vector<Attribute>& attributes) {
  std::string result;
  for (const Attribute& attribute : attributes) {
    if (!result.empty()) result += ';';
    result += attribute.name + "=";
    result += is_secret(attribute.name) ? std::string(kMask) : attribute.text;
  }
  return result;
}

std::string with_read_only_intent(std::string connection_string) {
  for (const Attribute& attribute : parse_connection_string(connection_string)) {
    if (text::equal_ignoring_case(attribute.name, "ApplicationIntent")) return connection_string;
  }
  const bool ended = connection_string.ends_with(';');
  return connection_string + (ended ? "" : ";") + "ApplicationIntent=ReadOnly";
}

SecretMask::SecretMask(const std::vector<Attribute>& attributes) {
  for (const Attribute& attribute : attributes) {
    if (!is_secret(attribute.name)) continue;
    // A driver may quote the string as it got it, or the value as it read it.
    for (const std::string& form : {attribute.text, attribute.value}) {
      if (!form.empty()) secrets_.push_back(form);
    }
  }
  // The longest first: one secret may be part of another.
  std::sort(secrets_.begin(), secrets_.end(),
            [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
}

std::string SecretMask::apply(std::string text) const {
  for (const std::string& secret : secrets_) text = text::replace_all(text, secret, kMask);
  return text;
}

}  // namespace kestrova::odbc
