#pragma once

#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

// Brings the open Repository up to the current schema and catalogue. Every step looks first and adds what is
// missing, so that a second run changes nothing and says nothing. Each returns true on failure, after its message.

/// Adds missing columns, widens 略名, fills 型_変換 of the Access types.
bool ChkApUpDateField(Session& session, Host& host);
bool ChkApUpDate2FileTypeAccess型変換(Session& session, Host& host);
/// Catalogue checks: missing kinds, seeds, clean-up, the old kind 組織, the conversion table and its rows.
bool ChkApUpDate2FileType(Session& session, Host& host);
bool ChkApUpDate2FileTypeConv(Session& session, Host& host);
bool ConvFileType組織2メンバ(Session& session, Host& host);
/// The table MAS_FILECONV and its rows.
bool ensureFileConversions(Session& session, Host& host);

/// What a foreign or very old file lacks beside all that: tables, columns, indexes. Says nothing; a file that
/// takes none of it can still be used, and the reason goes to the log.
void completeSchema(Session& session, Host& host);

/// All steps in the login's order. A failed field addition is also noted in logErrAddField.log. The login goes on
/// in any case.
void upgradeRepository(Session& session, Host& host);

}  // namespace quillmarden
