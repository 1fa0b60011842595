#pragma once

#include <string>
#include <vector>

#include "engine/value.h"

namespace quillmarden {

/// A parameter of a stored query, as its PARAMETERS clause declares it or as a name that is no column.
struct QueryParameter {
  std::string name;
  std::string
      type;  ///< lower-case word of the declared type ("text", "long", "date" and so on); "text" when undeclared
};

/// A named query of the Repository, kept as Access SQL text.
struct QueryDef {
  std::string name;
  std::string sql;
};

/// A value for a parameter. Names are compared without case.
struct ParameterValue {
  std::string name;
  Value value;
};

}  // namespace quillmarden
