#ifndef MORVANE_HOST_EVALUATION_CURRENTTIME_H_
#define MORVANE_HOST_EVALUATION_CURRENTTIME_H_

#include "host/attribute/AttributeValue.h"
#include "host/scene/Node.h"

namespace host {

// The node whose outTime is the current time; null when there is none.
NodePtr timeNode(const Scene& scene);
// Whether a node depends on the current time although nothing needs to be connected into it.
bool isDrivenByTime(const Node& node);

// In frames.
double currentTime(const Scene& scene);
void setCurrentTime(Scene& scene, double frame);

// Sets the current time for as long as it lives, for reading values at another one: nothing that
// keeps up with the scene learns of it.
class AtTime {
 public:
  AtTime(Scene& scene, double frame);
  ~AtTime();
  AtTime(const AtTime&) = delete;
  AtTime& operator=(const AtTime&) = delete;

 private:
  Scene& scene_;
  NodePtr node_;
  AttributeValue before_;
};

}  // namespace host

#endif  // MORVANE_HOST_EVALUATION_CURRENTTIME_H_
