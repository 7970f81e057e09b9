#include "util/FileLock.h"

#ifndef _WIN32

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

namespace morvane {

namespace {

constexpr timespec kPause = {0, 10'000'000};
constexpr int kPausesInASecond = 100;

// Not waiting for it. Network file systems pass on the kind that Linux has.
bool tryLock(int file) {
#ifdef F_OFD_SETLK
  struct flock whole = {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  return ::fcntl(file, F_OFD_SETLK, &whole) == 0;
#else
  return ::flock(file, LOCK_EX | LOCK_NB) == 0;
#endif
}

}  // namespace

Status lockFile(int file, int seconds) {
  for (long pauses = long{kPausesInASecond} * seconds;; --pauses) {
    if (tryLock(file)) return {};
    if (errno == EINTR) continue;
    if (errno != EAGAIN && errno != EACCES) return {};
    if (pauses <= 0) break;
    ::nanosleep(&kPause, nullptr);
  }
  return {StatusCode::kCannotWrite,
          "another program keeps it locked; waited " + std::to_string(seconds) + " s"};
}

}  // namespace morvane

#endif  // _WIN32
