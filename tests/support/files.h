#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace quillmarden {

/// The bytes of a file; none for a missing one.
inline std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

}  // namespace quillmarden
