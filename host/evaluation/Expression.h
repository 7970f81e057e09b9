#ifndef MORVANE_HOST_EVALUATION_EXPRESSION_H_
#define MORVANE_HOST_EVALUATION_EXPRESSION_H_

#include <string>

#include "host/graph/GraphNode.h"

namespace host {

// Works out an expression node: `text` has ".I[n]" for its inputs and ".O[n]" for its outputs, as
// scene files hold it. Only what computes is run: variables, operators, control flow and
// mathematical functions. Gives what is wrong, as a type of host/graph does.
std::string evaluateExpression(GraphNode& node, const std::string& text);

}  // namespace host

#endif  // MORVANE_HOST_EVALUATION_EXPRESSION_H_
