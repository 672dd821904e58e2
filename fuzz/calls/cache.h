// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_CALLS_CACHE_H
#define CPP2C_FUZZ_CALLS_CACHE_H

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/calls/bridge.h"

inline int neverCalled3(int /*id*/, char* /*name*/, void* /*userdata*/) {
  require(false, "a function that is only passed through is not called");
  return 0;
}

inline int neverCalled4(int /*id*/, char* /*name*/, void* /*userdata*/, void* /*arg*/) {
  return neverCalled3(0, nullptr, nullptr);
}

// The arguments of a lookup that the library passes through.
struct PassedThrough {
  explicit PassedThrough(Input& input)
      : fn3(input.below(2) == 1 ? neverCalled3 : nullptr),
        fn4(input.below(2) == 1 ? neverCalled4 : nullptr) {}

  c_pass_fn3 fn3;
  c_pass_fn4 fn4;
};

// The instance-name cache. It never calls the context.
class Cache {
 public:
  explicit Cache(Bridge& bridge) : bridge_(bridge) { c_dbc_db_destory(); }

  void createInModel() {
    if (!tables_) tables_.emplace();
  }
  void addInModel(int id, const std::string& name, void* userdata) {
    if (tables_) (*tables_)[id][name] = userdata;
  }
  void releaseAllInModel(int id) {
    if (tables_) tables_->erase(id);
  }
  void destroyInModel() {
    tables_.reset();
    created_ = nullptr;
  }

  // Whether the table may be released: not during a lookup in it.
  bool mayReleaseAll(int id) const {
    return std::none_of(walks_.begin(), walks_.end(), [id](const Walk& walk) { return walk.id == id; });
  }

  void create() {
    const bool existed = tables_.has_value();
    void* cache = c_dbc_create();
    createInModel();
    require(cache != nullptr && (!existed || created_ == nullptr || cache == created_), "there is one cache");
    created_ = cache;
  }

  void add() {
    const int id = anyId();
    const char* name = anyName();
    void* userdata = bridge_.input.below(4) == 0 ? nullptr : bridge_.anyUser();
    const Bridge::Scope scope(bridge_, "c_dbc_add_userdata()");
    c_dbc_add_userdata(id, name, userdata);
    addInModel(id, name, userdata);
  }

  void get() {
    const int id = anyId();
    const char* name = anyName();
    const Bridge::Scope scope(bridge_, "c_dbc_get_userdata()");
    requireEqual(shown(c_dbc_get_userdata(id, name)), shown(userdataInModel(id, name)),
                 "the pointer stored under " + described(id, std::string(name)));
  }

  void release() {
    const int id = anyId();
    const char* name = anyName();
    const Bridge::Scope scope(bridge_, "c_dbc_db_release()");
    if (!mayRelease(id, name)) return;
    c_dbc_db_release(id, name);
    if (tables_ && tables_->count(id) == 1) tables_->at(id).erase(name);
  }

  void releaseAll() {
    const int id = anyId();
    const Bridge::Scope scope(bridge_, "c_dbc_db_release_all()");
    if (!mayReleaseAll(id)) return;
    c_dbc_db_release_all(id);
    releaseAllInModel(id);
  }

  void destroy() {
    const Bridge::Scope scope(bridge_, "c_dbc_db_destory()");
    if (!walks_.empty()) return;
    c_dbc_db_destory();
    destroyInModel();
  }

  void lookup() {
    const int id = anyId();
    const bool visits = bridge_.input.below(8) != 7;
    const PassedThrough passed(bridge_.input);
    const Bridge::Scope scope(bridge_, "c_dbc_lookup()");
    walks_.push_back({id, {}, "", passed});
    if (visits && tables_ && tables_->count(id) == 1) {
      for (const auto& [name, userdata] : tables_->at(id)) walks_.back().left.push_back(name);
    }
    c_dbc_lookup(id, visits ? visit : nullptr, passed.fn3, passed.fn4, this);
    require(walks_.back().left.empty(), "c_dbc_lookup() visits every name");
    walks_.pop_back();
  }

 private:
  struct Walk {
    int id;
    std::vector<std::string> left;  // to be visited
    std::string visited;            // by the callback that is running
    PassedThrough passed;
  };

  int anyId() { return bridge_.input.oneOf(kIds); }
  const char* anyName() { return bridge_.input.oneOf(kNames); }

  void* userdataInModel(int id, const std::string& name) const {
    if (!tables_ || tables_->count(id) == 0) return nullptr;
    const auto& table = tables_->at(id);
    const auto found = table.find(name);
    return found != table.end() ? found->second : nullptr;
  }

  // A visited name may be released, but no name that is still to be visited.
  bool mayRelease(int id, const std::string& name) const {
    return std::none_of(walks_.begin(), walks_.end(), [&](const Walk& walk) {
      return walk.id == id && std::count(walk.left.begin(), walk.left.end(), name) > 0;
    });
  }

  static int visit(int id, char* name, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4, void* arg) {
    static_cast<Cache*>(arg)->check(id, name, userdata, fn3, fn4);
    return Bridge::current->input.word();
  }

  void check(int id, const std::string& name, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4) {
    Walk& walk = walks_.back();
    require(!walk.left.empty(), "c_dbc_lookup() visits each name once");
    walk.visited = walk.left.front();
    walk.left.erase(walk.left.begin());
    requireEqual(described(id, name, userdata),
                 described(walk.id, walk.visited, userdataInModel(walk.id, walk.visited)),
                 "a visit by c_dbc_lookup()");
    require(fn3 == walk.passed.fn3 && fn4 == walk.passed.fn4, "a lookup passes its arguments on");
    bridge_.nest();
  }

  Bridge& bridge_;
  std::optional<std::map<int, std::map<std::string, void*>>> tables_;
  std::vector<Walk> walks_;
  void* created_ = nullptr;  // result of c_dbc_create()
};

#endif
