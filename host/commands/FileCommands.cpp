#include "host/commands/Builtin.h"

#include "host/file/SceneFiles.h"
#include "host/file/StatementReader.h"
#include "host/mel/Command.h"
#include "host/scene/Node.h"
#include "host/scene/Plug.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"
#include "util/FileFacts.h"
#include "util/Path.h"

namespace host::mel {
namespace {

// The names of the files that the scene refers to, as it has them; each that is loaded counts once.
Value::Strings referencedFiles(const HostState& host) {
  Value::Strings files;
  for (const std::string& statement : host.info.references) {
    if (statement.find(" -rdi ") != statement.npos) continue;
    std::string command;
    Words words;
    std::string error;
    if (splitStatement(statement, command, words, error) && !words.empty())
      files.push_back(words.back().text);
  }
  return files;
}

// Files that the scene needs: itself, what it refers to, and its textures.
Value::Strings neededFiles(const HostState& host) {
  Value::Strings files;
  if (!host.scene.fileName.empty()) files.push_back(host.scene.fileName);
  const Value::Strings references = referencedFiles(host);
  files.insert(files.end(), references.begin(), references.end());
  for (const auto& [serial, node] : host.scene.nodes()) {
    const auto plug = node->type().isA("file") ? Plug::find(node, "fileTextureName") : std::nullopt;
    const std::string name = plug ? readText(*plug).value_or("") : "";
    if (!name.empty()) files.push_back(name);
  }
  return files;
}

CommandResult query(const Arguments& arguments, const CommandContext& context) {
  const std::string& name = context.host().scene.fileName;
  const std::string object = arguments.objects().empty() ? "" : arguments.objects().front();
  if (arguments.has("shn"))
    return CommandResult::success(morvane::nameOf(morvane::pathOf(name).filename()));
  if (arguments.has("ex")) {
    return CommandResult::success(
        Value::ofTruth(morvane::factsOf(resolvedPath(object, context.folder)).exists()));
  }
  if (arguments.has("exn") && !object.empty())
    return CommandResult::success(resolvedPath(object, context.folder));
  if (arguments.has("sn") || arguments.has("exn")) return CommandResult::success(name);
  if (arguments.has("loc")) return CommandResult::success(name.empty() ? "unknown" : name);
  if (arguments.has("l")) return CommandResult::success(neededFiles(context.host()));
  if (arguments.has("r")) return CommandResult::success(referencedFiles(context.host()));
  if (arguments.has("typ")) {
    const std::string type = name.empty() ? "" : identifyFile(context.host(), name);
    return CommandResult::success(Value::Strings{type.empty() ? "mayaAscii" : type});
  }
  return CommandResult::failure(
      "file: -query gives -sceneName, -shortName, -expandName, -exists, -location, -list, "
      "-reference or -type");
}

// The names of all nodes but the `before` first ones that there ever were.
Value::Strings newNodes(const HostState& host, std::size_t before) {
  Value::Strings names;
  const auto& nodes = host.scene.nodes();
  for (auto node = nodes.lower_bound(before); node != nodes.end(); ++node)
    names.push_back(node->second->displayName());
  return names;
}

// What came to the top of the scene, below a group of that name.
std::string groupNew(Scene& scene, std::size_t before, const std::string& name) {
  std::vector<NodePtr> top;
  for (const NodePtr& node : scene.world()->children())
    if (node->serial() >= before) top.push_back(node);
  std::string error;
  const NodePtr group = scene.createNode(*NodeType::find("transform"),
                                         name.empty() ? "group" : name, nullptr, &error);
  for (const NodePtr& node : top)
    if (group != nullptr && !scene.reparent(node, scene.world(), group, &error)) return error;
  return group == nullptr ? error : std::string();
}

// A namespace of the file's own name, as Maya gives one.
std::string ownNameSpace(const std::string& path) {
  std::string name = morvane::nameOf(morvane::pathOf(path).stem());
  for (char& c : name)
    if (!isLegalName(std::string("a") + c)) c = '_';
  return name;
}

CommandResult bringIn(HostState& host, const Arguments& arguments, FileRequest request) {
  const auto& nodes = host.scene.nodes();
  const std::size_t before = nodes.empty() ? 0 : nodes.rbegin()->first + 1;
  morvane::Status status;
  if (arguments.has("r")) {
    if (request.nameSpace.empty() || request.nameSpace == ":")
      request.nameSpace = ownNameSpace(request.path);
    status = referenceFile(host, request, request.nameSpace + "RN");
  } else {
    if (arguments.has("dns")) request.nameSpace.clear();
    status = importFile(host, request);
  }
  if (!status.ok()) return CommandResult::failure("file: " + status.text());
  const std::string problem =
      arguments.has("gr") ? groupNew(host.scene, before, arguments.text("gn")) : "";
  if (!problem.empty()) return CommandResult::failure("file: " + problem);
  return CommandResult::success(arguments.has("rnn") ? Value(newNodes(host, before))
                                                     : Value(request.path));
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
  if (arguments.has("i") || arguments.has("r")) return bringIn(context.host(), arguments, request);
  if (arguments.has("es") || arguments.has("ea"))
    return finish(exportFile(context.host(), request, arguments.has("es")), request.path);
  return CommandResult::failure(
      "file: needs -open, -import, -reference, -exportSelected, -exportAll, -save, -rename or "
      "-newFile");
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
             {"loc", "location", ""},
             {"l", "list", ""},
             {"r", "reference", ""},
             {"rnn", "returnNewNodes", ""},
             {"gr", "groupReference", ""},
             {"gn", "groupName", "s"},
             {"dns", "defaultNamespace", ""},
             {"ex", "exists", ""}},
            file);
}

}  // namespace host::mel
