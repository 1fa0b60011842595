#pragma once

namespace quillmarden {

struct Application;

/// The small screen with a stop button that stands during long outputs.
struct frmSTOP {
  bool pressed = false;  ///< what the running loop asks for through Host::dialogs::stopRequested
};

void CmdStop_Click(frmSTOP& screen);

/// Shows the stop screen for as long as a run lasts.
class StopScreen {
 public:
  explicit StopScreen(Application& app);
  ~StopScreen();
  StopScreen(const StopScreen&) = delete;
  StopScreen& operator=(const StopScreen&) = delete;

 private:
  Application& app_;
};

}  // namespace quillmarden
