#include "host/commands/Builtin.h"
#include "host/evaluation/Quantity.h"
#include "host/mel/Command.h"
#include "host/scene/Scene.h"
#include "host/state/HostState.h"
#include "host/state/SceneInfo.h"
#include "host/state/SceneUnits.h"

namespace host::mel {
namespace {

CommandResult requiresPlugin(const Arguments& arguments, CommandContext& context) {
  if (context.keepsInfo)
    context.host().info.requirements.push_back(asStatement("requires", arguments.words()));
  return CommandResult::success();
}

// Names of time units are such words ("film", "23.976fps"). A saved scene has them without quotes.
bool isWord(const std::string& text) {
  constexpr char kLetters[] = ".0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  return !text.empty() && text.find_first_not_of(kLetters) == std::string::npos;
}

// A scene is saved in the units in which it was opened.
void keepUnits(const Arguments& arguments, const CommandContext& context) {
  SceneUnits tried;
  SceneInfo& info = context.host().info;
  if (context.keepsInfo && arguments.has("l") && setLengthUnit(tried, arguments.text("l")))
    info.lengthUnit = arguments.text("l");
  if (context.keepsInfo && arguments.has("a") && setAngleUnit(tried, arguments.text("a")))
    info.angleUnit = arguments.text("a");
}

// Scripts get numbers in these units; the unit of time is the scene's.
CommandResult queryUnit(const CommandContext& context, const Arguments& arguments) {
  const bool full = arguments.has("f");
  const std::string& time = context.host().info.timeUnit;
  if (arguments.has("l")) return CommandResult::success(full ? "centimeter" : "cm");
  if (arguments.has("a")) return CommandResult::success(full ? "degree" : "deg");
  if (arguments.has("t")) return CommandResult::success(time.empty() ? "film" : time);
  return CommandResult::failure("currentUnit: -query gives -linear, -angle or -time");
}

// Whether a script asks for the units that it has.
bool keepsScriptUnits(const CommandContext& context, const Arguments& arguments) {
  SceneUnits asked;
  return (!arguments.has("l") || setLengthUnit(asked, arguments.text("l"))) &&
         (!arguments.has("a") || setAngleUnit(asked, arguments.text("a"))) && asked.length == 1.0 &&
         asked.angle == 1.0 &&
         (!arguments.has("t") ||
          arguments.text("t") == queryUnit(context, arguments).value.toString());
}

CommandResult currentUnit(const Arguments& arguments, CommandContext& context) {
  if (!context.inSceneFile) {
    if (arguments.query()) return queryUnit(context, arguments);
    return keepsScriptUnits(context, arguments)
               ? CommandResult::success()
               : CommandResult::failure("currentUnit: the units are centimetres and degrees");
  }
  if (arguments.has("t") && !isWord(arguments.text("t")))
    context.warn("currentUnit: unknown unit of time '" + arguments.text("t") + "'; not kept");
  else if (arguments.has("t") && context.keepsInfo)
    context.host().info.timeUnit = arguments.text("t");
  if (arguments.has("t"))
    context.host().units.framesPerSecond = framesPerSecond(arguments.text("t"));
  keepUnits(arguments, context);
  const bool length =
      !arguments.has("l") || setLengthUnit(context.host().units, arguments.text("l"));
  const bool angle = !arguments.has("a") || setAngleUnit(context.host().units, arguments.text("a"));
  if (!length) {
    return CommandResult::malformed("currentUnit: unknown unit of length '" + arguments.text("l") +
                                    "'; taken as centimetres");
  }
  if (!angle) {
    return CommandResult::malformed("currentUnit: unknown unit of angle '" + arguments.text("a") +
                                    "'; taken as degrees");
  }
  return CommandResult::success();
}

CommandResult fileInfo(const Arguments& arguments, CommandContext& context) {
  if (context.keepsInfo)
    context.host().info.fileInfo.push_back(asStatement("fileInfo", arguments.words()));
  return CommandResult::success();
}

CommandResult dataStructure(const Arguments& arguments, CommandContext& context) {
  if (context.keepsInfo)
    context.host().info.metadata.push_back(asStatement("dataStructure", arguments.words()));
  return CommandResult::success();
}

CommandResult applyMetadata(const Arguments& arguments, CommandContext& context) {
  if (context.keepsInfo)
    context.host().info.metadata.push_back(asStatement("applyMetadata", arguments.words()));
  return CommandResult::success();
}

// Which lights light which shading groups, as pairs of plug names.
CommandResult relationship(const Arguments& arguments, CommandContext& context) {
  const std::vector<std::string>& names = arguments.objects();
  if (context.keepsInfo && names.size() >= 3) {
    const std::string name = names[2].substr(0, names[2].find('.'));
    context.host().info.relationships.push_back({name,
                                                 context.host().scene.findNode(name) != nullptr,
                                                 asStatement("relationship", arguments.words())});
  }
  return CommandResult::success();
}

}  // namespace

void addHeaderCommands(CommandTable& table) {
  table.add("requires", {{"nodeType", "nodeType", "s"}, {"dataType", "dataType", "s"}},
            requiresPlugin);
  table.add("currentUnit",
            {{"l", "linear", "s"},
             {"a", "angle", "s"},
             {"t", "time", "s"},
             {"q", "query", ""},
             {"f", "fullName", ""},
             {"ua", "updateAnimation", "b"}},
            currentUnit);
  table.add("fileInfo", {}, fileInfo);
  table.add("dataStructure", {{"fmt", "format", "s"}, {"as", "asString", "s"}}, dataStructure);
  table.add("applyMetadata", {{"fmt", "format", "s"}, {"v", "value", "s"}, {"scn", "scene", ""}},
            applyMetadata);
  table.add("relationship", {{"b", "break", ""}}, relationship);
  // A scene file's state of the user interface, which this host does not have.
  for (const char* name : {"lightLinker", "lightlink", "displayColor", "displayRGBColor"})
    table.add(name, {}, [](const Arguments&, CommandContext&) { return CommandResult::success(); });
}

}  // namespace host::mel
