#ifndef MORVANE_HOST_MEL_VALUE_H_
#define MORVANE_HOST_MEL_VALUE_H_

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace host::mel {

// A value of the command language: nothing, an int, a float (64 bits), a text, or an array of one
// of these.
class Value {
 public:
  enum class Type { kNone, kInt, kFloat, kString, kIntArray, kFloatArray, kStringArray };
  using Ints = std::vector<int>;
  using Floats = std::vector<double>;
  using Strings = std::vector<std::string>;

  Value() = default;
  Value(int number) : data_(number) {}
  Value(double number) : data_(number) {}
  Value(std::string text) : data_(std::move(text)) {}
  Value(const char* text) : data_(std::string(text)) {}
  Value(Ints numbers) : data_(std::move(numbers)) {}
  Value(Floats numbers) : data_(std::move(numbers)) {}
  Value(Strings texts) : data_(std::move(texts)) {}
  static Value ofTruth(bool truth) { return Value(truth ? 1 : 0); }

  // The value that a variable of this type has before anything is assigned to it.
  static Value initial(Type type);

  Type type() const { return static_cast<Type>(data_.index()); }
  bool isArray() const { return type() >= Type::kIntArray; }
  bool isNumber() const { return type() == Type::kInt || type() == Type::kFloat; }
  std::size_t arraySize() const;  // 0 unless an array
  std::size_t textSize() const;   // in bytes; 0 unless a text

  // Conversions as assignment makes them: a text reads as the number it holds, else 0; an array
  // gives its first element; nothing gives 0 and the empty text.
  int toInt() const;
  double toFloat() const;
  std::string toString() const;
  bool toTruth() const;  // a text is true when it is not empty and not "0"

  // This value as a variable of `type` holds it. A single value becomes an array of one; an array
  // becomes a single value only when it has one element at most. Null when `type` cannot hold it.
  std::optional<Value> convertedTo(Type type) const;

  // Array access; `index` must be in range.
  Value element(std::size_t index) const;
  // Grows the array with initial values to reach `index`, then stores.
  void setElement(std::size_t index, const Value& value);

  // One text for each element (or one for a single value, none for nothing), as words of a command.
  Strings toWords() const;

  // As `print` shows it: array elements end with a line feed each.
  std::string toPrinted() const;

  Ints* ints() { return std::get_if<Ints>(&data_); }
  Floats* floats() { return std::get_if<Floats>(&data_); }
  Strings* strings() { return std::get_if<Strings>(&data_); }
  const Ints* ints() const { return std::get_if<Ints>(&data_); }
  const Floats* floats() const { return std::get_if<Floats>(&data_); }
  const Strings* strings() const { return std::get_if<Strings>(&data_); }

 private:
  // In the order of `Type`.
  std::variant<std::monostate, int, double, std::string, Ints, Floats, Strings> data_;
};

const char* typeName(Value::Type type);  // "int", "string[]", ...
Value::Type elementType(Value::Type type);
Value::Type arrayType(Value::Type type);

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_VALUE_H_
