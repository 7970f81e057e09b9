#ifndef MORVANE_HOST_TEXT_UNIQUENAMES_H_
#define MORVANE_HOST_TEXT_UNIQUENAMES_H_

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace host {

// A name and its trailing number: "pCube12" is "pCube" and 12. A name without one, or with one of
// more than nine digits, is all stem.
struct NumberedName {
  std::string stem;
  long number = -1;  // -1: none

  static NumberedName split(std::string_view name);
};

// What a shape below a transform of that name is called: "pCubeShape12" below "pCube12".
std::string shapeNameFor(std::string_view transformName);

// Finds free numbers without trying the taken ones again and again.
class UniqueNames {
 public:
  // `stem` with the smallest number from `first` up for which `isFree` holds. Names that this gave
  // must then be taken, or freed by `release`.
  std::string next(const std::string& stem, long first,
                   const std::function<bool(const std::string&)>& isFree);

  // The name is free again.
  void release(std::string_view name);

  void clear() { known_.clear(); }

 private:
  // By stem, by first number asked for: below the value everything is taken.
  std::unordered_map<std::string, std::map<long, long>> known_;
};

// `text` with what names cannot hold replaced by underscores. Letters, digits, `_` and `:` stay, a
// digit in front gets an underscore before it, bytes of 128 and more become underscores. Colons in
// front go.
std::string legalName(std::string_view text);

// Whether a text is a name as it is, without a namespace: it can stand in a command without quotes.
bool isLegalName(std::string_view text);

}  // namespace host

#endif  // MORVANE_HOST_TEXT_UNIQUENAMES_H_
