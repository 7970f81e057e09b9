#include "host/commands/Builtin.h"

#include "host/file/SceneFiles.h"
#include "host/mel/Command.h"
#include "host/scene/Scene.h"
#include "host/state/HostState.h"
#include "util/FileFacts.h"
#include "util/Path.h"

namespace host::mel {
namespace {

CommandResult query(const Arguments& arguments, const CommandContext& context) {
  const std::string& name = context.host().scene.fileName;
  if (arguments.has("shn"))
    return CommandResult::success(morvane::nameOf(morvane::pathOf(name).filename()));
  if (arguments.has("ex")) {
    const std::string path = resolvedPath(
        arguments.objects().empty() ? "" : arguments.objects().front(), context.folder);
    return CommandResult::success(Value::ofTruth(morvane::factsOf(path).exists()));
  }
  if (arguments.has("sn") || arguments.has("exn")) return CommandResult::success(name);
  return CommandResult::failure(
      "file: -query gives -sceneName, -shortName, -expandName or -exists");
}

CommandResult finish(const morvane::Status& status, const std::string& path) {
  return status.ok() ? CommandResult::success(path)
                     : CommandResult::failure("file: " + status.text());
}

CommandResult file(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile)
    return CommandResult::failure("a scene file may not read or write files");
  if (arguments.query()) return query(arguments, context);
  if (arguments.has("new")) {
    startNewScene(context.host());
    return CommandResult::success("untitled");
  }
  if (arguments.has("s")) {
    const morvane::Status saved = saveFile(context.host());
    return finish(saved, context.host().scene.fileName);
  }
  if (arguments.has("rn")) {
    context.host().scene.fileName = resolvedPath(arguments.text("rn"), context.folder);
    return CommandResult::success(context.host().scene.fileName);
  }
  if (arguments.objects().size() != 1 || arguments.objects().front().empty())
    return CommandResult::failure("file: needs one file name");
  FileRequest request;
  request.path = resolvedPath(arguments.objects().front(), context.folder);
  request.type = arguments.text("typ");
  request.options = arguments.text("op");
  request.nameSpace = arguments.text("ns");
  if (arguments.has("o")) return finish(openFile(context.host(), request), request.path);
  if (arguments.has("i")) return finish(importFile(context.host(), request), request.path);
  if (arguments.has("es") || arguments.has("ea"))
    return finish(exportFile(context.host(), request, arguments.has("es")), request.path);
  return CommandResult::failure(
      "file: needs -open, -import, -exportSelected, -exportAll, -save, -rename or -newFile");
}

}  // namespace

void addFileCommands(CommandTable& table) {
  table.add("file",
            {{"q", "query", ""},
             {"o", "open", ""},
             {"i", "import", ""},
             {"es", "exportSelected", ""},
             {"ea", "exportAll", ""},
             {"s", "save", ""},
             {"rn", "rename", "s"},
             {"new", "newFile", ""},
             {"typ", "type", "s"},
             {"f", "force", ""},
             {"op", "options", "s"},
             {"ns", "namespace", "s"},
             {"iv", "ignoreVersion", ""},
             {"pmt", "prompt", "b"},
             {"pr", "preserveReferences", ""},
             {"ra", "renameAll", "b"},
             {"mnc", "mergeNamespacesOnClash", "b"},
             {"sn", "sceneName", ""},
             {"shn", "shortName", ""},
             {"exn", "expandName", ""},
             {"ex", "exists", ""}},
            file);
}

}  // namespace host::mel
