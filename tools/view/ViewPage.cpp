#include "tools/view/ViewPage.h"

#include "tools/image/PictureFile.h"
#include "tools/model/GoblinDiff.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint32_t kThumbnail = 128;  // pixels a side

Json pictureJson(const ViewItem& item) {
  if (!item.picture) return nullptr;
  return {{"url", pictureUrl(*item.picture)},
          {"thumbnail", pictureUrl(scaledDown(*item.picture, kThumbnail))},
          {"composite", item.composite ? Json(pictureUrl(*item.composite)) : Json()},
          {"width", item.picture->width},
          {"height", item.picture->height},
          {"transparent", item.picture->transparent},
          {"composed", item.picture->composed},
          {"black", item.picture->black}};
}

Json layersJson(const std::vector<ViewLayer>& layers) {
  Json list = Json::array();
  for (const ViewLayer& layer : layers) {
    Json json = {{"section", layer.section}, {"clipped", layer.clipped}};
    if (layer.pixels) {
      json["url"] = pictureUrl(layer.pixels->picture);
      json["place"] = {layer.pixels->left, layer.pixels->top};
    }
    list.push_back(std::move(json));
  }
  return list;
}

// The numbers of all meshes one after the other, and how many of them each mesh has.
Json meshesJson(const std::vector<ViewMesh>& meshes) {
  std::vector<std::uint8_t> vertices;
  std::vector<std::uint8_t> indices;
  Json list = Json::array();
  for (const ViewMesh& mesh : meshes) {
    appendNumbers(mesh, vertices, indices);
    list.push_back({mesh.name, mesh.vertices.size(), mesh.triangles.size()});
  }
  return {{"vertices", base64(vertices)}, {"indices", base64(indices)}, {"meshes", list}};
}

Json goblinsJson(const Goblins& goblins) {
  if (!goblins.present) return nullptr;
  const GoblinMeshes meshes = goblinMeshes(goblins);
  Json json = meshesJson(meshes.meshes);
  json["layout"] = goblins.layoutName();
  json["fault"] = toUtf8(goblins.fault);
  json["dropped"] = meshes.dropped;
  return json;
}

Json changeJson(const GoblinChange& change) {
  const auto number = [](const std::optional<std::size_t>& n) { return n ? Json(*n) : Json(); };
  return {{"state", fateName(change.fate)},
          {"old", number(change.before)},
          {"new", number(change.after)},
          {"by", change.by},
          {"what", change.what}};
}

// The changes, and the old meshes of all goblins that are not the same.
Json beforeJson(const ViewItem& item) {
  if (!item.before) return nullptr;
  const GoblinSide before(item.before->goblins);
  const GoblinSide after(item.goblins);
  Json changes = Json::array();
  std::vector<ViewMesh> meshes;
  const GoblinDiff diff = diffGoblins(before, after);
  for (const GoblinChange& change : diff.changes) {
    changes.push_back(changeJson(change));
    if (!change.before) continue;
    changes.back()["mesh"] = meshes.size();
    meshes.push_back(before.meshes.meshes[*change.before]);
  }
  Json json = meshesJson(meshes);
  json["file"] = toUtf8(item.before->file);
  json["same"] = diff.same;
  json["changes"] = changes;
  return json;
}

// As the content of a script element: only ASCII, and no "<" that could end it.
std::string inElement(const Json& json) {
  std::string text;
  for (const char c : json.dump(-1, ' ', true, Json::error_handler_t::replace))
    if (c == '<')
      text += "\\u003c";
    else
      text += c;
  return text;
}

void appendAll(const char* const* pieces, std::string& text) {
  for (; *pieces != nullptr; ++pieces) text += *pieces;
}

}  // namespace

bool ViewPage::add(const ViewItem& item) {
  Json json = {{"name", toUtf8(item.name)},
               {"group", toUtf8(item.group)},
               {"file", toUtf8(item.file)},
               {"fault", toUtf8(item.fault)},
               {"missing", toUtf8(item.missing)},
               {"report", item.report},
               {"picture", pictureJson(item)},
               {"pictureFault", toUtf8(item.pictureFault)},
               {"tile", item.tile ? meshesJson({*item.tile}) : Json(nullptr)},
               {"placement", item.placement ? Json(*item.placement) : Json()},
               {"unit", toUtf8(item.unit)},
               {"before", beforeJson(item)},
               {"goblins", goblinsJson(item.goblins)},
               {"layers", nullptr}};
  std::string text = inElement(json);
  if (!fits(text.size())) return false;
  const Json layers = layersJson(item.layers);
  const std::size_t bytes = layers.dump().size();
  if (layerBytes_ + bytes <= settings_.maxBytes / 2 && fits(text.size() + bytes)) {
    layerBytes_ += bytes;
    json["layers"] = layers;
    text = inElement(json);
  } else {
    ++withoutLayers_;
  }
  if (!items_.empty()) items_ += ",\n";
  items_ += text;
  showsSomething_ = showsSomething_ || item.fault.empty();
  return true;
}

std::string ViewPage::html() const {
  const auto limit = [](const std::optional<unsigned>& n) { return n ? Json(*n) : Json(); };
  const Json budget = {{"triangles", limit(settings_.triangles)},
                       {"pixels", limit(settings_.pixels)}};
  std::string page;
  appendAll(viewPageHead(), page);
  page += "{\"budget\":" + budget.dump() + ",\"items\":[" + items_ + "]}";
  appendAll(viewPageTail(), page);
  return page;
}

}  // namespace tools
