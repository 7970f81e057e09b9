#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/image/Picture.h"
#include "tools/image/PictureFile.h"
#include "tools/model/GoblinGlb.h"
#include "tools/model/GoblinMeshes.h"
#include "tools/model/GoblinObj.h"
#include "tools/model/TileFile.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/OutputFile.h"
#include "tools/terminal/Text.h"
#include "util/Path.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint32_t kMaxModelPicture = 4096;  // pixels a side

struct Options {
  std::vector<std::string> files;
  std::string obj;
  std::string glb;
  bool json = false;
  bool full = false;
};

Json goblinJson(const Goblin& goblin, bool full) {
  Json json = {{"name", toUtf8(goblin.name)},
               {"texture", toUtf8(goblin.texture)},
               {"vertices", goblin.vertices},
               {"faces", goblin.faces.size()}};
  if (full) json["triangles"] = goblin.faces;
  return json;
}

void print(const std::string& json) {
  std::fputs(printableJson(json).c_str(), stdout);
}

// An array under a key that is not the object's first. An element at a time: as one value the
// goblins of a small file can take a hundred times its size.
template <typename List, typename ToJson>
void printArray(const char* key, const List& list, const ToJson& toJson) {
  std::printf(",\"%s\":[", key);
  const char* separator = "";
  for (const auto& element : list) {
    print(separator + toJson(element).dump());
    separator = ",";
  }
  std::printf("]");
}

// Of several files, each object names its own.
void printJson(const Goblins& goblins, const Options& options, const std::string& file) {
  const bool full = options.full;
  Json beginning;
  if (options.files.size() > 1) beginning["file"] = toUtf8(file);
  beginning["layout"] = goblins.layoutName();
  beginning["vertices"] = goblins.pool.size();
  const std::string object = beginning.dump();
  print(object.substr(0, object.size() - 1));
  if (full) {
    printArray("pool", goblins.pool, [](const morvane::GoblinPoolVertex& p) {
      return Json{p.x, p.y, p.z, p.nx, p.ny, p.nz, p.u, p.v};
    });
  }
  printArray("goblins", goblins.goblins,
             [full](const Goblin& goblin) { return goblinJson(goblin, full); });
  std::printf("}\n");
}

// In tile space: the tagged layout stores z mirrored.
struct Bounds {
  float min[3] = {};
  float max[3] = {};

  Bounds(const Goblins& goblins, const Goblin& goblin) {
    const bool tagged = goblins.kind == morvane::GoblinBlobKind::kTagged;
    bool first = true;
    for (const auto& face : goblin.faces) {
      for (const std::int32_t corner : face) {
        const morvane::GoblinPoolVertex& p = goblins.pool[static_cast<std::size_t>(corner)];
        include({p.x, p.y, tagged ? 1 - p.z : p.z}, first);
        first = false;
      }
    }
  }

 private:
  void include(const std::array<float, 3>& point, bool first) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      min[axis] = first ? point[axis] : std::min(min[axis], point[axis]);
      max[axis] = first ? point[axis] : std::max(max[axis], point[axis]);
    }
  }
};

void printTable(const Goblins& goblins, const std::string& file) {
  std::printf("%s: %s, %zu vertices, %s layout\n", printable(file).c_str(),
              counted(goblins.goblins.size(), "goblin").c_str(), goblins.pool.size(),
              goblins.layoutName());
  if (goblins.goblins.empty()) return;
  std::printf("  %4s  %-20s %8s %6s   %-15s %-15s %-15s\n", "", "name", "vertices", "faces", "x",
              "y", "z");
  std::size_t number = 0;
  for (const Goblin& goblin : goblins.goblins) {
    const Bounds b(goblins, goblin);
    std::printf("  %4zu  %-20s %8u %6zu  ", ++number,
                goblin.name.empty() ? "-" : printable(goblin.name).c_str(), goblin.vertices,
                goblin.faces.size());
    for (int axis = 0; axis < 3; ++axis) {
      std::printf(" %6.3f .. %-5.3f", static_cast<double>(b.min[axis]),
                  static_cast<double>(b.max[axis]));
    }
    std::printf("\n");
  }
}

// What can be seen on the goblins: not a black picture, as the files of `export --to` have. Warns
// of what cannot be read, which is not a failure: the rest is right.
std::optional<Picture> pictureFor(const morvane::PsdDocument& document, const std::string& file) {
  Picture picture;
  std::string fault;
  if (!readPicture(document, kMaxModelPicture, picture, fault))
    complain("warning: " + printable(file) + ": " + fault + "; its goblins are left gray");
  else if (!picture.black)
    return picture;
  return std::nullopt;
}

bool writeGlb(const Goblins& goblins, const std::optional<Picture>& picture,
              const Options& options) {
  const std::string shown = printable(options.files[0]);
  const GoblinMeshes meshes = goblinMeshes(goblins);
  if (meshes.dropped > 0) {
    complain("warning: " + shown + ": " + std::to_string(meshes.dropped) +
             " triangles are left out, since they have coordinates that are not finite numbers");
  }
  std::string glb;
  std::string fault;
  if (writeGlb(meshes, picture ? &*picture : nullptr, glb, fault))
    return writeOutput(options.glb, glb);
  complain(shown + ": " + fault + "; nothing was written");
  return false;
}

// The files that belong to a model: whatever fails, each that is not new is named.
bool writeBeside(const std::vector<std::pair<std::string, std::string>>& files, bool isModelThere) {
  bool done = isModelThere;
  for (const auto& [path, content] : files)
    if (isModelThere)
      done = writeOutput(path, content) && done;
    else
      complain("cannot write " + printable(path) + ": the model that it belongs to is not there");
  return done;
}

// The model first, then its material and the picture of that.
bool writeObj(const Goblins& goblins, const std::optional<Picture>& picture,
              const std::string& output) {
  const std::filesystem::path path = morvane::pathOf(output);
  const std::string stem = morvane::nameOf(path.stem());
  const std::string name = stem + ".mtl";
  const std::string image = stem + "-picture.png";
  if (name.find_first_of("\r\n") != std::string::npos) {
    complain(printable(output) + ": a name with a line break takes no material");
    return writeOutput(output, goblinsToObj(goblins, std::string()));
  }
  const auto beside = [&path](const std::string& file) {
    return morvane::nameOf(path.parent_path() / morvane::pathOf(file));
  };
  std::vector<std::pair<std::string, std::string>> files = {
      {beside(name), objMaterial(picture ? image : std::string())}};
  if (picture) {
    const std::vector<std::uint8_t> png = pngFile(*picture);
    files.emplace_back(beside(image), std::string(png.begin(), png.end()));
  }
  return writeBeside(files, writeOutput(output, goblinsToObj(goblins, name)));
}

bool writeModels(const morvane::PsdDocument& document, const Goblins& goblins,
                 const Options& options) {
  if (options.obj.empty() && options.glb.empty()) return true;
  const std::optional<Picture> picture = pictureFor(document, options.files[0]);
  const bool objDone = options.obj.empty() || writeObj(goblins, picture, options.obj);
  const bool glbDone = options.glb.empty() || writeGlb(goblins, picture, options);
  for (const auto& [path, done] :
       {std::pair(options.obj, objDone), std::pair(options.glb, glbDone)}) {
    if (path.empty() || !done || options.json) continue;
    reportWritten(path, counted(goblins.goblins.size(), "goblin"));
  }
  return objDone && glbDone;
}

ExitStatus showFile(const Options& options, const std::string& file) {
  const auto document = loadDocument(file, file);
  if (!document) return kFailed;
  const Goblins goblins = readGoblins(*document);
  const std::string shown = printable(file);
  const bool isSound = reportFaults(file, *document, goblins);
  if (!goblins.present) {
    complain(shown + ": no layer \"" + morvane::kGoblinLayerName + "\"; export the tile first");
    return kFailed;
  }
  if (options.json)
    printJson(goblins, options, file);
  else if (options.obj.empty() && options.glb.empty())
    printTable(goblins, file);
  if (!goblins.fault.empty()) return kFailed;
  return writeModels(*document, goblins, options) && isSound ? kDone : kFailed;
}

ExitStatus showGoblins(const Options& options) {
  const bool writes = !options.obj.empty() || !options.glb.empty();
  if (writes && options.files.size() > 1) {
    complain("--obj and --glb take the goblins of one file: name exactly one");
    return kUsage;
  }
  for (const std::string& output : {options.obj, options.glb})
    if (wouldReplaceInput(output, options.files)) return kUsage;
  ExitStatus worst = kDone;
  for (const std::string& file : options.files) worst = std::max(worst, showFile(options, file));
  return worst;
}

}  // namespace

void addGoblins(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("goblins", "Show the goblins that a tile's file carries");
  command->add_option("FILE", options->files, "The tiles' PSD files")->type_name("")->required();
  CLI::Option* json =
      command->add_flag("--json", options->json, "One JSON object a line for each file");
  command->add_flag("--full", options->full, "With --json: the vertices and triangles too")
      ->needs(json);
  checkOutput(*command
                   ->add_option("--obj", options->obj,
                                "Write the goblins over the unit tile as Wavefront OBJ,\n"
                                "with OUT.mtl and OUT-picture.png beside it")
                   ->type_name("OUT"),
              {"Wavefront OBJ", {".obj"}});
  checkOutput(
      *command
           ->add_option("--glb", options->glb, "The same with the tile's picture, as binary glTF")
           ->type_name("OUT"),
      {"binary glTF", {".glb"}});
  command->footer(
      "Examples:\n"
      "  morvane goblins pond.psd                 a table of the goblins\n"
      "  morvane goblins pond.psd --glb pond.glb  tile and goblins for a 3D viewer\n"
      "  morvane goblins pond.psd --json --full   every vertex and triangle");
  command->callback([options, &status] { status = showGoblins(*options); });
}

}  // namespace tools
