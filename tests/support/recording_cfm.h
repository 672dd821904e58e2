// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_RECORDING_CFM_H
#define CPP2C_TESTS_SUPPORT_RECORDING_CFM_H

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "binding/context.h"
#include "binding/handlers.h"
#include "tests/support/call_log.h"

// The leaf that a node returns.
struct Leaf {
  std::string type;
  std::string value;
  unsigned int length = 0;
};

class RecordingNode : public ICfmNode {
 public:
  RecordingNode(CallLog& calls, std::string fullname, Leaf leaf)
      : calls_(calls), fullname_(std::move(fullname)), leaf_(std::move(leaf)) {}

  std::string getType() override;
  std::string getValue() override;
  int reserved5() override { return calls_.record("node.reserved5"); }
  unsigned int getLength() override;

  const std::string& fullname() const { return fullname_; }

 private:
  CallLog& calls_;
  std::string fullname_;
  Leaf leaf_;
};

class RecordingIterator : public ICfmIterator {
 public:
  RecordingIterator(CallLog& calls, int id, std::vector<std::string> names)
      : calls_(calls), id_(id), names_(std::move(names)) {}

  int next() override;
  int reserved4() override { return calls_.record("iterator.reserved4"); }
  int reserved5() override { return calls_.record("iterator.reserved5"); }
  std::string name() override;

  int id() const { return id_; }

 private:
  CallLog& calls_;
  int id_;
  std::vector<std::string> names_;
  std::size_t current_ = 0;
};

// A configuration service that records its calls. It deletes released nodes and iterators, so that their
// later use is a use of freed memory.
class RecordingCfm : public ICfm {
 public:
  struct Registration {
    int id;
    ICfmObserver* observer;
  };

  explicit RecordingCfm(CallLog& calls) : calls_(calls) {}

  // The configuration tree: leaves by full name, instance names by object.
  std::map<std::string, Leaf> leaves;
  std::map<int, std::vector<std::string>> instances;

  std::vector<Registration> registered;
  std::vector<Registration> unregistered;
  std::vector<IDyncDataProvider*> providers;  // arguments of registDataProvider(), in order
  std::vector<void*> attribute_places;        // arguments of getAttr(), in order
  std::vector<std::unique_ptr<RecordingNode>> nodes_on_loan;
  std::vector<std::unique_ptr<RecordingIterator>> iterators_on_loan;

  int getAttr(int node, void* out) override;
  int reserved4() override { return calls_.record("cfm.reserved4"); }
  int setAttr(int node, int value) override { return calls_.record("cfm.setAttr", node, value); }
  int reserved6() override { return calls_.record("cfm.reserved6"); }
  int registObserver(int id, ICfmObserver* observer) override;
  int unregistObserver(int id, ICfmObserver* observer) override;
  ICfmNode* getNode(std::string fullname) override;
  int releaseNode(ICfmNode* node) override;
  int reserved11() override { return calls_.record("cfm.reserved11"); }
  int reserved12() override { return calls_.record("cfm.reserved12"); }
  int reserved13() override { return calls_.record("cfm.reserved13"); }
  ICfmIterator* instanceIterator(int id) override;
  int releaseIterator(ICfmIterator* iterator) override;
  int reserved16() override { return calls_.record("cfm.reserved16"); }
  int setValue(std::string fullname, std::string value, int option) override;
  int registDataProvider(int id, IDyncDataProvider* provider) override;
  int save(int scope) override { return calls_.record("cfm.save", scope); }

 private:
  CallLog& calls_;
};

#endif
