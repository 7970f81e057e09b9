#ifndef MORVANE_UTIL_FILELOCK_H_
#define MORVANE_UTIL_FILELOCK_H_

#ifndef _WIN32

#include "util/Status.h"

namespace morvane {

// Takes the advisory lock on the whole of an open file that may be written, and waits for it for
// `seconds`. The lock is the descriptor's, not the process's: threads that open a file each exclude
// one another, and closing the descriptor lets it go. kCannotWrite when somebody keeps it for
// longer; a success when it is taken, or the file system has no locks.
Status lockFile(int file, int seconds);

}  // namespace morvane

#endif  // _WIN32

#endif  // MORVANE_UTIL_FILELOCK_H_
