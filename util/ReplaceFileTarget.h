#ifndef MORVANE_UTIL_REPLACEFILETARGET_H_
#define MORVANE_UTIL_REPLACEFILETARGET_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "util/AccessRights.h"
#include "util/FileIdentity.h"
#include "util/ReplaceFile.h"

namespace morvane {

inline constexpr const char* kFoundAnother = "changed since it was read; try again";

// See FileReplacer.
struct SaveSettings {
  int waitSeconds = 10;
  bool inPlace = false;
};

// What a platform does differently about replacing a file; ReplaceFilePosix.cpp and
// ReplaceFileWindows.cpp each define it whole. Operations return the reason of a failure, an empty
// text when there was none. Destruction removes what has the temporary file's name: that file
// unless commit() renamed it, or the one that it took the place of.
struct FileReplacer::Target {
  Target() = default;
  ~Target();
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  // Finds the file to replace and creates the temporary file beside it.
  std::string open(const std::string& path, std::uint64_t& otherNames);

  // Returns how many bytes were written, at least 1; 0 with a reason on failure.
  std::size_t write(const std::uint8_t* bytes, std::size_t size, std::string& reason);

  // With `expected`, refuses a target that is another file by now: `foundAnother` is then true.
  // `written` becomes the new file's identity.
  std::string commit(const FileIdentity* expected, FileIdentity& written, bool& foundAnother);

  SaveSettings settings;

 private:
  std::string createTemporary();
  void removeAbandoned();  // what runs that were killed left in the folder, a day ago or earlier

#ifdef _WIN32
  std::string writeInPlace(FileIdentity& written);

  void* file_ = nullptr;
  std::string targetPath_;
  std::string temporaryPath_;
#else
  std::string openFolder(std::string path);
  std::string inspectTarget(std::uint64_t& otherNames);
  std::string finishTemporary(FileIdentity& written);
  std::string lockTarget();
  FileIdentity temporaryIdentity() const;
  std::string exchange(const FileIdentity& expected, const FileIdentity& written,
                       bool& foundAnother);
  std::string renameOver();
  std::string renameToTarget(bool& foundAnother);  // where there is none
  std::string writeInPlace(FileIdentity& written);

  int folder_ = -1;
  int file_ = -1;
  int target_ = -1;            // locked by commit(); -1 where there is none
  std::string targetPath_;     // after links
  std::string targetName_;     // within the folder
  std::string temporaryName_;  // within the folder; empty when there is none to remove
  bool exists_ = false;        // the target, when it was inspected
  AccessRights rights_;        // its rights, known only then
#endif
};

}  // namespace morvane

#endif  // MORVANE_UTIL_REPLACEFILETARGET_H_
