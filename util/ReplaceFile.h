#ifndef MORVANE_UTIL_REPLACEFILE_H_
#define MORVANE_UTIL_REPLACEFILE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "util/FileIdentity.h"
#include "util/Status.h"

namespace morvane {

// Writes a whole file in place of another such that, whenever the process or the machine stops, the
// name holds either the old file or the complete new one:
//
//   FileReplacer out;
//   if (!out.open(path) || !out.append(bytes, size) || !out.commit()) report(out.status());
//
// The bytes go to a temporary file in the target's folder, which is flushed to the disk and renamed
// over the target by commit(). Without a successful commit() the temporary file is removed, at the
// latest by the destructor, and the target stays as it was; but when only flushing the folder after
// the rename fails, the target is the new file and status() says so. A symbolic link is followed:
// the link stays and the file that it names is replaced. The target's access rights are kept (see
// util/AccessRights.h); a new file gets the usual ones. Hard links to the old file keep the old
// content.
//
// A process that is killed leaves its temporary file, ".morvane-PROCESS-NUMBER.tmp". It hinders
// nobody, and the first file to be replaced in the folder a day later removes it.
//
// Two processes (or threads, each with its own object) may replace the same file at once: each
// writes its own temporary file, and the last commit() wins whole. Of those that expect() the file
// as they read it, one wins and the others fail: from the comparison to the rename commit() holds a
// lock on the target. It waits for that for as many seconds as MORVANE_WAIT in the environment
// says, 10 by default, and then fails. Where files cannot be locked it goes without. On Windows
// there is no such lock; commit() waits as long for programs that hold the target open, and gives
// the name back to a file that was saved since the comparison.
//
// MORVANE_IN_PLACE=1 in the environment lets commit() write into the target instead, so that hard
// links keep naming one file. The new content then waits as TARGET.morvane-copy, whole and flushed,
// until all of it has been copied; a process that is killed meanwhile leaves that and a target that
// is neither old nor new.
//
// After the first failure every call returns false and status() keeps the first reason. (The class
// is not named after the file because a Windows header has a macro of that name.)
class FileReplacer {
 public:
  // Of kReadOnly, "Permission denied" being that of a folder that may not be written.
  static constexpr const char* kReadOnlyReason = "the file is read-only";

  FileReplacer();
  ~FileReplacer();
  FileReplacer(const FileReplacer&) = delete;
  FileReplacer& operator=(const FileReplacer&) = delete;

  // Fails for what could not be opened for writing either: a folder, a folder that does not exist
  // or may not be written, a read-only file. Fails also for anything that is not a regular file (a
  // device, a pipe). Call once.
  bool open(const char* path);

  // Lets commit() fail when the target is another file by then: written, replaced or removed since
  // it had that identity or, for one that is not known, there at all.
  void expect(const FileIdentity& read) {
    expects_ = true;
    read_ = read;
  }

  // Adds bytes at the end. Small pieces are gathered, so calls of a few bytes are cheap.
  bool append(const void* bytes, std::size_t size);

  // Makes the new content the target's. Only true means that every byte, and the new name, are on
  // the disk.
  bool commit();

  // The new file's identity, after a successful commit().
  const FileIdentity& written() const { return written_; }

  // How many other names (hard links) the target has that keep the old content. Good from open()
  // on.
  std::uint64_t otherNames() const { return otherNames_; }

  // Of the first failure, whose text is "cannot write PATH: REASON"; a success when there was none.
  // kChanged: the target is not the file that was expected.
  const Status& status() const { return status_; }

 private:
  struct Target;  // the platform's handles of the folder and the temporary file

  bool flush();
  bool write(const std::uint8_t* bytes, std::size_t size);
  bool fail(const Status& reason);

  std::unique_ptr<Target> target_;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::size_t buffered_ = 0;
  bool expects_ = false;
  std::uint64_t otherNames_ = 0;
  FileIdentity read_;
  FileIdentity written_;
  std::string path_;
  Status status_;
};

}  // namespace morvane

#endif  // MORVANE_UTIL_REPLACEFILE_H_
