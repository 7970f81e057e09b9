#ifndef MORVANE_UTIL_REPLACEFILETARGET_H_
#define MORVANE_UTIL_REPLACEFILETARGET_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "util/AccessRights.h"
#include "util/FileIdentity.h"
#include "util/ReplaceFile.h"

namespace morvane {

inline Status foundAnother() {
  return {StatusCode::kChanged, "changed since it was read; try again"};
}

std::string temporaryName(unsigned long process, unsigned number);

// Whether temporaryName() gives such names.
bool isTemporaryName(const std::string& name);

// See FileReplacer.
struct SaveSettings {
  int waitSeconds = 10;
  bool inPlace = false;
};

// What a platform does differently about replacing a file; ReplaceFilePosix.cpp and
// ReplaceFileWindows.cpp each define it whole. The destructor removes the file that has the
// temporary name: the temporary file unless commit() renamed it, or the file that it replaced.
struct FileReplacer::Target {
  Target() = default;
  ~Target();
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  // Finds the file to replace and creates the temporary file beside it.
  Status open(const std::string& path, std::uint64_t& otherNames);

  // `written` becomes how many bytes were written, at least 1.
  Status write(const std::uint8_t* bytes, std::size_t size, std::size_t& written);

  // With `expected`, refuses a target that is another file by now: kChanged. `written` becomes the
  // new file's identity.
  Status commit(const FileIdentity* expected, FileIdentity& written);

  SaveSettings settings;

 private:
  Status createTemporary();
  void removeAbandoned();  // files that killed runs left in the folder, a day ago or earlier

#ifdef _WIN32
  Status finishTemporary();
  Status renameOver(const FileIdentity* expected);
  Status writeInPlace(FileIdentity& written);

  void* file_ = nullptr;
  std::wstring targetPath_;     // after links
  std::wstring temporaryPath_;  // empty when there is none to remove
#else
  Status openFolder(std::string path);
  Status inspectTarget(std::uint64_t& otherNames);
  Status finishTemporary(FileIdentity& written);
  Status lockTarget();
  FileIdentity temporaryIdentity() const;
  Status exchange(const FileIdentity& expected, const FileIdentity& written);
  Status renameOver();
  Status renameToTarget();  // where there is none
  Status writeInPlace(FileIdentity& written);

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
