#ifndef MORVANE_HOST_BINARY_NODETAGS_H_
#define MORVANE_HOST_BINARY_NODETAGS_H_

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace host {

// What the tags of a Maya Binary file's nodes mean: the host's own node types, and those of
// plug-ins, which the file lists where it requires them.
class NodeTags {
 public:
  void add(std::uint32_t tag, std::string_view typeName) { fromPlugins_[tag] = typeName; }

  // The node type's name. A tag that nobody named is one itself: its letters, or "tag" and eight
  // hexadecimal digits where they can be no name.
  std::string nameOf(std::uint32_t tag) const;

 private:
  std::map<std::uint32_t, std::string> fromPlugins_;
};

}  // namespace host

#endif  // MORVANE_HOST_BINARY_NODETAGS_H_
