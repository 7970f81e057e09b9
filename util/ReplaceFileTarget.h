#ifndef MORVANE_UTIL_REPLACEFILETARGET_H_
#define MORVANE_UTIL_REPLACEFILETARGET_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "util/ReplaceFile.h"

namespace morvane {

// What a platform does differently about replacing a file; ReplaceFilePosix.cpp and
// ReplaceFileWindows.cpp each define it whole. Operations return the reason of a failure, an empty
// text when there was none. Destruction removes the temporary file unless commit() renamed it.
struct FileReplacer::Target {
  Target() = default;
  ~Target();
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  // Finds the file to replace and creates the temporary file beside it.
  std::string open(const std::string& path);

  // Returns how many bytes were written, at least 1; 0 with a reason on failure.
  std::size_t write(const std::uint8_t* bytes, std::size_t size, std::string& reason);

  std::string commit();

 private:
  std::string createTemporary();
  void removeAbandoned();  // what runs that were killed left in the folder, a day ago or earlier

#ifdef _WIN32
  void* file_ = nullptr;
  std::string targetPath_;
  std::string temporaryPath_;
#else
  std::string openFolder(std::string path);
  std::string inspectTarget();

  int folder_ = -1;
  int file_ = -1;
  std::string targetName_;     // within the folder
  std::string temporaryName_;  // within the folder; empty when there is none to remove
  bool exists_ = false;        // the target; the rest is known only then
  unsigned mode_ = 0;
  unsigned owner_ = 0;
  unsigned group_ = 0;
#endif
};

}  // namespace morvane

#endif  // MORVANE_UTIL_REPLACEFILETARGET_H_
