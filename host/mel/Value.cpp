#include "host/mel/Value.h"

#include "host/text/Numbers.h"

namespace host::mel {
namespace {

constexpr int kArrayOffset =
    static_cast<int>(Value::Type::kIntArray) - static_cast<int>(Value::Type::kInt);

// The number that a text begins with, as the language converts it.
double leadingNumber(const std::string& text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string::npos) {
    return 0;
  }
  std::size_t end = start;
  while (end < text.size() &&
         std::string_view("+-.0123456789eE").find(text[end]) != std::string_view::npos) {
    ++end;
  }
  while (end > start) {
    if (const auto number = parseNumber(std::string_view(text).substr(start, end - start))) {
      return *number;
    }
    --end;
  }
  return 0;
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
    case Type::kString:
      return Value(std::string());
    case Type::kIntArray:
      return Value(Ints());
    case Type::kFloatArray:
      return Value(Floats());
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
  if (type() == Type::kInt) {
    return std::get<int>(data_);
  }
  return toInteger(toFloat());
}

double Value::toFloat() const {
  switch (type()) {
    case Type::kInt:
      return std::get<int>(data_);
    case Type::kFloat:
      return std::get<double>(data_);
    case Type::kString:
      return leadingNumber(std::get<std::string>(data_));
    case Type::kNone:
      return 0;
    default:
      return arraySize() == 0 ? 0 : element(0).toFloat();
  }
}

std::string Value::toString() const {
  switch (type()) {
    case Type::kInt:
      return std::to_string(std::get<int>(data_));
    case Type::kFloat:
      return formatNumber(std::get<double>(data_));
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
  if (wanted == type()) {
    return *this;
  }
  if (type() == Type::kNone || (isArray() && wanted < Type::kIntArray && arraySize() > 1)) {
    return std::nullopt;
  }
  switch (wanted) {
    case Type::kNone:
      return std::nullopt;
    case Type::kInt:
      return Value(toInt());
    case Type::kFloat:
      return Value(toFloat());
    case Type::kString:
      return Value(toString());
    default:
      break;
  }
  Value array = initial(wanted);
  const std::size_t count = isArray() ? arraySize() : 1;
  for (std::size_t i = 0; i < count; ++i) {
    array.setElement(i, isArray() ? element(i) : *this);
  }
  return array;
}

Value Value::element(std::size_t index) const {
  switch (type()) {
    case Type::kIntArray:
      return Value((*ints())[index]);
    case Type::kFloatArray:
      return Value((*floats())[index]);
    case Type::kStringArray:
      return Value((*strings())[index]);
    default:
      return *this;
  }
}

void Value::setElement(std::size_t index, const Value& value) {
  const auto store = [index](auto& array, auto element) {
    if (index >= array.size()) {
      array.resize(index + 1);
    }
    array[index] = std::move(element);
  };
  switch (type()) {
    case Type::kIntArray:
      store(*ints(), value.toInt());
      break;
    case Type::kFloatArray:
      store(*floats(), value.toFloat());
      break;
    case Type::kStringArray:
      store(*strings(), value.toString());
      break;
    default:
      break;
  }
}

Value::Strings Value::toWords() const {
  if (type() == Type::kNone) {
    return {};
  }
  if (!isArray()) {
    return {toString()};
  }
  if (strings() != nullptr) {
    return *strings();
  }
  Strings words;
  for (std::size_t i = 0; i < arraySize(); ++i) {
    words.push_back(element(i).toString());
  }
  return words;
}

std::string Value::toPrinted() const {
  if (!isArray()) {
    return toString();
  }
  std::string text;
  for (std::size_t i = 0; i < arraySize(); ++i) {
    text += element(i).toString();
    text += '\n';
  }
  return text;
}

const char* typeName(Value::Type type) {
  static constexpr const char* kNames[] = {"nothing", "int",     "float",   "string",
                                           "int[]",   "float[]", "string[]"};
  return kNames[static_cast<int>(type)];
}

Value::Type elementType(Value::Type type) {
  if (type < Value::Type::kIntArray) {
    return type;
  }
  return static_cast<Value::Type>(static_cast<int>(type) - kArrayOffset);
}

Value::Type arrayType(Value::Type type) {
  if (type >= Value::Type::kIntArray || type == Value::Type::kNone) {
    return type;
  }
  return static_cast<Value::Type>(static_cast<int>(type) + kArrayOffset);
}

}  // namespace host::mel
