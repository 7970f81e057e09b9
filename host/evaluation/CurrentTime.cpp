#include "host/evaluation/CurrentTime.h"

#include <utility>

#include "host/evaluation/GraphEvaluation.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"

namespace host {
namespace {

constexpr char kOutTime[] = "outTime";

}  // namespace

NodePtr timeNode(const Scene& scene) {
  return scene.findNode("time1");
}

bool isDrivenByTime(const Node& node) {
  return node.type().isA("animCurve") || node.type().name() == "expression";
}

double currentTime(const Scene& scene) {
  const NodePtr node = timeNode(scene);
  return node ? numberOf(node, kOutTime) : 0.0;
}

void setCurrentTime(Scene& scene, double frame) {
  const NodePtr node = timeNode(scene);
  for (const char* const name : {kOutTime, "unwarpedTime"}) {
    const auto plug = node ? Plug::find(node, name) : std::nullopt;
    if (plug) writeValue(*plug, frame);
  }
}

AtTime::AtTime(Scene& scene, double frame) : scene_(scene), node_(timeNode(scene)) {
  if (node_) before_ = std::exchange(node_->values.at(kOutTime).value, frame);
  scene_.flowing->forget();
}

AtTime::~AtTime() {
  if (node_) node_->values.at(kOutTime).value = std::move(before_);
  scene_.flowing->forget();
}

}  // namespace host
