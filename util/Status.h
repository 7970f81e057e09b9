#ifndef MORVANE_UTIL_STATUS_H_
#define MORVANE_UTIL_STATUS_H_

#include <string>
#include <utility>

namespace morvane {

enum class StatusCode {
  kOk,
  kNotFound,     // no file, layer or goblin of that name
  kNotAllowed,   // the caller may not read or write the file
  kBadArgument,  // the caller's own values cannot be used
  kDamaged,      // the data breaks its format
  kUnsupported,  // the data is sound, but of a kind that is not handled
  kNoRoom,       // the image has too few pixels for the data
  kOutOfMemory,
  kCannotRead,   // any other reason why a file is not read
  kCannotWrite,  // any other reason why a file is not written
};

// What became of an operation: a code for programs, and for people one clause without a capital and
// without a period ("layer 3: 12 bytes wanted, 4 there"). A new status is a success.
class [[nodiscard]] Status {
 public:
  Status() = default;
  Status(StatusCode code, std::string text) : code_(code), text_(std::move(text)) {}

  bool ok() const { return code_ == StatusCode::kOk; }
  StatusCode code() const { return code_; }
  const std::string& text() const { return text_; }  // empty for a success

 private:
  StatusCode code_ = StatusCode::kOk;
  std::string text_;
};

}  // namespace morvane

#endif  // MORVANE_UTIL_STATUS_H_
