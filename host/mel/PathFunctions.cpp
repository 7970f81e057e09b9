#include <algorithm>
#include <iterator>

#include "host/mel/FunctionArguments.h"

namespace host::mel {
namespace {

using Arguments = FunctionArguments;

// What is behind the last slash.
std::string lastPart(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Without `suffix` at the end.
CommandResult baseName(const Arguments& arguments) {
  std::string name = lastPart(textOf(arguments, 0));
  const std::string suffix = textOf(arguments, 1);
  const bool ends = name.size() >= suffix.size() &&
                    name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0;
  return give(ends ? name.substr(0, name.size() - suffix.size()) : name);
}

CommandResult baseNameWithoutExtension(const Arguments& arguments) {
  const std::string name = lastPart(textOf(arguments, 0));
  return give(name.substr(0, name.rfind('.')));
}

CommandResult extension(const Arguments& arguments) {
  const std::string name = lastPart(textOf(arguments, 0));
  const std::size_t dot = name.rfind('.');
  return give(dot == std::string::npos ? std::string() : name.substr(dot + 1));
}

CommandResult directory(const Arguments& arguments) {
  const std::string path = textOf(arguments, 0);
  const std::size_t slash = path.rfind('/');
  return give(slash == std::string::npos ? std::string() : path.substr(0, slash));
}

CommandResult fromNative(const Arguments& arguments) {
  std::string path = textOf(arguments, 0);
  std::replace(path.begin(), path.end(), '\\', '/');
  return give(std::move(path));
}

constexpr FunctionSpec kFunctions[] = {
    {"basename", 1, 2, baseName},         {"basenameEx", 1, 1, baseNameWithoutExtension},
    {"dirname", 1, 1, directory},         {"fileExtension", 1, 1, extension},
    {"fromNativePath", 1, 1, fromNative},
};

}  // namespace

FunctionTable pathFunctions() {
  return {std::begin(kFunctions), std::end(kFunctions)};
}

}  // namespace host::mel
