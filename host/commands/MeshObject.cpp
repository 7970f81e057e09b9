#include "host/commands/MeshObject.h"

#include <utility>

#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Sets.h"
#include "host/state/HostState.h"

namespace host::mel {

CommandResult addMeshObject(const CommandContext& context, const std::string& command,
                            const std::string& name, MeshData mesh) {
  Scene& scene = context.host().scene;
  std::string error;
  const NodePtr transform = scene.createNode(*NodeType::find("transform"), name, nullptr, &error);
  const NodePtr shape = transform == nullptr
                            ? nullptr
                            : scene.createNode(*NodeType::find("mesh"),
                                               shapeNameFor(transform->name()), transform, &error);
  if (shape == nullptr) return CommandResult::failure(command + ": " + error);
  *shape->mesh = std::move(mesh);
  for (const NodePtr& group : scene.nodesNamed("initialShadingGroup"))
    addMember(group, SelectionItem::of(shape));
  scene.selection.clear();
  scene.selection.add(SelectionItem::of(transform));
  return CommandResult::success(Value::Strings{scene.displayName(transform)});
}

}  // namespace host::mel
