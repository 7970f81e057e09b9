#include "tools/view/ViewPage.h"

#include "tools/image/PictureFile.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint32_t kThumbnail = 128;  // pixels a side

Json pictureJson(const ViewItem& item) {
  if (!item.picture) return nullptr;
  return {{"url", pictureUrl(*item.picture)},
          {"thumbnail", pictureUrl(scaledDown(*item.picture, kThumbnail))},
          {"width", item.picture->width},
          {"height", item.picture->height},
          {"transparent", item.picture->transparent},
          {"composed", item.picture->composed}};
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
  const Json json = {{"name", toUtf8(item.name)},
                     {"file", toUtf8(item.file)},
                     {"fault", toUtf8(item.fault)},
                     {"missing", toUtf8(item.missing)},
                     {"report", item.report},
                     {"picture", pictureJson(item)},
                     {"pictureFault", toUtf8(item.pictureFault)},
                     {"tile", item.tile ? meshesJson({*item.tile}) : Json(nullptr)},
                     {"goblins", goblinsJson(item.goblins)}};
  const std::string text = inElement(json);
  if (text.size() > kMaxBytes || items_.size() > kMaxBytes - text.size()) return false;
  if (!items_.empty()) items_ += ",\n";
  items_ += text;
  showsSomething_ = showsSomething_ || item.fault.empty();
  return true;
}

std::string ViewPage::html() const {
  std::string page;
  appendAll(viewPageHead(), page);
  page += '[' + items_ + ']';
  appendAll(viewPageTail(), page);
  return page;
}

}  // namespace tools
