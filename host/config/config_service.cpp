// SPDX-License-Identifier: MIT
#include "host/config/config_service.h"

#include <cstring>
#include <utility>
#include <vector>

#include "binding/handlers.h"
#include "host/config/name.h"
#include "host/include/cpp2c_host.h"
#include "include_c"

namespace host {
namespace {

bool isOption(int option) {
  return option == 0 || option == C_CFM_CREATE || option == C_CFM_DELETE;
}

}  // namespace

const std::string& ConfigNode::value() {
  if (!value_) value_ = config_.valueAt(place_, fullname_);
  return *value_;
}

ConfigService::ConfigService(Tree tree, Registry& registry, Store store)
    : tree_(std::move(tree)), store_(std::move(store)), registry_(registry) {}

int ConfigService::getAttr(int number, void* out) {
  if (out == nullptr) return C_RESULT_PARAM;
  const Object* object = tree_.find(number);
  if (object == nullptr) return C_RESULT_NOT_FOUND;
  std::memcpy(out, &object->attribute, sizeof object->attribute);
  return C_RESULT_OK;
}

int ConfigService::setAttr(int number, int value) {
  Object* object = tree_.find(number);
  if (object == nullptr) return C_RESULT_NOT_FOUND;
  if (object->attribute == value) return C_RESULT_OK;
  object->attribute = value;
  changes_.attributeChanged(object->name);
  return C_RESULT_OK;
}

int ConfigService::registObserver(int number, ICfmObserver* observer) {
  if (observer == nullptr) return C_RESULT_PARAM;
  const Object* object = tree_.find(number);
  if (object == nullptr) return C_RESULT_NOT_FOUND;
  observers_.add(number, observer,
                 registry_.add(RegistrationKind::kChange, object->name, calleeOf(*observer)));
  return C_RESULT_OK;
}

int ConfigService::unregistObserver(int number, ICfmObserver* observer) {
  return observers_.remove(number, observer) ? C_RESULT_OK : C_RESULT_NOT_FOUND;
}

int ConfigService::registDataProvider(int number, IDyncDataProvider* provider) {
  if (provider == nullptr) return C_RESULT_PARAM;
  const Object* object = tree_.find(number);
  if (object == nullptr) return C_RESULT_NOT_FOUND;
  providers_[number] = {provider,
                        registry_.add(RegistrationKind::kProvider, object->name, calleeOf(*provider))};
  return C_RESULT_OK;
}

ICfmNode* ConfigService::getNode(std::string fullname) {
  auto place = tree_.find(fullname);
  if (!place) return nullptr;
  return nodes_.lend(*this, *place, std::move(fullname));
}

int ConfigService::releaseNode(ICfmNode* node) {
  return nodes_.release(node) ? C_RESULT_OK : C_RESULT_PARAM;
}

ICfmIterator* ConfigService::instanceIterator(int number) {
  Object* object = tree_.find(number);
  if (object == nullptr || object->instances.empty()) return nullptr;
  return iterators_.lend(Tree::instanceNames(*object));
}

int ConfigService::releaseIterator(ICfmIterator* iterator) {
  return iterators_.release(iterator) ? C_RESULT_OK : C_RESULT_PARAM;
}

std::string ConfigService::value(const std::string& fullname) {
  return valueAt(tree_.find(fullname).value(), fullname);
}

// Finds the leaf even if its instance was deleted meanwhile: objects and their leaves are never deleted.
std::string ConfigService::valueAt(Tree::Place place, const std::string& fullname) {
  if (!tree_.isValid(place)) place = tree_.find(fullname).value();
  return place.leaf->computed && place.instance != nullptr ? computedValue(place, fullname) : place.value();
}

std::string ConfigService::computedValue(const Tree::Place& place, const std::string& fullname) {
  const auto provider = providers_.find(place.object->number);
  if (provider == providers_.end()) return place.value();
  const auto computed = provider->second.registration.call([&, source = provider->second.provider] {
    return source->dataGet(place.object->number, place.instance->name, place.leaf->name);
  });
  return computed ? *computed : tree_.find(fullname).value().value();  // the place may be invalid by now
}

const Leaf* ConfigService::findLeaf(std::string_view fullname) {
  const auto place = tree_.find(fullname);
  return place ? place->leaf : nullptr;
}

int ConfigService::setValue(std::string fullname, std::string value, int option) {
  const auto place = tree_.find(fullname);
  if (!isOption(option)) return C_RESULT_PARAM;
  if (!place) return C_RESULT_NOT_FOUND;
  if (option == C_CFM_DELETE) return deleteInstance(std::string(parentName(fullname)));
  if (place->leaf->computed || !fits(*place->leaf->type, value)) return C_RESULT_PARAM;
  if (place->instance != nullptr) return write(*place, std::move(value));
  if (option != C_CFM_CREATE) return C_RESULT_NOT_FOUND;

  const int added = addInstance(std::string(parentName(fullname)));
  const int written = setValue(std::move(fullname), std::move(value), 0);  // an observer may have deleted it
  return written != C_RESULT_OK ? written : added;
}

int ConfigService::write(const Tree::Place& place, std::string value) {
  Instance& instance = *place.instance;
  if (place.value() == value) return C_RESULT_OK;
  changes_.leafChanged(instance, *place.leaf);
  instance.values[place.leaf->position] = std::move(value);
  return notify(*place.object, instance.name, C_CFM_CHANGED, place.leaf->name);
}

int ConfigService::addInstance(const std::string& instance) {
  Object* object = tree_.ownerOf(instance);
  if (object == nullptr) return C_RESULT_NOT_FOUND;
  if (tree_.findInstance(instance) != nullptr) return C_RESULT_REDUNDANT;
  tree_.addInstance(*object, instance);
  changes_.instanceAdded(*tree_.findInstance(instance));
  return notify(*object, instance, C_CFM_ADDED, "");
}

int ConfigService::deleteInstance(const std::string& instance) {
  Object* object = tree_.ownerOf(instance);
  if (object == nullptr) return C_RESULT_NOT_FOUND;
  if (!object->dynamic) return C_RESULT_PARAM;
  const Instance* existing = tree_.findInstance(instance);
  if (existing == nullptr) return C_RESULT_NOT_FOUND;
  changes_.instanceDeleted(*existing);
  tree_.deleteInstance(*object, instance);
  return notify(*object, instance, C_CFM_DELETED, "");
}

int ConfigService::save(int scope) {
  if (scope != 1) return C_RESULT_PARAM;
  const int result = store_(tree_, changes_);
  if (result == C_RESULT_OK) changes_.clear();
  return result;
}

int ConfigService::saveNothing(Tree& /*tree*/, const Changes& /*changes*/) {
  return C_RESULT_OK;
}

int ConfigService::notify(const Object& object, const std::string& instance, int operation,
                          const std::string& leaf) {
  on_change_({object, instance, operation, leaf});
  const bool notified = observers_.notify(object.number, [&](ICfmObserver& observer) {
    return observer.update(object.number, instance, operation, leaf);
  });
  return notified ? C_RESULT_OK : C_RESULT_SYSTEM_CALL;
}

}  // namespace host
