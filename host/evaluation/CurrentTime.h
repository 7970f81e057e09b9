#ifndef MORVANE_HOST_EVALUATION_CURRENTTIME_H_
#define MORVANE_HOST_EVALUATION_CURRENTTIME_H_

#include "host/attribute/AttributeValue.h"
#include "host/scene/Node.h"

namespace host {

// The node whose outTime is the current time; null when there is none.
NodePtr timeNode(const Scene& scene);
// Whether a node depends on the current time without a connection from the time node.
bool isDrivenByTime(const Node& node);

// In frames.
double currentTime(const Scene& scene);
void setCurrentTime(Scene& scene, double frame);

// Sets the current time while it lives, to read values at another time. Nothing that keeps up with
// the scene notices.
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
