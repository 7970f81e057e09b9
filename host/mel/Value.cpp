#include "host/mel/Value.h"

#include <charconv>
#include <cmath>

#include "host/text/Numbers.h"

namespace host::mel {
namespace {

constexpr int kShownDigits = 10;
constexpr int kArrayOffset =
    static_cast<int>(Value::Type::kIntArray) - static_cast<int>(Value::Type::kInt);

// The number that a text begins with, as the language converts it.
double leadingNumber(const std::string& text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string::npos) return 0;
  std::size_t end = start;
  while (end < text.size() &&
         std::string_view("+-.0123456789eE").find(text[end]) != std::string_view::npos) {
    ++end;
  }
  while (end > start) {
    if (const auto number = parseNumber(std::string_view(text).substr(start, end - start)))
      return *number;
    --end;
  }
  return 0;
}

// Ten digits at most, as the language shows a float.
std::string shortNumber(double number) {
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general,
                                 kShownDigits);
  return std::string(buffer, end.ptr);
}

std::string shownVector(const Vector& v) {
  return shortNumber(v[0]) + " " + shortNumber(v[1]) + " " + shortNumber(v[2]);
}

std::string shownMatrix(const Matrix& matrix) {
  std::string text;
  for (std::size_t i = 0; i < matrix.numbers.size(); ++i) {
    text += shortNumber(matrix.numbers[i]);
    text += (i + 1) % matrix.columns == 0 ? '\n' : ' ';
  }
  return text;
}

}  // namespace

Value Value::initial(Type type) {
  switch (type) {
    case Type::kNone:
      return Value();
    case Type::kInt:
      return Value(0);
    case Type::kFloat:
      return Value(0.0);
    case Type::kVector:
      return Value(Vector{0, 0, 0});
    case Type::kString:
      return Value(std::string());
    case Type::kMatrix:
      return Value(Matrix());
    case Type::kIntArray:
      return Value(Ints());
    case Type::kFloatArray:
      return Value(Floats());
    case Type::kVectorArray:
      return Value(Vectors());
    case Type::kStringArray:
      return Value(Strings());
  }
  return Value();
}

std::size_t Value::arraySize() const {
  switch (type()) {
    case Type::kIntArray:
      return ints()->size();
    case Type::kFloatArray:
      return floats()->size();
    case Type::kVectorArray:
      return vectors()->size();
    case Type::kStringArray:
      return strings()->size();
    default:
      return 0;
  }
}

std::size_t Value::textSize() const {
  const auto* text = std::get_if<std::string>(&data_);
  return text == nullptr ? 0 : text->size();
}

int Value::toInt() const {
  if (type() == Type::kInt) return std::get<int>(data_);
  return toInteger(toFloat());
}

double Value::toFloat() const {
  switch (type()) {
    case Type::kInt:
      return std::get<int>(data_);
    case Type::kFloat:
      return std::get<double>(data_);
    case Type::kVector: {
      const Vector& v = std::get<Vector>(data_);
      return std::hypot(v[0], v[1], v[2]);
    }
    case Type::kString:
      return leadingNumber(std::get<std::string>(data_));
    case Type::kNone:
      return 0;
    default:
      return arraySize() == 0 ? 0 : element(0).toFloat();
  }
}

Vector Value::toVector() const {
  if (const Vector* vector = std::get_if<Vector>(&data_)) return *vector;
  if (vectors() != nullptr) return vectors()->empty() ? Vector{0, 0, 0} : vectors()->front();
  const double number = toFloat();
  return {number, number, number};
}

std::string Value::toString() const {
  switch (type()) {
    case Type::kInt:
      return std::to_string(std::get<int>(data_));
    case Type::kFloat:
      return shortNumber(std::get<double>(data_));
    case Type::kVector:
      return shownVector(std::get<Vector>(data_));
    case Type::kMatrix:
      return shownMatrix(std::get<Matrix>(data_));
    case Type::kString:
      return std::get<std::string>(data_);
    case Type::kNone:
      return std::string();
    default:
      return arraySize() == 0 ? std::string() : element(0).toString();
  }
}

bool Value::toTruth() const {
  if (type() == Type::kString) {
    const std::string& text = std::get<std::string>(data_);
    return !text.empty() && text != "0";
  }
  return toFloat() != 0;
}

std::optional<Value> Value::convertedTo(Type wanted) const {
  if (wanted == type()) return *this;
  const bool isTriple = wanted == Type::kVector && type() != Type::kStringArray && arraySize() == 3;
  if (isTriple && type() != Type::kVectorArray)
    return Value(Vector{element(0).toFloat(), element(1).toFloat(), element(2).toFloat()});
  const bool isMany = isArray() && wanted < Type::kIntArray && arraySize() > 1;
  const bool isMatrix = type() == Type::kMatrix || wanted == Type::kMatrix;
  if (type() == Type::kNone || isMany || isMatrix) return std::nullopt;
  switch (wanted) {
    case Type::kNone:
      return std::nullopt;
    case Type::kInt:
      return Value(toInt());
    case Type::kFloat:
      return Value(toFloat());
    case Type::kVector:
      return Value(toVector());
    case Type::kString:
      return Value(toString());
    default:
      break;
  }
  Value array = initial(wanted);
  const std::size_t count = isArray() ? arraySize() : 1;
  for (std::size_t i = 0; i < count; ++i) array.setElement(i, isArray() ? element(i) : *this);
  return array;
}

Value Value::element(std::size_t index) const {
  switch (type()) {
    case Type::kIntArray:
      return Value((*ints())[index]);
    case Type::kFloatArray:
      return Value((*floats())[index]);
    case Type::kVectorArray:
      return Value((*vectors())[index]);
    case Type::kStringArray:
      return Value((*strings())[index]);
    default:
      return *this;
  }
}

void Value::setElement(std::size_t index, const Value& value) {
  const auto store = [index](auto& array, auto element) {
    if (index >= array.size()) array.resize(index + 1);
    array[index] = std::move(element);
  };
  switch (type()) {
    case Type::kIntArray:
      store(*ints(), value.toInt());
      break;
    case Type::kFloatArray:
      store(*floats(), value.toFloat());
      break;
    case Type::kVectorArray:
      store(*vectors(), value.toVector());
      break;
    case Type::kStringArray:
      store(*strings(), value.toString());
      break;
    default:
      break;
  }
}

Value::Strings Value::toWords() const {
  if (type() == Type::kNone) return {};
  if (strings() != nullptr) return *strings();
  Strings words;
  if (isArray()) {
    for (std::size_t i = 0; i < arraySize(); ++i) {
      const Strings own = element(i).toWords();
      words.insert(words.end(), own.begin(), own.end());
    }
    return words;
  }
  const auto addNumbers = [&words](const auto& numbers) {
    for (const double number : numbers) words.push_back(formatNumber(number));
  };
  if (const auto* vector = std::get_if<Vector>(&data_))
    addNumbers(*vector);
  else if (matrix() != nullptr)
    addNumbers(matrix()->numbers);
  else
    words.push_back(type() == Type::kFloat ? formatNumber(toFloat()) : toString());
  return words;
}

std::string Value::toPrinted() const {
  if (!isArray()) return toString();
  std::string text;
  for (std::size_t i = 0; i < arraySize(); ++i) {
    text += element(i).toString();
    text += '\n';
  }
  return text;
}

const char* typeName(Value::Type type) {
  static constexpr const char* kNames[] = {"nothing", "int",   "float",   "vector",   "string",
                                           "matrix",  "int[]", "float[]", "vector[]", "string[]"};
  return kNames[static_cast<int>(type)];
}

Value::Type elementType(Value::Type type) {
  if (type < Value::Type::kIntArray) return type;
  return static_cast<Value::Type>(static_cast<int>(type) - kArrayOffset);
}

Value::Type arrayType(Value::Type type) {
  if (type >= Value::Type::kMatrix || type == Value::Type::kNone) return type;
  return static_cast<Value::Type>(static_cast<int>(type) + kArrayOffset);
}

}  // namespace host::mel
