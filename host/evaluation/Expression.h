#ifndef MORVANE_HOST_EVALUATION_EXPRESSION_H_
#define MORVANE_HOST_EVALUATION_EXPRESSION_H_

#include <string>

#include "host/graph/GraphNode.h"

namespace host {

// Evaluates an expression node. Its `text` has ".I[n]" for inputs and ".O[n]" for outputs, as scene
// files do. It runs variables, operators, control flow and mathematical functions, and nothing
// else. Gives what is wrong, as the types of host/graph do.
std::string evaluateExpression(GraphNode& node, const std::string& text);

}  // namespace host

#endif  // MORVANE_HOST_EVALUATION_EXPRESSION_H_
