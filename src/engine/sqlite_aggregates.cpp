#include <cmath>
#include <new>

#include "engine/sqlite_functions.h"

namespace quillmarden {

namespace {

// First and Last: the value of one row of the group, Null included.
struct Kept {
  sqlite3_value* value;
};

template <bool last>
void keepStep(sqlite3_context* context, int, sqlite3_value** arguments) {
  auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, sizeof(Kept)));
  if (kept == nullptr) return sqlite3_result_error_nomem(context);
  if (kept->value != nullptr && !last) return;
  sqlite3_value_free(kept->value);
  kept->value = sqlite3_value_dup(arguments[0]);
  if (kept->value == nullptr) sqlite3_result_error_nomem(context);
}

void keepFinal(sqlite3_context* context) {
  auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, 0));
  if (kept == nullptr) return;
  if (kept->value != nullptr) sqlite3_result_value(context, kept->value);
  sqlite3_value_free(kept->value);
}

// Count, mean and sum of squared distances, kept up to date row by row (Welford), which stays exact where the
// difference of two large sums does not.
struct Spread {
  double count;
  double mean;
  double squares;
};

void spreadStep(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (isNullArgument(arguments[0])) return;
  auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, sizeof(Spread)));
  if (spread == nullptr) return sqlite3_result_error_nomem(context);
  double number = 0;
  try {
    number = numberArgument(arguments[0]);
  } catch (const EngineError& fault) {
    return resultError(context, fault);
  }
  spread->count += 1;
  const double distance = number - spread->mean;
  spread->mean += distance / spread->count;
  spread->squares += distance * (number - spread->mean);
}

template <bool sample, bool root>
void spreadFinal(sqlite3_context* context) {
  const auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, 0));
  if (spread == nullptr || spread->count < (sample ? 2 : 1)) return;
  const double variance = spread->squares / (sample ? spread->count - 1 : spread->count);
  sqlite3_result_double(context, root ? std::sqrt(variance) : variance);
}

void addAggregate(sqlite3* connection, const char* name, Function step, void (*final)(sqlite3_context*)) {
  sqlite3_create_function_v2(connection, name, 1, SQLITE_UTF8 | SQLITE_INNOCUOUS, nullptr, nullptr, step, final,
                             nullptr);
}

}  // namespace

void registerAggregates(sqlite3* connection) {
  addAggregate(connection, "qm_first", keepStep<false>, keepFinal);
  addAggregate(connection, "qm_last", keepStep<true>, keepFinal);
  addAggregate(connection, "qm_stdev", spreadStep, spreadFinal<true, true>);
  addAggregate(connection, "qm_stdevp", spreadStep, spreadFinal<false, true>);
  addAggregate(connection, "qm_var", spreadStep, spreadFinal<true, false>);
  addAggregate(connection, "qm_varp", spreadStep, spreadFinal<false, false>);
}

}  // namespace quillmarden
