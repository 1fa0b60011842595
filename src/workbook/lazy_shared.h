#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace quillmarden {

/// A value that several books share until one changes it, and that is made when it is first asked for: the making
/// serves all that share it.
template <class T>
class LazyShared {
 public:
  template <class Make>
  const T& get(const Make& make) const {
    if (!box_->value) box_->value.emplace(make());
    return *box_->value;
  }

  /// The value for this owner alone.
  template <class Make>
  T& edit(const Make& make) {
    get(make);
    if (box_.use_count() > 1) box_ = std::make_shared<Box>(*box_);
    return *box_->value;
  }

  void set(T value) {
    box_ = std::make_shared<Box>();
    box_->value.emplace(std::move(value));
  }

 private:
  struct Box {
    std::optional<T> value;
  };
  std::shared_ptr<Box> box_ = std::make_shared<Box>();
};

}  // namespace quillmarden
