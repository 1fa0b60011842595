#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/script_file.h"

namespace quillmarden {

/// The options of every command, checked for form but not against any Repository.
struct Options {
  std::string repository;
  std::vector<std::string> users;  ///< of `init` all names; of the others the last one is the login name
  std::string dataFolder;          ///< "" for the platform's own place, as with the two below
  std::string tempFolder;
  std::string programFolder;
  std::string now;       ///< "" for the running clock
  std::string computer;  ///< "" for the machine's own name
  bool answerYes = true;
  std::optional<TextEncoding> encoding;  ///< of generated text files; nothing for the command's own choice
};

}  // namespace quillmarden
