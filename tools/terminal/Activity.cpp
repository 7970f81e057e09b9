#include "tools/terminal/Activity.h"

#include <cstdio>

#include "tools/terminal/Text.h"

namespace tools {
namespace {

char activity[512] = "";

}  // namespace

void nowDoing(const char* what, const std::string& on) {
  std::snprintf(activity, sizeof activity, "%s %s", what, printable(on).c_str());
}

const char* currentActivity() {
  return activity;
}

}  // namespace tools
