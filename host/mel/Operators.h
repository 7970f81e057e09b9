#ifndef MORVANE_HOST_MEL_OPERATORS_H_
#define MORVANE_HOST_MEL_OPERATORS_H_

#include <string>

#include "host/mel/Value.h"

namespace host::mel {

// `left symbol right` for "+ - * / % ^" and comparisons. Whole numbers wrap at 32 bits. Of vectors,
// "*" is the dot product and "^" the cross product; "<" and its like compare lengths. False with
// the reason in `error` for what the language does not combine.
bool applyOperator(const std::string& symbol, const Value& left, const Value& right, Value& value,
                   std::string& error);

// Changes the sign; false for what has none.
bool negate(Value& value);

Vector cross(const Vector& a, const Vector& b);
double dot(const Vector& a, const Vector& b);

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_OPERATORS_H_
