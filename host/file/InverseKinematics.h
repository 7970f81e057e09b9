#ifndef MORVANE_HOST_FILE_INVERSEKINEMATICS_H_
#define MORVANE_HOST_FILE_INVERSEKINEMATICS_H_

#include <string>

#include "host/scene/Scene.h"

namespace host {

// What is to be said of a scene that is looked at at another time than it was saved at: joints that
// handles turn, which move with the time, stay as they were saved. Empty when there is none such.
std::string noteOfHandles(const Scene& scene);

}  // namespace host

#endif  // MORVANE_HOST_FILE_INVERSEKINEMATICS_H_
