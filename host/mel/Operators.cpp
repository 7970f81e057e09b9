#include "host/mel/Operators.h"

#include <algorithm>
#include <cmath>

namespace host::mel {
namespace {

using Type = Value::Type;

int wrap(long long number) {
  return static_cast<int>(static_cast<unsigned>(number));
}

double ofNumbers(char symbol, double left, double right) {
  switch (symbol) {
    case '+':
      return left + right;
    case '-':
      return left - right;
    case '*':
      return left * right;
    case '/':
      return left / right;
    default:
      return std::fmod(left, right);
  }
}

int ofIntegers(char symbol, long long left, long long right) {
  switch (symbol) {
    case '+':
      return wrap(left + right);
    case '-':
      return wrap(left - right);
    case '*':
      return wrap(left * right);
    case '/':
      return wrap(left / right);
    default:
      return wrap(left % right);
  }
}

bool isComparison(const std::string& symbol) {
  return symbol == "==" || symbol == "!=" || symbol[0] == '<' || symbol[0] == '>';
}

template <class T>
Value compare(const std::string& symbol, const T& left, const T& right) {
  const bool truth = symbol == "=="   ? left == right
                     : symbol == "!=" ? !(left == right)
                     : symbol == "<"  ? left < right
                     : symbol == ">"  ? right < left
                     : symbol == "<=" ? left <= right
                                      : left >= right;
  return Value::ofTruth(truth);
}

bool refuse(const std::string& symbol, const Value& value, std::string& error) {
  error = "'" + symbol + "' cannot take " + typeName(value.type());
  return false;
}

bool isZeroDivision(const std::string& symbol, const Value& right, std::string& error) {
  const bool divides = symbol == "/" || symbol == "%";
  if (divides && right.isNumber() && right.toFloat() == 0) {
    error = "division by zero";
    return true;
  }
  return false;
}

bool ofTexts(const std::string& symbol, const Value& left, const Value& right, Value& value,
             std::string& error) {
  if (isComparison(symbol)) {
    value = compare(symbol, left.toString(), right.toString());
  } else if (symbol == "+") {
    value = Value(left.toString() + right.toString());
  } else {
    error = "'" + symbol + "' cannot take a string";
    return false;
  }
  return true;
}

Vector eachOf(const Vector& a, const Vector& b, char symbol) {
  return {ofNumbers(symbol, a[0], b[0]), ofNumbers(symbol, a[1], b[1]),
          ofNumbers(symbol, a[2], b[2])};
}

bool ofVectors(const std::string& symbol, const Value& left, const Value& right, Value& value,
               std::string& error) {
  const Vector a = left.toVector();
  const Vector b = right.toVector();
  const bool both = left.type() == Type::kVector && right.type() == Type::kVector;
  if (symbol == "==" || symbol == "!=")
    value = compare(symbol, a, b);
  else if (isComparison(symbol))
    value = compare(symbol, left.toFloat(), right.toFloat());
  else if (symbol == "+" || symbol == "-")
    value = Value(eachOf(a, b, symbol[0]));
  else if (symbol == "*")
    value = both ? Value(dot(a, b)) : Value(eachOf(a, b, '*'));
  else if (symbol == "^" && both)
    value = Value(cross(a, b));
  else if (symbol == "/" && right.isNumber())
    value = Value(eachOf(a, b, '/'));
  else
    return refuse(symbol, both || symbol == "/" ? right : left.isNumber() ? left : right, error);
  return true;
}

bool multiply(const Matrix& a, const Matrix& b, Value& value, std::string& error) {
  if (a.columns != b.rows || a.rows * b.columns > kMaxMatrixSize) {
    error = a.columns != b.rows ? "the matrices do not fit each other" : "the matrix is too large";
    return false;
  }
  Matrix product{a.rows, b.columns, std::vector<double>(a.rows * b.columns, 0.0)};
  for (std::size_t i = 0; i < a.rows; ++i) {
    for (std::size_t k = 0; k < a.columns; ++k) {
      for (std::size_t j = 0; j < b.columns; ++j) {
        product.numbers[i * b.columns + j] +=
            a.numbers[i * a.columns + k] * b.numbers[k * b.columns + j];
      }
    }
  }
  value = Value(std::move(product));
  return true;
}

bool ofTwoMatrices(const std::string& symbol, const Matrix& a, const Matrix& b, Value& value,
                   std::string& error) {
  if (symbol == "*") return multiply(a, b, value, error);
  const bool isEqual = a.rows == b.rows && a.columns == b.columns && a.numbers == b.numbers;
  if (symbol == "==" || symbol == "!=") {
    value = Value::ofTruth(isEqual == (symbol == "=="));
    return true;
  }
  if ((symbol != "+" && symbol != "-") || a.rows != b.rows || a.columns != b.columns) {
    error = "'" + symbol + "' cannot take these matrices";
    return false;
  }
  Matrix sum = a;
  for (std::size_t i = 0; i < sum.numbers.size(); ++i)
    sum.numbers[i] = ofNumbers(symbol[0], sum.numbers[i], b.numbers[i]);
  value = Value(std::move(sum));
  return true;
}

bool ofMatrices(const std::string& symbol, const Value& left, const Value& right, Value& value,
                std::string& error) {
  if (left.matrix() != nullptr && right.matrix() != nullptr)
    return ofTwoMatrices(symbol, *left.matrix(), *right.matrix(), value, error);
  const Value& other = left.matrix() != nullptr ? right : left;
  const bool scales = symbol == "*" || (symbol == "/" && left.matrix() != nullptr);
  if (!other.isNumber() || !scales)
    return refuse(symbol, other.isNumber() ? Value(Matrix()) : other, error);
  Matrix scaled = left.matrix() != nullptr ? *left.matrix() : *right.matrix();
  for (double& number : scaled.numbers) number = ofNumbers(symbol[0], number, other.toFloat());
  value = Value(std::move(scaled));
  return true;
}

}  // namespace

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

bool applyOperator(const std::string& symbol, const Value& left, const Value& right, Value& value,
                   std::string& error) {
  for (const Value* side : {&left, &right})
    if (side->isArray() || side->type() == Type::kNone) return refuse(symbol, *side, error);
  if (isZeroDivision(symbol, right, error)) return false;
  if (left.matrix() != nullptr || right.matrix() != nullptr)
    return ofMatrices(symbol, left, right, value, error);
  const Type type = std::max(left.type(), right.type());
  if (type == Type::kString) return ofTexts(symbol, left, right, value, error);
  if (type == Type::kVector) return ofVectors(symbol, left, right, value, error);
  if (isComparison(symbol)) {
    value = compare(symbol, left.toFloat(), right.toFloat());
  } else if (symbol == "^") {
    return refuse(symbol, left, error);
  } else {
    value = type == Type::kInt ? Value(ofIntegers(symbol[0], left.toInt(), right.toInt()))
                               : Value(ofNumbers(symbol[0], left.toFloat(), right.toFloat()));
  }
  return true;
}

bool negate(Value& value) {
  switch (value.type()) {
    case Type::kInt:
      value = Value(wrap(-static_cast<long long>(value.toInt())));
      return true;
    case Type::kFloat:
      value = Value(-value.toFloat());
      return true;
    case Type::kVector: {
      const Vector v = value.toVector();
      value = Value(Vector{-v[0], -v[1], -v[2]});
      return true;
    }
    case Type::kMatrix:
      for (double& number : value.matrix()->numbers) number = -number;
      return true;
    default:
      return false;
  }
}

}  // namespace host::mel
