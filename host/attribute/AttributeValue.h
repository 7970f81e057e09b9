#ifndef MORVANE_HOST_ATTRIBUTE_ATTRIBUTEVALUE_H_
#define MORVANE_HOST_ATTRIBUTE_ATTRIBUTEVALUE_H_

#include <string>
#include <variant>
#include <vector>

namespace host {

// A value that the host does not interpret: the words of the statement that set it, so that a saved
// scene repeats them. `type` is the word after -type, or empty.
struct KeptWords {
  std::string type;
  std::vector<std::string> words;
};

// Never set; a number (truth values, integers, enumerations, floats; angles in degrees, lengths in
// centimetres); a text; numbers (a matrix row by row, doubleArray, Int32Array, vectorArray); texts
// (stringArray, componentList); anything else as written.
using AttributeValue = std::variant<std::monostate, double, std::string, std::vector<double>,
                                    std::vector<std::string>, KeptWords>;

// What a node remembers of one plug.
struct AttributeState {
  enum class Flag : unsigned char { kUnset, kOff, kOn };

  std::string path;  // as Plug::path
  AttributeValue value;
  Flag locked = Flag::kUnset;
  Flag keyable = Flag::kUnset;
  Flag channelBox = Flag::kUnset;
  Flag caching = Flag::kUnset;
  Flag altered = Flag::kUnset;  // kOn or kUnset: set although something is connected into it
};

}  // namespace host

#endif  // MORVANE_HOST_ATTRIBUTE_ATTRIBUTEVALUE_H_
