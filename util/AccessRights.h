#ifndef MORVANE_UTIL_ACCESSRIGHTS_H_
#define MORVANE_UTIL_ACCESSRIGHTS_H_

#ifndef _WIN32

#include <sys/stat.h>

#include <string>
#include <utility>
#include <vector>

#include "util/Status.h"

namespace morvane {

// Who may do what with a file, to be given to the file that takes its place: permissions without
// the set-id bits, owner, group, POSIX access list, and the extended attributes whose names begin
// with "user.". What cannot be kept is never replaced by something wider.
class AccessRights {
 public:
  // `status` is the file's.
  Status readFrom(const std::string& path, const struct stat& status);

  // Gives these rights to a file that is the caller's own and open for writing. The file keeps
  // nothing that it inherited from its folder.
  Status giveTo(int file) const;

 private:
  Status readAttributes(const std::string& path);
  Status permit(int file, bool hasGroup) const;

  mode_t mode_ = 0;
  uid_t owner_ = 0;
  gid_t group_ = 0;
  std::string accessList_;  // as the system stores it; empty when there is none
  std::vector<std::pair<std::string, std::string>> attributes_;
};

}  // namespace morvane

#endif  // _WIN32

#endif  // MORVANE_UTIL_ACCESSRIGHTS_H_
