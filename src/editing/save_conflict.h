#pragma once

#include <string>
#include <vector>

#include "editing/frm_tb_detail.h"

namespace quillmarden {

// A save that finds other rows than those that were loaded.

/// Who saved the stored rows last, and when; "" where nothing tells.
struct LastSaver {
  std::string user;
  std::string moment;  ///< "yyyy/mm/dd hh:nn:ss"
};

enum class ConflictWay {
  kTheirs,  ///< load what is stored; what was typed is given up
  kMine,    ///< save over it
  kNone,    ///< go on editing
};

/// Tells who has saved the table since the load, and what differs; asks how to go on, unless screen.leave decides.
ConflictWay askConflict(Host& host, const frmTBDetail& screen, const LoadedRows& stored, const LastSaver& saver);

/// Tells what a save over somebody else's has cost: fields that are new ones now, and definitions that pointed at
/// fields that are gone. Says nothing when there is neither.
void tellLost(Host& host, const std::vector<std::string>& renewed, const std::vector<std::string>& lost);

}  // namespace quillmarden
