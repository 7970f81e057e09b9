#ifndef MORVANE_UTIL_STATUS_H_
#define MORVANE_UTIL_STATUS_H_

#include <string>
#include <utility>

namespace morvane {

enum class StatusCode {
  kOk,
  kNotFound,     // no file, folder, layer or goblin of that name
  kNotAllowed,   // the caller may not read or write the file, or write into its folder
  kReadOnly,     // the file that is to be replaced is there, and read-only
  kNotAFile,     // a folder, a pipe or a device
  kBadArgument,  // the caller's own values cannot be used
  kOtherKind,    // the content is of another kind than the name says
  kDamaged,      // the data breaks its format
  kUnsupported,  // the data is sound, but of a kind that is not handled
  kTooLarge,     // more bytes than the format or the system takes
  kNoRoom,       // the image has too few pixels for the data
  kNoSpace,      // the disk, or the caller's share of it, is full
  kChanged,      // somebody else writes the file, or has written it since it was read
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

// Hands the status to a caller who asked for it. True for a success.
inline bool reportTo(Status* caller, Status status) {
  const bool ok = status.ok();
  if (caller != nullptr) *caller = std::move(status);
  return ok;
}

}  // namespace morvane

#endif  // MORVANE_UTIL_STATUS_H_
