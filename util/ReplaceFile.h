#ifndef MORVANE_UTIL_REPLACEFILE_H_
#define MORVANE_UTIL_REPLACEFILE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace morvane {

// Writes a whole file in place of another such that, whenever the process or the machine stops, the
// name holds either the old file or the complete new one:
//
//   FileReplacer out;
//   if (!out.open(path) || !out.append(bytes, size) || !out.commit()) report(out.error());
//
// The bytes go to a temporary file in the target's folder, which is flushed to the disk and renamed
// over the target by commit(). Without a successful commit() the temporary file is removed, at the
// latest by the destructor, and the target stays as it was; but when only flushing the folder after
// the rename fails, the target is the new file and error() says so. A symbolic link is followed:
// the link stays and the file that it names is replaced. The target's permissions are kept, and its
// owner and group where the caller may set them; access lists and other attributes are not. A new
// file gets the usual permissions. Hard links to the old file keep the old content.
//
// A process that is killed leaves its temporary file, ".morvane-PROCESS-NUMBER.tmp" ("morvane-..."
// on Windows). It hinders nobody, and the first file to be replaced in the folder a day later
// removes it.
//
// Two processes (or threads, each with its own object) may replace the same file at once: each
// writes its own temporary file, and the last commit() wins whole.
//
// After the first failure every call returns false and error() keeps the first reason. (The class
// is not named after the file because a Windows header has a macro of that name.)
class FileReplacer {
 public:
  FileReplacer();
  ~FileReplacer();
  FileReplacer(const FileReplacer&) = delete;
  FileReplacer& operator=(const FileReplacer&) = delete;

  // Fails for what could not be opened for writing either: a folder, a folder that does not exist
  // or may not be written, a read-only file. Fails also for anything that is not a regular file (a
  // device, a pipe). Call once.
  bool open(const char* path);

  // Adds bytes at the end. Small pieces are gathered, so calls of a few bytes are cheap.
  bool append(const void* bytes, std::size_t size);

  // Makes the new content the target's. Only true means that every byte, and the new name, are on
  // the disk.
  bool commit();

  // "cannot write PATH: REASON" of the first failure; empty when there was none.
  const std::string& error() const { return error_; }

 private:
  struct Target;  // the platform's handles of the folder and the temporary file

  bool flush();
  bool write(const std::uint8_t* bytes, std::size_t size);
  bool fail(const std::string& reason);

  std::unique_ptr<Target> target_;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::size_t buffered_ = 0;
  std::string path_;
  std::string error_;
};

}  // namespace morvane

#endif  // MORVANE_UTIL_REPLACEFILE_H_
