#ifndef MORVANE_HOST_MEL_PARSER_H_
#define MORVANE_HOST_MEL_PARSER_H_

#include <memory>
#include <string>
#include <string_view>

#include "host/mel/Ast.h"
#include "host/mel/Interpreter.h"

namespace host::mel {

// Deepest nesting of constructs that a script may have; what is deeper is an error, not an
// exhausted stack.
constexpr int kMaxNesting = 500;

// The script's tree. Null when the text is not a script; `failure` then says where and why.
std::shared_ptr<const Script> parseScript(std::string_view text, const std::string& origin,
                                          Failure& failure);

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_PARSER_H_
