#ifndef MORVANE_TESTS_UTIL_REPLACEFILEFIXTURE_H_
#define MORVANE_TESTS_UTIL_REPLACEFILEFIXTURE_H_

#include <string>

#include "tests/util/ScopedVariable.h"
#include "tests/util/ScratchFolder.h"
#include "util/ReplaceFile.h"

namespace morvane {

// Links, full disks, refused targets and what a failed save leaves are looked at in tests/faults.
class ReplaceFile : public ScratchFolder {
 protected:
  // Replaces the file; the error, or an empty text.
  std::string replace(const std::string& file, const std::string& content) {
    FileReplacer out;
    if (out.open(file.c_str()) && out.append(content.data(), content.size()) && out.commit()) {
      EXPECT_TRUE(out.status().ok());
      return std::string();
    }
    EXPECT_FALSE(out.append("x", 1));
    EXPECT_FALSE(out.commit());
    return out.status().text();
  }
};

}  // namespace morvane

#endif  // MORVANE_TESTS_UTIL_REPLACEFILEFIXTURE_H_
