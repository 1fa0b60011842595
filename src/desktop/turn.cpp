#include "desktop/turn.h"

#include <exception>
#include <utility>

#include "desktop/binder.h"

namespace quillmarden {

bool Turn::run(const Handler& handler) {
  if (!handler || running_) {
    refresh();  // what the person changed in the meantime goes back to what the record says
    return false;
  }
  running_ = true;
  if (begun) begun();
  try {
    handler();
    if (settle) settle();
  } catch (const std::exception& error) {
    if (tellFault) tellFault(error.what());
  }
  running_ = false;
  if (ended) ended();
  refresh();
  return true;
}

void Turn::refresh() {
  // A refresh may open or close nothing, so the list stays as it is.
  for (Binder* binder : binders_) binder->refresh();
}

Turn::Modal::Modal(Turn& turn) : turn_(turn), running_(std::exchange(turn.running_, false)) {}

Turn::Modal::~Modal() { turn_.running_ = running_; }

}  // namespace quillmarden
