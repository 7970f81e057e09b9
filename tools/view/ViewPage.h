#ifndef MORVANE_TOOLS_VIEW_VIEWPAGE_H_
#define MORVANE_TOOLS_VIEW_VIEWPAGE_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "tools/image/Picture.h"
#include "tools/model/GoblinMeshes.h"
#include "tools/model/TileFile.h"

namespace tools {

// One entry of the page: a PSD file, or a tile of a scene. Texts may hold any bytes.
struct ViewItem {
  std::string name;               // what the list shows
  std::string file;               // where it comes from
  std::string fault;              // why there is nothing else to show; empty when there is
  std::string missing;            // what of a scene's tile is not shown as Maya shows it; or empty
  nlohmann::ordered_json report;  // of the file or texture, as `info --json`; null: none
  std::optional<Picture> picture;
  std::string pictureFault;      // why there is no picture
  std::optional<ViewMesh> tile;  // none: the unit tile
  Goblins goblins;
};

// Gathers entries into one HTML page that needs nothing but itself.
class ViewPage {
 public:
  // False, adding nothing, when the page would be over kMaxBytes.
  bool add(const ViewItem& item);

  // Whether an entry without a fault was added.
  bool showsSomething() const { return showsSomething_; }
  std::string html() const;

  static constexpr std::size_t kMaxBytes = std::size_t{256} << 20;
  static constexpr std::uint32_t kMaxPicture = 1024;  // pixels a side

 private:
  std::string items_;  // JSON, without the brackets around all
  bool showsSomething_ = false;
};

// What stands before and behind the entries, made by the build from the files in tools/page. Null
// when the program was built without the page.
const char* const* viewPageHead();
const char* const* viewPageTail();

}  // namespace tools

#endif  // MORVANE_TOOLS_VIEW_VIEWPAGE_H_
