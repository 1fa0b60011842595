#include "common/code_page.h"

namespace quillmarden {

namespace {

constexpr CodePage kPage = {
#include "code_page.inc"
};

}  // namespace

const CodePage& CodePage::get() { return kPage; }

}  // namespace quillmarden
