#ifndef MORVANE_TOOLS_VIEW_VIEWPAGE_H_
#define MORVANE_TOOLS_VIEW_VIEWPAGE_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tools/image/Picture.h"
#include "tools/model/GoblinMeshes.h"
#include "tools/model/TileFile.h"
#include "tools/model/TilePlacement.h"

namespace tools {

// A layer of the document that an entry shows, in the document's order.
struct ViewLayer {
  const char* section = "layer";  // or "group", above a group's layers, or "end", below them
  bool clipped = false;
  std::optional<LayerPicture> pixels;
};

// The file that an entry is compared with.
struct ViewBefore {
  std::string file;  // empty: there was none
  Goblins goblins;
};

// One entry of the page: a PSD file, or a tile of a scene. Texts may hold any bytes.
struct ViewItem {
  std::string name;               // what the list shows
  std::string group;              // below which heading: a folder, or a scene
  std::string file;               // where it comes from
  std::string fault;              // why there is nothing else to show; empty when there is
  std::string missing;            // what of a scene's tile is not shown as Maya shows it; or empty
  nlohmann::ordered_json report;  // of the file or texture, as `info --json`; null: none
  std::optional<Picture> picture;
  std::optional<Picture> composite;  // what the layers show, beside a picture that is not that
  std::vector<ViewLayer> layers;
  std::string pictureFault;                // why there is no picture
  std::optional<ViewMesh> tile;            // none: the unit tile
  std::optional<TilePlacement> placement;  // none: the scene is not known
  std::string unit;                        // of the scene's lengths; empty: likewise
  Goblins goblins;
  std::optional<ViewBefore> before;
};

// What holds for all entries.
struct ViewSettings {
  std::optional<unsigned> triangles;              // more than these in one tile are over the budget
  std::optional<unsigned> pixels;                 // likewise the longer side of a texture
  std::size_t maxBytes = std::size_t{256} << 20;  // of the whole page
};

// Gathers entries into one HTML page that needs nothing but itself.
class ViewPage {
 public:
  explicit ViewPage(ViewSettings settings = {}) : settings_(settings) {}

  // False, adding nothing, when the entries would be over the limit. The pixels of single layers
  // are left out instead when all that there are would take more than half of it.
  bool add(const ViewItem& item);

  // Whether an entry without a fault was added.
  bool showsSomething() const { return showsSomething_; }
  // Entries whose layers' pixels were left out.
  std::size_t withoutLayers() const { return withoutLayers_; }
  std::string html() const;

  static constexpr std::uint32_t kMaxPicture = 1024;  // pixels a side

 private:
  bool fits(std::size_t bytes) const {
    return bytes <= settings_.maxBytes && items_.size() <= settings_.maxBytes - bytes;
  }

  ViewSettings settings_;
  std::string items_;  // JSON, without the brackets around all
  std::size_t layerBytes_ = 0;
  std::size_t withoutLayers_ = 0;
  bool showsSomething_ = false;
};

// What stands before and behind the entries, made by the build from the files in tools/page. Null
// when the program was built without the page.
const char* const* viewPageHead();
const char* const* viewPageTail();

}  // namespace tools

#endif  // MORVANE_TOOLS_VIEW_VIEWPAGE_H_
