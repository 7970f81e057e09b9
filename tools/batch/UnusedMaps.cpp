#include "tools/batch/UnusedMaps.h"

#include <algorithm>

#include "tools/scene/SceneDamage.h"

namespace tools {

void UnusedMaps::add(const std::vector<std::string>& folders) {
  if (!folders_) {
    folders_ = folders;
    return;
  }
  const auto isUsed = [&](const std::string& folder) {
    return std::find(folders.begin(), folders.end(), folder) == folders.end();
  };
  folders_->erase(std::remove_if(folders_->begin(), folders_->end(), isUsed), folders_->end());
}

void UnusedMaps::report() const {
  if (folders_)
    reportUnusedMaps(*folders_);
  else
    reportUnusedMaps();
}

}  // namespace tools
