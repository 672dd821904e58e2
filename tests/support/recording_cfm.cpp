// SPDX-License-Identifier: MIT
#include "tests/support/recording_cfm.h"

#include <algorithm>

namespace {

// Removes the object at `pointer` from `loans` and returns it; null if it is not on loan.
template <typename Loan, typename Interface>
std::unique_ptr<Loan> takeBack(std::vector<std::unique_ptr<Loan>>& loans, Interface* pointer) {
  auto found =
      std::find_if(loans.begin(), loans.end(), [pointer](const auto& loan) { return loan.get() == pointer; });
  if (found == loans.end()) return nullptr;

  std::unique_ptr<Loan> loan = std::move(*found);
  loans.erase(found);
  return loan;
}

}  // namespace

std::string RecordingNode::getType() {
  calls_.record("node.getType");
  return leaf_.type;
}

std::string RecordingNode::getValue() {
  calls_.record("node.getValue");
  return leaf_.value;
}

unsigned int RecordingNode::getLength() {
  calls_.record("node.getLength");
  return leaf_.length;
}

int RecordingIterator::next() {
  calls_.record("iterator.next");
  ++current_;
  return current_ < names_.size() ? -1 : 0;  // any value other than 0 means that there is another one
}

std::string RecordingIterator::name() {
  calls_.record("iterator.name");
  return names_.at(current_);
}

int RecordingCfm::getAttr(int node, void* out) {
  attribute_places.push_back(out);
  return calls_.record("cfm.getAttr", node, out);
}

int RecordingCfm::registObserver(int id, ICfmObserver* observer) {
  registered.push_back({id, observer});
  return calls_.record("cfm.registObserver", id, observer);
}

int RecordingCfm::unregistObserver(int id, ICfmObserver* observer) {
  unregistered.push_back({id, observer});
  return calls_.record("cfm.unregistObserver", id, observer);
}

ICfmNode* RecordingCfm::getNode(std::string fullname) {
  calls_.record("cfm.getNode", fullname);
  const auto leaf = leaves.find(fullname);
  if (leaf == leaves.end()) return nullptr;

  nodes_on_loan.push_back(std::make_unique<RecordingNode>(calls_, fullname, leaf->second));
  return nodes_on_loan.back().get();
}

int RecordingCfm::releaseNode(ICfmNode* node) {
  const auto loan = takeBack(nodes_on_loan, node);
  if (loan == nullptr) return calls_.record("cfm.releaseNode: not on loan");
  return calls_.record("cfm.releaseNode", loan->fullname());
}

ICfmIterator* RecordingCfm::instanceIterator(int id) {
  calls_.record("cfm.instanceIterator", id);
  const auto names = instances.find(id);
  if (names == instances.end()) return nullptr;

  iterators_on_loan.push_back(std::make_unique<RecordingIterator>(calls_, id, names->second));
  return iterators_on_loan.back().get();
}

int RecordingCfm::releaseIterator(ICfmIterator* iterator) {
  const auto loan = takeBack(iterators_on_loan, iterator);
  if (loan == nullptr) return calls_.record("cfm.releaseIterator: not on loan");
  return calls_.record("cfm.releaseIterator", loan->id());
}

int RecordingCfm::setValue(std::string fullname, std::string value, int option) {
  return calls_.record("cfm.setValue", fullname, value, option);
}

int RecordingCfm::registDataProvider(int id, IDyncDataProvider* provider) {
  providers.push_back(provider);
  return calls_.record("cfm.registDataProvider", id, provider);
}
