#include "host/mel/Evaluator.h"
#include "host/mel/Operators.h"

namespace host::mel {
namespace {

using Kind = AstNode::Kind;

}  // namespace

bool Evaluator::evaluate(const AstNode& node, Value& value) {
  // An expression counts as one step, like a statement. Only the parser bounds the depth of
  // expressions.
  ++state_.depth;
  const bool ok = mayEnter(node) && evaluateInside(node, value) && fitsLimits(node, value);
  --state_.depth;
  return ok;
}

bool Evaluator::evaluateInside(const AstNode& node, Value& value) {
  switch (node.kind) {
    case Kind::kLiteral:
      value = node.literal;
      return true;
    case Kind::kWord:
      value = Value(node.text);
      return true;
    case Kind::kVariable:
      return evaluateVariable(node, value);
    case Kind::kElement:
      return evaluateElement(node, value);
    case Kind::kArrayLiteral:
      return evaluateArray(node, value);
    case Kind::kVector:
      return evaluateVector(node, value);
    case Kind::kComponent:
      return evaluateComponent(node, value);
    case Kind::kUnary:
      return evaluateUnary(node, value);
    case Kind::kBinary:
      return evaluateBinary(node, value);
    case Kind::kChoice:
      return evaluateChoice(node, value);
    case Kind::kAssign:
      return evaluateAssign(node, value);
    case Kind::kStep:
      return evaluateStep(node, value);
    case Kind::kCommand:
      return evaluateCommand(node, value);
    case Kind::kCast:
      break;
    default:
      return fail(node, "not an expression");
  }
  if (!evaluate(*node.children[0], value)) return false;
  const auto converted = value.convertedTo(node.type);
  if (!converted) {
    return fail(node, std::string("cannot convert ") + typeName(value.type()) + " to " +
                          typeName(node.type));
  }
  value = *converted;
  return true;
}

bool Evaluator::evaluateVariable(const AstNode& node, Value& value) {
  const Variable variable = find(node.text);
  if (variable == nullptr) return fail(node, "$" + node.text + " is an undeclared variable");
  value = *variable;
  return true;
}

bool Evaluator::evaluateIndex(const AstNode& node, std::size_t& index) {
  Value value;
  if (!evaluate(node, value)) return false;
  const int number = value.toInt();
  if (number < 0 || static_cast<std::size_t>(number) >= state_.limits.arraySize)
    return fail(node, "index " + std::to_string(number) + " is outside any array");
  index = static_cast<std::size_t>(number);
  return true;
}

// The variable of "$m[i][j]" when it holds a matrix, else null.
Variable Evaluator::matrixOf(const AstNode& element) const {
  const AstNode& row = *element.children[0];
  if (row.kind != Kind::kElement || row.children[0]->kind != Kind::kVariable) return nullptr;
  const Variable variable = find(row.children[0]->text);
  return variable != nullptr && variable->matrix() != nullptr ? variable : nullptr;
}

bool Evaluator::evaluateMatrixIndex(const AstNode& element, const Matrix& matrix,
                                    std::size_t& index) {
  std::size_t row = 0;
  std::size_t column = 0;
  if (!evaluateIndex(*element.children[0]->children[1], row) ||
      !evaluateIndex(*element.children[1], column)) {
    return false;
  }
  if (row >= matrix.rows || column >= matrix.columns) {
    return fail(element, "the matrix has " + std::to_string(matrix.rows) + " rows and " +
                             std::to_string(matrix.columns) + " columns");
  }
  index = row * matrix.columns + column;
  return true;
}

// An element past the end reads as the initial value, as in the host.
bool Evaluator::evaluateElement(const AstNode& node, Value& value) {
  std::size_t index = 0;
  if (const Variable matrix = matrixOf(node)) {
    if (!evaluateMatrixIndex(node, *matrix->matrix(), index)) return false;
    value = Value(matrix->matrix()->numbers[index]);
    return true;
  }
  if (!evaluateIndex(*node.children[1], index)) return false;
  Value held;
  const Value* array = &held;
  const AstNode& source = *node.children[0];
  // A variable's element is read in place: copying the array would make loops over it quadratic.
  const Variable variable = source.kind == Kind::kVariable ? find(source.text) : nullptr;
  if (variable != nullptr)
    array = variable.get();
  else if (!evaluate(source, held))
    return false;
  if (!array->isArray())
    return fail(node, std::string(typeName(array->type())) + " has no elements");
  value = index < array->arraySize() ? array->element(index)
                                     : Value::initial(elementType(array->type()));
  return true;
}

// The elements' common type: text if any is one, else float if any is one.
bool Evaluator::evaluateArray(const AstNode& node, Value& value) {
  std::vector<Value> elements(node.children.size());
  Value::Type type = Value::Type::kInt;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (!evaluate(*node.children[i], elements[i])) return false;
    if (elements[i].isArray() || elements[i].type() == Value::Type::kNone ||
        elements[i].type() == Value::Type::kMatrix) {
      return fail(*node.children[i], "an array cannot hold this");
    }
    type = std::max(type, elements[i].type());
  }
  value = Value::initial(arrayType(elements.empty() ? Value::Type::kString : type));
  for (std::size_t i = 0; i < elements.size(); ++i) value.setElement(i, elements[i]);
  return true;
}

bool Evaluator::evaluateVector(const AstNode& node, Value& value) {
  std::vector<double> numbers;
  for (const AstPtr& child : node.children) {
    if (!evaluate(*child, value)) return false;
    if (!value.isNumber())
      return fail(*child, std::string("a vector cannot hold ") + typeName(value.type()));
    numbers.push_back(value.toFloat());
  }
  const auto rows = static_cast<std::size_t>(node.literal.toInt());
  if (rows == 1 && numbers.size() == 3) {
    value = Value(Vector{numbers[0], numbers[1], numbers[2]});
  } else {
    const std::size_t columns = numbers.size() / rows;
    value = Value(Matrix{rows, columns, std::move(numbers)});
  }
  return true;
}

bool Evaluator::evaluateComponent(const AstNode& node, Value& value) {
  if (!evaluate(*node.children[0], value)) return false;
  if (value.type() != Value::Type::kVector)
    return fail(node, std::string(typeName(value.type())) + " has no component " + node.text);
  value = Value(value.toVector()[static_cast<std::size_t>(node.text[0] - 'x')]);
  return true;
}

bool Evaluator::evaluateUnary(const AstNode& node, Value& value) {
  if (!evaluate(*node.children[0], value)) return false;
  if (node.text == "!")
    value = Value::ofTruth(!value.toTruth());
  else if (!negate(value))
    return fail(node, std::string("cannot negate ") + typeName(value.type()));
  return true;
}

bool Evaluator::evaluateBinary(const AstNode& node, Value& value) {
  if (!evaluate(*node.children[0], value)) return false;
  if (node.text == "&&" || node.text == "||") {
    bool truth = value.toTruth();
    if (truth == (node.text == "&&") && !condition(*node.children[1], truth)) return false;
    value = Value::ofTruth(truth);
    return true;
  }
  const Value left = std::move(value);
  Value right;
  return evaluate(*node.children[1], right) && combine(node, node.text, left, right, value);
}

bool Evaluator::combine(const AstNode& node, const std::string& symbol, const Value& left,
                        const Value& right, Value& value) {
  std::string error;
  return applyOperator(symbol, left, right, value, error) || fail(node, error);
}

bool Evaluator::evaluateChoice(const AstNode& node, Value& value) {
  bool truth = false;
  return condition(*node.children[0], truth) && evaluate(*node.children[truth ? 1 : 2], value);
}

bool Evaluator::evaluateAssign(const AstNode& node, Value& value) {
  const AstNode& target = *node.children[0];
  if (!evaluate(*node.children[1], value)) return false;
  if (!node.text.empty()) {
    Value old;
    const Value right = std::move(value);
    if (!evaluate(target, old) || !combine(node, node.text, old, right, value)) return false;
  }
  return store(target, value);
}

bool Evaluator::evaluateStep(const AstNode& node, Value& value) {
  const AstNode& target = *node.children[0];
  Value stepped;
  if (!evaluate(target, value) ||
      !combine(node, node.text.substr(0, 1), value, Value(1), stepped) || !store(target, stepped)) {
    return false;
  }
  if (node.literal.toInt() != 0) value = std::move(stepped);
  return true;
}

bool Evaluator::storeInMatrix(const AstNode& target, Value& matrix, const Value& value) {
  std::size_t index = 0;
  if (!evaluateMatrixIndex(target, *matrix.matrix(), index)) return false;
  if (!value.isNumber())
    return fail(target, std::string("a matrix cannot hold ") + typeName(value.type()));
  matrix.matrix()->numbers[index] = value.toFloat();
  return true;
}

bool Evaluator::store(const AstNode& target, const Value& value) {
  if (target.kind == Kind::kElement) {
    if (const Variable matrix = matrixOf(target)) return storeInMatrix(target, *matrix, value);
  }
  const bool whole = target.kind == Kind::kVariable;
  const AstNode& name = whole ? target : *target.children[0];
  if (name.kind != Kind::kVariable) return fail(target, "only a variable can be assigned to");
  Variable variable = find(name.text);
  if (variable == nullptr) {
    const Value::Type type = whole ? value.type() : arrayType(value.type());
    if (type == Value::Type::kNone)
      return fail(target, "$" + name.text + " cannot be set to nothing");
    variable = define(name.text, type, false);
  }
  const Value::Type type = whole ? variable->type() : elementType(variable->type());
  if (!whole && !variable->isArray()) return fail(target, "$" + name.text + " is not an array");
  const auto converted = value.convertedTo(type);
  if (!converted) {
    return fail(target,
                std::string("cannot convert ") + typeName(value.type()) + " to " + typeName(type));
  }
  if (whole) {
    *variable = *converted;
    return true;
  }
  std::size_t index = 0;
  if (!evaluateIndex(*target.children[1], index)) return false;
  variable->setElement(index, *converted);
  return true;
}

}  // namespace host::mel
