#include "host/file/SceneInfo.h"

namespace host {

SceneInfo& SceneInfo::current() {
  static SceneInfo info;
  return info;
}

}  // namespace host
