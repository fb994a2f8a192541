// Editors that store their list and load it again, the three ways that the system offers, with the
// date and number formatters that decide about the stored text.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/editor/drawn_lists.h"
#include "tests/editor/quick_connection.h"
#include "tests/editor/run_host.h"

namespace kestrova::test {

class RoundTripHost : public RunHost {
 public:
  virtual ~RoundTripHost() = default;

  // Stores the list and answers what is stored.
  virtual std::string store() = 0;
  // Replaces the list by a stored text.
  virtual void load(const std::string& stored) = 0;

  // What the editor offers, one field per type that the relation can have.
  const std::vector<DrawnField>& fields() const { return fields_; }

  // Lines as a user composes them: picked, typed, collected and inserted.
  void compose_lines(const std::vector<DrawnLine>& lines);
  // The same lines at once.
  void put_lines(const std::vector<DrawnLine>& lines);

  // Forgets the calls so far, which would fill the memory.
  void clear_logs();

 protected:
  explicit RoundTripHost(const UserSettings& settings);

  // Opens the relation and reads the operators that it offers.
  void start_with(const std::string& relation, std::vector<DrawnField> fields);

  CallLog suite_log_;
  std::shared_ptr<QuickConnection> quick_;
  std::shared_ptr<QuickTable> stored_;  // the row that holds the text, in its first column

 private:
  RoundTripHost(const UserSettings& settings, CallLog suite_log);
  void compose_line(const DrawnLine& line);

  std::vector<DrawnField> fields_;
};

// By the contract: OK stores the list in VERTRAG_PREISE, Run loads it.
class ContractRoundTrip : public RoundTripHost {
 public:
  explicit ContractRoundTrip(const UserSettings& settings);
  std::string store() override;
  void load(const std::string& stored) override;

 protected:
  // Opens a relation of the log, whose value queries have this condition.
  ContractRoundTrip(const UserSettings& settings, const std::string& relation,
                    const std::string& value_condition);
};

// By a model of a relation whose fields SELEKTION describes, of every type that the editor knows.
class ModelRoundTrip : public RoundTripHost {
 public:
  explicit ModelRoundTrip(const UserSettings& settings);
  std::string store() override;
  void load(const std::string& stored) override;
};

// By the host, which fetches the criteria string and fills the list with it: fields of SELEKTION,
// and fields of the suite's catalogue.
class HostRoundTrip : public ModelRoundTrip {
 public:
  using ModelRoundTrip::ModelRoundTrip;
  void load(const std::string& stored) override;
};

class CatalogueRoundTrip : public ContractRoundTrip {
 public:
  explicit CatalogueRoundTrip(const UserSettings& settings);
  std::string store() override;
  void load(const std::string& stored) override;
};

}  // namespace kestrova::test
