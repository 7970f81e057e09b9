#include "tile/TileMessages.h"

#include <maya/MGlobal.h>

#include "tile/MessageLog.h"
#include "tile/TileLines.h"

namespace morvane {

bool TileMessages::fail(const std::string& error) {
  log(kErrorMark + error + '\n');
  return false;
}

bool TileMessages::fail(const std::string& error, const std::string& explanation) {
  explain(explanation);
  return fail(error);
}

void SpokenMessages::log(const std::string& text) {
  logText(1, text.c_str());
}

void SpokenMessages::explain(const std::string& text) {
  MGlobal::displayError(text.c_str());
}

void SpokenMessages::warn(const std::string& text) {
  MGlobal::displayWarning(text.c_str());
}

}  // namespace morvane
