#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace quillmarden {

/// Keeps the `capacity` values used last, by a text. Pointers hold until the next add() or clear().
template <typename T>
class StatementCache {
 public:
  explicit StatementCache(std::size_t capacity) : capacity_(capacity) {}

  T* find(std::string_view key) {
    const auto place = places_.find(key);
    if (place == places_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, place->second);
    return &place->second->second;
  }

  T& add(std::string key, T value) {
    remove(key);
    if (entries_.size() >= capacity_) remove(entries_.back().first);
    entries_.emplace_front(std::move(key), std::move(value));
    places_.emplace(entries_.front().first, entries_.begin());
    return entries_.front().second;
  }

  void remove(std::string_view key) {
    const auto place = places_.find(key);
    if (place == places_.end()) return;
    const auto entry = place->second;
    places_.erase(place);
    entries_.erase(entry);
  }

  void clear() {
    places_.clear();
    entries_.clear();
  }

 private:
  using Entries = std::list<std::pair<std::string, T>>;
  std::size_t capacity_;
  Entries entries_;  ///< used last first
  std::unordered_map<std::string_view, typename Entries::iterator> places_;
};

}  // namespace quillmarden
