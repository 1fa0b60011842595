#pragma once

#include <string>
#include <vector>

namespace quillmarden {

/// What the command line says, checked for form but not against any Repository.
struct Options {
  // --- of every command
  std::string repository;
  std::vector<std::string> users;  ///< of `init` all names; of the others the login name alone, "admin" when empty
  std::string dataFolder;          ///< "" for the platform's own place, as with the two below
  std::string tempFolder;
  std::string programFolder;
  std::string now;       ///< "" for the running clock
  std::string computer;  ///< "" for the machine's own name
  std::string answer = "yes";
  std::string encoding = "cp932";

  // --- of single commands
  std::string file;  ///< of `init`
  std::string system;
  std::string table;                ///< of `show` and `save`
  std::vector<std::string> tables;  ///< of the generating commands; empty for all
  std::string title;                ///< of `tables`; "" leaves the list as it opens, as with the filters below
  std::string host;
  std::string tableClass;
  std::string dataClass;
  std::string dataClass2;
  std::string where;
  std::string whereMode;
  std::string rows;
  bool allSystems = false;
  bool withReferences = false;
  bool gridOnly = false;  ///< of `show`
  std::string gridFile;   ///< of `save`
  bool full = false;
  bool runnable = false;
  std::string output;  ///< "" for the file in the System's folder
};

}  // namespace quillmarden
