// SPDX-License-Identifier: MIT
// Prints every operation of every interface with its position in the virtual table, counted from 1, and its
// signature. The virtual destructor of a class occupies positions 1 and 2.
#include <cxxabi.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <regex>
#include <string>
#include <typeinfo>

#include "binding/context.h"
#include "binding/handlers.h"
#include "boot/boot_context.h"
#include "boot/module.h"
#include "boot/product_config.h"

namespace {

// A pointer to a virtual member contains the offset of its entry in the virtual table. The lowest bit of the
// offset or, on MIPS, of the following word marks it as virtual.
template <typename Member>
std::size_t position(Member member) {
  std::size_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return (offset & ~std::size_t{1}) / sizeof(void*) + 1;
}

template <typename Member>
std::string signature(Member /*member*/) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(typeid(Member).name(), nullptr, nullptr, &status), &std::free);
  const std::regex string(
      R"(std::(__cxx11::)?basic_string<char, std::char_traits<char>, std::allocator<char> ?>)");
  return std::regex_replace(name.get(), string, "std::string");
}

template <typename Member>
void show(const char* name, Member member) {
  std::printf("%2zu  %-36s %s\n", position(member), name, signature(member).c_str());
}

}  // namespace

int main() {
  show("ILog::record", &ILog::record);

  show("ICfmNode::getType", &ICfmNode::getType);
  show("ICfmNode::getValue", &ICfmNode::getValue);
  show("ICfmNode::reserved5", &ICfmNode::reserved5);
  show("ICfmNode::getLength", &ICfmNode::getLength);

  show("ICfmIterator::next", &ICfmIterator::next);
  show("ICfmIterator::reserved4", &ICfmIterator::reserved4);
  show("ICfmIterator::reserved5", &ICfmIterator::reserved5);
  show("ICfmIterator::name", &ICfmIterator::name);

  show("ICfm::getAttr", &ICfm::getAttr);
  show("ICfm::reserved4", &ICfm::reserved4);
  show("ICfm::setAttr", &ICfm::setAttr);
  show("ICfm::reserved6", &ICfm::reserved6);
  show("ICfm::registObserver", &ICfm::registObserver);
  show("ICfm::unregistObserver", &ICfm::unregistObserver);
  show("ICfm::getNode", &ICfm::getNode);
  show("ICfm::releaseNode", &ICfm::releaseNode);
  show("ICfm::reserved11", &ICfm::reserved11);
  show("ICfm::reserved12", &ICfm::reserved12);
  show("ICfm::reserved13", &ICfm::reserved13);
  show("ICfm::instanceIterator", &ICfm::instanceIterator);
  show("ICfm::releaseIterator", &ICfm::releaseIterator);
  show("ICfm::reserved16", &ICfm::reserved16);
  show("ICfm::setValue", &ICfm::setValue);
  show("ICfm::registDataProvider", &ICfm::registDataProvider);
  show("ICfm::save", &ICfm::save);

  show("IEvent::registObserver", &IEvent::registObserver);
  show("IEvent::unregistObserver", &IEvent::unregistObserver);
  show("IEvent::notify", &IEvent::notify);

  show("IHeartbeat::reserved3", &IHeartbeat::reserved3);
  show("IHeartbeat::reserved4", &IHeartbeat::reserved4);
  show("IHeartbeat::reserved5", &IHeartbeat::reserved5);
  show("IHeartbeat::reserved6", &IHeartbeat::reserved6);
  show("IHeartbeat::reserved7", &IHeartbeat::reserved7);
  show("IHeartbeat::reserved8", &IHeartbeat::reserved8);
  show("IHeartbeat::lock", &IHeartbeat::lock);
  show("IHeartbeat::unlock", &IHeartbeat::unlock);

  show("ILoop::addFd", &ILoop::addFd);
  show("ILoop::delFd", &ILoop::delFd);
  show("ILoop::reserved5", &ILoop::reserved5);
  show("ILoop::run", &ILoop::run);

  show("IContext::init", &IContext::init);
  show("IContext::load", &IContext::load);
  show("IContext::reserved5", &IContext::reserved5);
  show("IContext::getLog", &IContext::getLog);
  show("IContext::getCfm", &IContext::getCfm);
  show("IContext::getEvent", &IContext::getEvent);
  show("IContext::getHeartbeat", &IContext::getHeartbeat);
  show("IContext::getLoop", &IContext::getLoop);
  show("IContext::reserved11", &IContext::reserved11);
  show("IContext::reserved12", &IContext::reserved12);
  show("IContext::debugOut", &IContext::debugOut);
  show("IContext::debugSwitch", &IContext::debugSwitch);
  show("IContext::systemCall", &IContext::systemCall);
  show("IContext::systemCall2", &IContext::systemCall2);
  show("IContext::popenCall", &IContext::popenCall);
  show("IContext::reserved18", &IContext::reserved18);
  show("IContext::registMasterObserver", &IContext::registMasterObserver);
  show("IContext::setTimer", &IContext::setTimer);
  show("IContext::reserved21", &IContext::reserved21);
  show("IContext::reserved22", &IContext::reserved22);
  show("IContext::reserved23", &IContext::reserved23);
  show("IContext::notifyDepends", &IContext::notifyDepends);

  show("ILoopData::handler", &ILoopData::handler);

  show("ITimer::timeArrive", &ITimer::timeArrive);

  show("IEventObserver::update", &IEventObserver::update);

  show("ICfmObserver::update", &ICfmObserver::update);

  show("IDyncDataProvider::dataGet", &IDyncDataProvider::dataGet);

  show("IBootContext::onLoad", &IBootContext::onLoad);
  show("IBootContext::onStart", &IBootContext::onStart);
  show("IBootContext::onConfig", &IBootContext::onConfig);
  show("IBootContext::onRun", &IBootContext::onRun);
  show("IBootContext::onUnconfig", &IBootContext::onUnconfig);
  show("IBootContext::onStop", &IBootContext::onStop);
  show("IBootContext::onUnload", &IBootContext::onUnload);
  show("IBootContext::recvDependence", &IBootContext::recvDependence);

  show("IProductConfig::onLoad", &IProductConfig::onLoad);
  show("IProductConfig::onStart", &IProductConfig::onStart);
  show("IProductConfig::onConfig", &IProductConfig::onConfig);
  show("IProductConfig::onRun", &IProductConfig::onRun);
  show("IProductConfig::onUnconfig", &IProductConfig::onUnconfig);
  show("IProductConfig::onUnload", &IProductConfig::onUnload);
  show("IProductConfig::recvDependence", &IProductConfig::recvDependence);
  show("IProductConfig::productName", &IProductConfig::productName);
  show("IProductConfig::listLibraries", &IProductConfig::listLibraries);
  show("IProductConfig::productVersion", &IProductConfig::productVersion);
}
