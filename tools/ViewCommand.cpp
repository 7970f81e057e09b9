#include <filesystem>
#include <string>
#include <vector>

#include "host/Host.h"
#include "tools/Commands.h"
#include "tools/DocumentReport.h"
#include "tools/ExitStatus.h"
#include "tools/OutputFile.h"
#include "tools/SceneTiles.h"
#include "tools/Session.h"
#include "tools/Text.h"
#include "tools/ViewPage.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

struct Options {
  std::vector<std::string> files;
  std::string output;
  FolderMaps maps;
};

bool isScene(const std::string& path) {
  std::string extension = fs::path(path).extension().string();
  for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return extension == ".ma";
}

// Fills in what a file holds, its goblins included. False, with the reason, for a damaged file.
bool readDocument(const std::string& path, ViewItem& item, std::string& fault) {
  morvane::PsdDocument document(1, 1);
  if (!document.load(path.c_str(), &fault)) return false;
  item.goblins = readGoblins(document);
  std::error_code ignored;
  item.report = documentJson(item.file, fs::file_size(path, ignored), document, item.goblins);
  Picture picture;
  if (readPicture(document, ViewPage::kMaxPicture, picture, item.pictureFault)) {
    item.picture = std::move(picture);
  }
  return true;
}

class Viewer {
 public:
  explicit Viewer(const Options& options) : options_(options) {}

  ExitStatus run() {
    if (viewPageHead() == nullptr) {
      complain(
          "this program was built without the page of `view`; build it with Node.js and npm "
          "installed and -DMORVANE_VIEW=ON");
      return kFailed;
    }
    if (wouldReplaceInput(options_.output, options_.files)) return kUsage;
    const std::string output = absoluteName(options_.output);
    std::vector<std::string> paths;
    for (const std::string& file : options_.files) paths.push_back(absoluteName(file));
    for (std::size_t i = 0; i < paths.size(); ++i) {
      if (isScene(paths[i])) {
        addScene(paths[i], options_.files[i]);
      } else {
        addFile(paths[i], options_.files[i]);
      }
    }
    if (!page_.showsSomething()) {
      complain("there is nothing to show; no page was written");
      return status_ == kDone ? kFailed : status_;
    }
    if (!writeOutput(output, page_.html())) return kFailed;
    return status_;
  }

 private:
  void fail(const std::string& message, ExitStatus status = kFailed) {
    complain(message);
    if (status_ == kDone) status_ = status;
  }

  void add(const ViewItem& item) {
    if (page_.add(item)) return;
    fail(printable(item.file) + ": left out, since the page would be over " +
         std::to_string(ViewPage::kMaxBytes >> 20) + " MiB; show fewer files on one page");
  }

  void addFile(const std::string& path, const std::string& shown) {
    ViewItem item;
    item.name = fs::path(path).filename().string();
    item.file = shown;
    if (!readDocument(path, item, item.fault)) {
      fail(printable(shown) + ": " + printable(item.fault));
    } else if (!item.goblins.fault.empty()) {
      fail(printable(shown) + ": the goblin geometry is damaged: " + item.goblins.fault +
           "; export the tile again");
    }
    add(item);
  }

  void addScene(const std::string& path, const std::string& shown) {
    const bool opened =
        sessionStarted_ ? host::openScene(path) : startSession(path, options_.maps) == kDone;
    sessionStarted_ = true;
    const std::vector<SceneTile> tiles = opened ? sceneTiles() : std::vector<SceneTile>();
    if (!tiles.empty()) {
      for (const SceneTile& tile : tiles) addTile(tile, shown);
      return;
    }
    ViewItem item;
    item.name = fs::path(path).filename().string();
    item.file = shown;
    item.fault = opened ? "no tile found: no top-level transform has a mesh whose colour comes "
                          "from a file texture"
                        : "the scene cannot be loaded";
    fail(printable(shown) + ": " + item.fault, opened ? kFailed : kNotLoaded);
    add(item);
  }

  // The scene's folder is the working folder now, so that the texture's name is good as it stands.
  void addTile(const SceneTile& tile, const std::string& scene) {
    ViewItem item;
    item.name = tile.name;
    item.file = tile.texture;
    item.fault = tile.fault;
    std::string fault;
    if (!tile.fault.empty()) {
      fail(printable(scene) + ": " + printable(tile.name) + ": " + tile.fault);
    } else if (!readDocument(tile.texture, item, fault)) {
      item.pictureFault = fault;
      fail(printable(scene) + ": " + printable(tile.name) + ": texture " + printable(tile.texture) +
           ": " + printable(fault));
    }
    item.goblins = tile.goblins;
    if (!tile.mesh.triangles.empty()) item.tile = tile.mesh;
    add(item);
  }

  const Options& options_;
  ViewPage page_;
  ExitStatus status_ = kDone;
  bool sessionStarted_ = false;
};

}  // namespace

void addView(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("view", "Show files, or a scene's tiles, in a web page with 3D");
  command->add_option("FILE", options->files, "PSD files, or Maya ASCII scenes")
      ->type_name("")
      ->required();
  command->add_option("-o,--output", options->output, "The page; it needs no network and no server")
      ->type_name("PAGE")
      ->required();
  addMapOption(*command, options->maps);
  command->footer(
      "A damaged file is named, and shown as such among the others.\n"
      "Examples:\n"
      "  morvane view textures/*.psd -o tiles.html  what an export left in the files\n"
      "  morvane view meadow.ma -o meadow.html      the scene; nothing is exported");
  command->callback([options, &status] { status = Viewer(*options).run(); });
}

}  // namespace tools
