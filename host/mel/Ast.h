#ifndef MORVANE_HOST_MEL_AST_H_
#define MORVANE_HOST_MEL_AST_H_

#include <memory>
#include <string>
#include <vector>

#include "host/mel/Value.h"

namespace host::mel {

struct AstNode;
using AstPtr = std::unique_ptr<AstNode>;

// One construct of a script. Beside each kind stands what its `text` and `children` hold.
struct AstNode {
  enum class Kind {
    // Expressions.
    kLiteral,       // literal
    kVariable,      // text: name
    kElement,       // children: the array's expression, index
    kArrayLiteral,  // children: elements
    kVector,        // children: numbers; literal: how many rows of equal length they make
    kComponent,     // text: "x", "y" or "z"; children: the vector's expression
    kUnary,         // text: "-" or "!"; children: operand
    kBinary,  // text: operator; children: left, right ("&&" and "||" evaluate the right one when
              // needed)
    kChoice,  // children: condition, when true, when false
    kAssign,  // text: "" or the operator before "="; children: variable or element, value
    kStep,  // text: "++" or "--", literal 1 when written before the variable; children: variable or
            // element
    kCast,  // type; children: operand
    kCommand,  // text: name; children: kWord, or expressions; also back-quoted and name(...) calls
    kWord,     // text: an unquoted word of a command
    // Statements.
    kBlock,      // children: statements, in a scope of their own
    kSequence,   // children: statements
    kDeclare,    // text: name, type, isGlobal; literal: rows and columns of a matrix; children:
                 // initial value, or none
    kIf,         // children: condition, then, or also else
    kWhile,      // children: condition, body
    kDoWhile,    // children: condition, body
    kFor,        // children: start, condition (null: always), step, body
    kForIn,      // text: variable; children: array, body
    kSwitch,     // children: value, then statements, kCase among them
    kCase,       // children: value, or none for default
    kProcedure,  // text: name, type (kNone: gives nothing); children: parameters (kDeclare), then
                 // body
    kBreak,
    kContinue,
    kReturn,  // children: value, or none
  };

  Kind kind;
  std::size_t offset = 0;  // into the script's text
  int depth = 1;           // of the tree below and including this node
  std::string text;
  Value literal;
  Value::Type type = Value::Type::kNone;
  bool isGlobal = false;
  std::vector<AstPtr> children;
};

// A text with its tree. Procedures keep alive the script that declares them.
struct Script {
  std::string origin;
  std::string text;
  AstPtr root;  // kSequence
};

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_AST_H_
