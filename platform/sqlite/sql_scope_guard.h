// Makes a scope the current one for as long as it lives.
#pragma once

#include "platform/sqlite/sql_translator.h"

namespace kestrova::sql {

class Translator::ScopeGuard {
 public:
  ScopeGuard(Scope*& current, Scope& scope) : current_(current), outer_(current) {
    scope.outer = outer_;
    current_ = &scope;
  }
  ~ScopeGuard() { current_ = outer_; }
  ScopeGuard(const ScopeGuard&) = delete;
  ScopeGuard& operator=(const ScopeGuard&) = delete;

 private:
  Scope*& current_;
  Scope* outer_;
};

}  // namespace kestrova::sql
