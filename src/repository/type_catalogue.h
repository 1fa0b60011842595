#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/database.h"

namespace quillmarden {

/// A MAS_FILETYPE row.
struct FileType {
  std::string kind;
  std::string type;
  bool takesDigits = false;  ///< 桁数チェック
  long digits = 0;           ///< 桁数: the fixed length in bytes when no digits are taken
  bool numeric = false;
};

/// The catalogue of one session, read once by its first look-up.
struct TypeCatalogue {
  bool loaded = false;
  std::vector<FileType> types;
  std::unordered_map<std::string, std::size_t> byName;  ///< catalogueKey to the index in types
};

/// The key of a kind and a type: both in lower case, parted by a tab.
std::string catalogueKey(std::string_view kind, std::string_view type);

/// All kinds of MAS_FILE, with a blank one first.
std::vector<std::string> gGetFileKindList(Database& database);

/// Reads the catalogue, at the first call only.
const std::vector<FileType>& gGetFileTypeList(Database& database, TypeCatalogue& catalogue);

/// The row of a kind and type, both compared without case; nullptr when the catalogue has none.
const FileType* gChkFileType(Database& database, TypeCatalogue& catalogue, std::string_view kind,
                             std::string_view type);

/// What generators ask: an unknown type takes digits and is not numeric.
struct DigitRule {
  bool noDigits = false;
  bool numeric = false;
};
DigitRule gFileType_NoDigits(Database& database, TypeCatalogue& catalogue, std::string_view kind,
                             std::string_view type);

/// Whether the server takes the type without the digits that the catalogue asks for, so that a table read from it has
/// none: texts and binaries without a limit, numbers of any size. Both compared without case.
bool takesNoDigitsEither(std::string_view kind, std::string_view type);

// --- the rows that the program itself brings, used by a new Repository and by every login

struct SeedType {
  std::string_view type;
  bool takesDigits;
  int digits;
  bool numeric;
};
struct SeedKind {
  std::string_view kind;
  std::vector<SeedType> types;
};
/// A MAS_FILECONV row.
struct SeedConversion {
  std::string_view fromKind, fromType, toKind, toType;
  bool takesDigits, numeric;
  int wholeDigits, fractionDigits;
};

/// All kinds with their seeds, in the order in which a new Repository lists them.
const std::vector<SeedKind>& seedKinds();
/// The seeds of a kind; an unknown kind has none.
const SeedKind& seedKind(std::string_view kind);
/// The Oracle types that a new Repository carries beside the seeds; a login does not bring them back.
const std::vector<SeedType>& initialOracleTypes();
const std::vector<SeedConversion>& seedConversions();
/// 型_変換 of an Access type, given in lower case; "" for a type that has none.
std::string_view accessTypeConversion(std::string_view lowerCaseType);

/// The columns of MAS_FILETYPE, and a seed as a row of them.
const std::vector<std::string>& fileTypeColumns();
std::vector<Value> fileTypeRow(std::string_view kind, const SeedType& seed);
/// The columns of MAS_FILECONV, and a seed as a row of them.
const std::vector<std::string>& fileConvColumns();
std::vector<Value> fileConvRow(const SeedConversion& seed);

}  // namespace quillmarden
