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
  bool gridOnly = false;          ///< of `show`
  std::string gridFile;           ///< of `save`
  bool newSystem = false;         ///< of `system`
  std::vector<std::string> sets;  ///< of `system`: NAME=VALUE
  bool full = false;
  bool runnable = false;
  std::string valueList;     ///< of `value-list`; "" for the list of all
  std::string valueType;     ///< 型, to filter by or to save
  std::string memo;          ///< 内容 of a value list to save
  std::string allowOthers;   ///< whether a value list is to be shared: "yes", "no", "" to leave it
  bool withShared = false;   ///< of `value-list`: those that other Systems share as well
  std::string saveFile;      ///< of `value-list` and `memo`; "" to show
  std::string output;        ///< "" for the file in the System's folder
  std::string outputFolder;  ///< of `layout`; "" for the System's folder
  bool check = false;        ///< of `format-file`
  int mode = 0;              ///< of `er`
  bool foreignOnly = false;  ///< of `er`
  bool fields = false;       ///< of `list`
  std::string query;         ///< of `report`
  std::vector<std::string> parameters;
  std::string rowList;    ///< of `alter` and `snippet`: "1,3-5"; "" for all rows
  std::string alterMode;  ///< "add" or "change"
  int snippetIndex = 0;
};

}  // namespace quillmarden
