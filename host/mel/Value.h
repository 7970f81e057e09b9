#ifndef MORVANE_HOST_MEL_VALUE_H_
#define MORVANE_HOST_MEL_VALUE_H_

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace host::mel {

using Vector = std::array<double, 3>;

constexpr std::size_t kMaxMatrixSize = 65536;  // numbers in one matrix

struct Matrix {
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<double> numbers;  // row by row
};

// A value of the command language: nothing, an int, a float (64 bits), a vector, a text, a matrix,
// or an array of one of these but matrices.
class Value {
 public:
  enum class Type {
    kNone,
    kInt,
    kFloat,
    kVector,
    kString,
    kMatrix,
    kIntArray,
    kFloatArray,
    kVectorArray,
    kStringArray
  };
  using Ints = std::vector<int>;
  using Floats = std::vector<double>;
  using Vectors = std::vector<Vector>;
  using Strings = std::vector<std::string>;

  Value() = default;
  Value(int number) : data_(number) {}
  Value(double number) : data_(number) {}
  Value(const Vector& vector) : data_(vector) {}
  Value(std::string text) : data_(std::move(text)) {}
  Value(const char* text) : data_(std::string(text)) {}
  Value(Matrix matrix) : data_(std::move(matrix)) {}
  Value(Ints numbers) : data_(std::move(numbers)) {}
  Value(Floats numbers) : data_(std::move(numbers)) {}
  Value(Vectors vectors) : data_(std::move(vectors)) {}
  Value(Strings texts) : data_(std::move(texts)) {}
  static Value ofTruth(bool truth) { return Value(truth ? 1 : 0); }

  // The value that a variable of this type has before anything is assigned to it.
  static Value initial(Type type);

  Type type() const { return static_cast<Type>(data_.index()); }
  bool isArray() const { return type() >= Type::kIntArray; }
  bool isNumber() const { return type() == Type::kInt || type() == Type::kFloat; }
  std::size_t arraySize() const;  // 0 unless an array
  std::size_t textSize() const;   // in bytes; 0 unless a text

  // Conversions as assignment makes them: a text reads as the number it holds, else 0; a vector as
  // its length, and a number as a vector of three such numbers; an array gives its first element;
  // nothing gives 0 and the empty text. A text shows ten digits of a float.
  int toInt() const;
  double toFloat() const;
  Vector toVector() const;
  std::string toString() const;
  bool toTruth() const;  // a text is true when it is not empty and not "0"

  // Converts the value to what a variable of `type` holds. A single value becomes an array of one.
  // An array becomes a single value only when it has at most one element, or a vector when it has
  // three numbers. Null when `type` cannot hold it.
  std::optional<Value> convertedTo(Type type) const;

  // Array access; `index` must be in range.
  Value element(std::size_t index) const;
  // Grows the array with initial values to reach `index`, then stores.
  void setElement(std::size_t index, const Value& value);

  // One text for each element (or one for a single value, none for nothing), as words of a command:
  // numbers with all their digits, vectors and matrices as their numbers.
  Strings toWords() const;

  // The text that `print` shows: each element of an array and each row of a matrix ends with a line
  // feed.
  std::string toPrinted() const;

  Ints* ints() { return std::get_if<Ints>(&data_); }
  Floats* floats() { return std::get_if<Floats>(&data_); }
  Vectors* vectors() { return std::get_if<Vectors>(&data_); }
  Strings* strings() { return std::get_if<Strings>(&data_); }
  const Ints* ints() const { return std::get_if<Ints>(&data_); }
  const Floats* floats() const { return std::get_if<Floats>(&data_); }
  const Vectors* vectors() const { return std::get_if<Vectors>(&data_); }
  Matrix* matrix() { return std::get_if<Matrix>(&data_); }
  const Matrix* matrix() const { return std::get_if<Matrix>(&data_); }
  const Strings* strings() const { return std::get_if<Strings>(&data_); }

 private:
  // In the order of `Type`.
  std::variant<std::monostate, int, double, Vector, std::string, Matrix, Ints, Floats, Vectors,
               Strings>
      data_;
};

const char* typeName(Value::Type type);  // "int", "string[]", ...
Value::Type elementType(Value::Type type);
Value::Type arrayType(Value::Type type);

using NamedValues = std::map<std::string, Value, std::less<>>;

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_VALUE_H_
