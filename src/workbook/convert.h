#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace quillmarden {

/// A workbook in any form that LibreOffice reads, as the bytes of an .xlsx package. LibreOffice runs apart from a
/// person's own (with a profile of its own that is removed afterwards) and is ended at the time limit. Throws
/// WorkbookError: NotFound, ConverterMissing, ConversionFailed.
std::string convertToPackage(const std::filesystem::path& file, std::chrono::seconds limit = std::chrono::seconds(60));

}  // namespace quillmarden
