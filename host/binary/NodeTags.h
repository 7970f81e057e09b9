#ifndef MORVANE_HOST_BINARY_NODETAGS_H_
#define MORVANE_HOST_BINARY_NODETAGS_H_

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace host {

// Names the node types that a Maya Binary file's tags stand for: the host's own, and those of
// plug-ins, which the file lists with the plug-ins it requires.
class NodeTags {
 public:
  void add(std::uint32_t tag, std::string_view typeName) { fromPlugins_[tag] = typeName; }

  // The node type's name. An unknown tag becomes a name itself: its letters or, when they cannot be
  // a name, "tag" and eight hexadecimal digits.
  std::string nameOf(std::uint32_t tag) const;

 private:
  std::map<std::uint32_t, std::string> fromPlugins_;
};

}  // namespace host

#endif  // MORVANE_HOST_BINARY_NODETAGS_H_
