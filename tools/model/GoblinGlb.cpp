#include "tools/model/GoblinGlb.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <sstream>

#include "tools/image/PictureFile.h"

namespace tools {
namespace {

constexpr std::size_t kMaxBytes = std::size_t{1} << 30;  // the writer's offsets are ints
constexpr std::size_t kVertexBytes = sizeof(MeshVertex);
constexpr std::size_t kTriangleBytes = 12;
constexpr std::size_t kNodeText = 700;  // of JSON, for a node with its mesh and accessors, at most

// The views that every accessor looks into.
enum View : int { kVertexView, kIndexView, kPictureView };

std::size_t estimatedSize(const GoblinMeshes& goblins) {
  std::size_t size = 0;
  for (const ViewMesh& mesh : goblins.meshes) {
    size += mesh.vertices.size() * kVertexBytes + mesh.triangles.size() * kTriangleBytes +
            2 * mesh.name.size() + kNodeText;
  }
  return size;
}

class GlbBuilder {
 public:
  explicit GlbBuilder(const Picture* picture) {
    model_.asset.version = "2.0";
    model_.asset.generator = "morvane";
    model_.scenes.emplace_back();
    model_.defaultScene = 0;
    if (picture) png_ = pngFile(*picture);
    addMaterial("tile", picture && picture->transparent);
    addMaterial("goblins", false);
  }

  void add(const ViewMesh& mesh, int material);
  std::string finish();

 private:
  void addMaterial(const char* name, bool cutOut);
  void addTexture();
  void addView(const std::vector<unsigned char>& bytes, int target, std::size_t stride);
  int addAccessor(int view, std::size_t offset, int component, int type, std::size_t count);
  int addPrimitive(const ViewMesh& mesh, int material);

  tinygltf::Model model_;
  std::vector<unsigned char> vertices_;
  std::vector<unsigned char> indices_;
  std::vector<unsigned char> png_;
};

// Every material shows both sides, since many goblins are single leaves. Goblins are never cut out,
// since their picture is the ground's.
void GlbBuilder::addMaterial(const char* name, bool cutOut) {
  tinygltf::Material material;
  material.name = name;
  material.doubleSided = true;
  material.alphaMode = cutOut ? "MASK" : "OPAQUE";
  material.pbrMetallicRoughness.metallicFactor = 0;
  material.pbrMetallicRoughness.roughnessFactor = 1;
  if (png_.empty())
    material.pbrMetallicRoughness.baseColorFactor = {0.6, 0.6, 0.6, 1};
  else
    material.pbrMetallicRoughness.baseColorTexture.index = 0;
  model_.materials.push_back(material);
}

int GlbBuilder::addAccessor(int view, std::size_t offset, int component, int type,
                            std::size_t count) {
  tinygltf::Accessor accessor;
  accessor.bufferView = view;
  accessor.byteOffset = offset;
  accessor.componentType = component;
  accessor.type = type;
  accessor.count = count;
  model_.accessors.push_back(accessor);
  return static_cast<int>(model_.accessors.size() - 1);
}

void setBounds(const ViewMesh& mesh, tinygltf::Accessor& accessor) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const auto [low, high] = std::minmax_element(
        mesh.vertices.begin(), mesh.vertices.end(),
        [axis](const MeshVertex& a, const MeshVertex& b) { return a[axis] < b[axis]; });
    accessor.minValues.push_back(static_cast<double>((*low)[axis]));
    accessor.maxValues.push_back(static_cast<double>((*high)[axis]));
  }
}

// Adds the mesh's numbers and returns the index of its mesh in the model.
int GlbBuilder::addPrimitive(const ViewMesh& mesh, int material) {
  constexpr int kFloat = TINYGLTF_COMPONENT_TYPE_FLOAT;
  const std::size_t at = vertices_.size();
  const std::size_t count = mesh.vertices.size();
  tinygltf::Primitive primitive;
  primitive.mode = TINYGLTF_MODE_TRIANGLES;
  primitive.material = material;
  const int position = addAccessor(kVertexView, at, kFloat, TINYGLTF_TYPE_VEC3, count);
  setBounds(mesh, model_.accessors.back());
  primitive.attributes["POSITION"] = position;
  primitive.attributes["NORMAL"] =
      addAccessor(kVertexView, at + 12, kFloat, TINYGLTF_TYPE_VEC3, count);
  primitive.attributes["TEXCOORD_0"] =
      addAccessor(kVertexView, at + 24, kFloat, TINYGLTF_TYPE_VEC2, count);
  primitive.indices = addAccessor(kIndexView, indices_.size(), TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT,
                                  TINYGLTF_TYPE_SCALAR, 3 * mesh.triangles.size());
  appendNumbers(mesh, vertices_, indices_);
  tinygltf::Mesh entry;
  entry.name = mesh.name;
  entry.primitives.push_back(primitive);
  model_.meshes.push_back(entry);
  return static_cast<int>(model_.meshes.size() - 1);
}

void GlbBuilder::add(const ViewMesh& mesh, int material) {
  tinygltf::Node node;
  node.name = mesh.name;
  if (!mesh.triangles.empty()) node.mesh = addPrimitive(mesh, material);
  model_.scenes[0].nodes.push_back(static_cast<int>(model_.nodes.size()));
  model_.nodes.push_back(node);
}

void GlbBuilder::addView(const std::vector<unsigned char>& bytes, int target, std::size_t stride) {
  auto& data = model_.buffers[0].data;
  tinygltf::BufferView view;
  view.buffer = 0;
  view.byteOffset = data.size();
  view.byteLength = bytes.size();
  view.byteStride = stride;
  view.target = target;
  model_.bufferViews.push_back(view);
  data.insert(data.end(), bytes.begin(), bytes.end());
}

void GlbBuilder::addTexture() {
  addView(png_, 0, 0);
  tinygltf::Image image;
  image.name = "picture";
  image.mimeType = "image/png";
  image.bufferView = kPictureView;
  model_.images.push_back(image);
  tinygltf::Sampler sampler;
  sampler.magFilter = TINYGLTF_TEXTURE_FILTER_LINEAR;
  sampler.minFilter = TINYGLTF_TEXTURE_FILTER_LINEAR_MIPMAP_LINEAR;
  sampler.wrapS = TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE;
  sampler.wrapT = TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE;
  model_.samplers.push_back(sampler);
  tinygltf::Texture texture;
  texture.sampler = 0;
  texture.source = 0;
  model_.textures.push_back(texture);
}

std::string GlbBuilder::finish() {
  model_.buffers.emplace_back();
  addView(vertices_, TINYGLTF_TARGET_ARRAY_BUFFER, kVertexBytes);
  addView(indices_, TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER, 0);
  if (!png_.empty()) addTexture();
  std::ostringstream out;
  tinygltf::TinyGLTF().WriteGltfSceneToStream(&model_, out, false, true);
  return out.str();
}

}  // namespace

bool writeGlb(const GoblinMeshes& goblins, const Picture* picture, std::string& glb,
              std::string& fault) {
  if (estimatedSize(goblins) > kMaxBytes) {
    fault = "the goblins would make a file of more than 1 GiB";
    return false;
  }
  GlbBuilder builder(picture);
  builder.add(unitTile(), 0);
  for (const ViewMesh& mesh : goblins.meshes) builder.add(mesh, 1);
  glb = builder.finish();
  return true;
}

}  // namespace tools
