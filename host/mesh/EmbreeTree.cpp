#include <embree3/rtcore.h>

#include <limits>

#include "host/mesh/NearTree.h"

namespace host {

namespace {

struct ReleaseDevice {
  void operator()(RTCDevice device) const { rtcReleaseDevice(device); }
};
struct ReleaseScene {
  void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
};

RTCDevice device() {
  static const std::unique_ptr<RTCDeviceTy, ReleaseDevice> shared(rtcNewDevice(nullptr));
  return shared.get();
}

class EmbreeTree : public NearTree {
 public:
  explicit EmbreeTree(std::vector<NearBox> boxes)
      : boxes_(std::move(boxes)), scene_(rtcNewScene(device())) {
    RTCGeometry geometry = rtcNewGeometry(device(), RTC_GEOMETRY_TYPE_USER);
    rtcSetGeometryUserPrimitiveCount(geometry, static_cast<unsigned>(boxes_.size()));
    rtcSetGeometryUserData(geometry, boxes_.data());
    rtcSetGeometryBoundsFunction(geometry, bounds, nullptr);
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(scene_.get(), geometry);
    rtcReleaseGeometry(geometry);
    rtcCommitScene(scene_.get());
  }

  void search(const float (&from)[3], NearSearch& search) const override {
    RTCPointQuery query{};
    query.x = from[0];
    query.y = from[1];
    query.z = from[2];
    query.radius = std::numeric_limits<float>::infinity();
    RTCPointQueryContext context;
    rtcInitPointQueryContext(&context);
    rtcPointQuery(scene_.get(), &query, &context, visit, &search);
  }

 private:
  static void bounds(const RTCBoundsFunctionArguments* arguments) {
    const auto* boxes = static_cast<const NearBox*>(arguments->geometryUserPtr);
    const NearBox& box = boxes[arguments->primID];
    RTCBounds& bounds = *arguments->bounds_o;
    bounds.lower_x = box.low[0];
    bounds.lower_y = box.low[1];
    bounds.lower_z = box.low[2];
    bounds.upper_x = box.high[0];
    bounds.upper_y = box.high[1];
    bounds.upper_z = box.high[2];
  }

  static bool visit(RTCPointQueryFunctionArguments* arguments) {
    auto& search = *static_cast<NearSearch*>(arguments->userPtr);
    const float reach = search.visit(arguments->primID);
    if (reach == arguments->query->radius) return false;
    arguments->query->radius = reach;
    return true;
  }

  std::vector<NearBox> boxes_;
  std::unique_ptr<RTCSceneTy, ReleaseScene> scene_;
};

}  // namespace

std::unique_ptr<NearTree> makeEmbreeTree(std::vector<NearBox> boxes) {
  if (device() == nullptr) return nullptr;
  return std::make_unique<EmbreeTree>(std::move(boxes));
}

}  // namespace host
