#pragma once

#include <stdexcept>
#include <string>

namespace quillmarden {

enum class WorkbookFault {
  NotFound,          ///< no such file
  Unreadable,        ///< the file is there and can't be read
  OldBinaryForm,     ///< a workbook from before the package form; see convert.h
  Encrypted,         ///< a package behind a password
  NotAWorkbook,      ///< no package, or a package of something else
  Damaged,           ///< cut, inconsistent, or XML that is none
  TooLarge,          ///< unpacks to more than the limits allow
  BadSheetName,      ///< empty, too long, or with a character that names can't hold
  BadAddress,        ///< no cell or range, or one outside a sheet
  BadValue,          ///< a value that a workbook can't hold
  CannotWrite,       ///< the disk is full, the folder is missing, no rights
  Stopped,           ///< the person asked for it
  ConverterMissing,  ///< LibreOffice is not installed
  ConversionFailed,  ///< LibreOffice gave no workbook, or not in time
};

/// What ended an operation on a workbook. The text is for a person and names the place; `part` is the package part
/// or the file that it happened in, "" where none is to blame. A workbook that threw while it was read must not be
/// used further; a failed save leaves it as it was.
class WorkbookError : public std::runtime_error {
 public:
  WorkbookError(WorkbookFault fault, std::string part, const std::string& text)
      : std::runtime_error(part.empty() ? text : part + ": " + text), fault_(fault), part_(std::move(part)) {}

  WorkbookFault fault() const { return fault_; }
  const std::string& part() const { return part_; }

 private:
  WorkbookFault fault_;
  std::string part_;
};

}  // namespace quillmarden
