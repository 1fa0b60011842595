#pragma once

#include <functional>
#include <string_view>
#include <vector>

namespace quillmarden {

class Binder;

/// What a control does when a person uses it.
using Handler = std::function<void()>;

/// Runs the handlers of all screens one at a time, and then lets every screen show what they changed: a handler of one
/// screen often changes another's record.
class Turn {
 public:
  /// Runs the handler unless one is running, since handlers yield to the event loop in the middle of their work. A
  /// fault that it throws goes to `tellFault`. True when it ran.
  bool run(const Handler& handler);
  bool running() const { return running_; }
  /// Shows the records of all screens as they stand.
  void refresh();

  /// For the time of a modal screen that a handler opens: its controls work though that handler still runs.
  class Modal {
   public:
    explicit Modal(Turn& turn);
    ~Modal();
    Modal(const Modal&) = delete;
    Modal& operator=(const Modal&) = delete;

   private:
    Turn& turn_;
    bool running_;
  };

  std::function<void(std::string_view fault)> tellFault;
  std::function<void()> begun;   ///< before a handler
  std::function<void()> settle;  ///< behind it: screens that it has ended go
  std::function<void()> ended;   ///< at the end, before the screens are shown anew

 private:
  friend class Binder;
  std::vector<Binder*> binders_;
  bool running_ = false;
};

}  // namespace quillmarden
