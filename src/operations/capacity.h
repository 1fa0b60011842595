#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

struct frmSystemInf;

// Record length and capacity. Each routine returns true on failure, after its message. What works on a whole System
// leaves its locked and deleted tables as they are; whether the System may be changed is for the caller to ask.

/// Lengths of Oracle fields by their digits; of one table when an id is given.
bool gSetOracleFieldLength(Session& session, Host& host, std::string_view system, std::string_view id = "");
/// Lengths by the type catalogue; of one table when an id is given.
bool gSetFieldLength(Session& session, Host& host, std::string_view system, std::string_view id = "");
/// Record length, records per block, capacity in kilobytes and field count of each live table of the System.
bool gCalcCapacity(Session& session, Host& host, std::string_view system);
/// ORA_INITIAL of the live Oracle tables of the System, in thousands of bytes, at least 4096.
bool gCalcOracleInitial(Session& session, Host& host, std::string_view system);

/// What the button that recomputes a whole System runs: all four, in order.
bool recalculateSystem(Session& session, Host& host, std::string_view system);
/// The button of the System screen: asks, then recalculates the System.
void CmdCalc_Click(Session& session, Host& host, frmSystemInf& screen);
/// What follows the save of one table.
bool recalculateTable(Session& session, Host& host, std::string_view system, std::string_view id,
                      std::string_view kind);

struct Capacity {
  double recordLength;
  double recordsPerBlock;
  double kilobytes;
};
/// The arithmetic for one table: rows above 0, sum of field lengths above 0. A block size of 0 counts as 8192, a
/// pctfree that is not between 1 and 99 as 40.
Capacity capacityOf(double rows, double lengthSum, long blockSize, double pctfree);

}  // namespace quillmarden
