#ifndef MORVANE_HOST_ATTRIBUTE_COMPONENT_H_
#define MORVANE_HOST_ATTRIBUTE_COMPONENT_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/attribute/Object.h"

namespace host {

// Consecutive numbers, both ends included; never empty.
struct IndexRange {
  int first = 0;
  int last = 0;
  bool operator==(const IndexRange& o) const { return first == o.first && last == o.last; }
};

// Numbers from 0 up to INT_MAX as ranges in ascending order that neither overlap nor touch.
class IndexSet {
 public:
  IndexSet() = default;
  explicit IndexSet(std::vector<IndexRange> ranges);  // in any order; negative numbers are dropped
  static IndexSet all();                              // every number there may be: "f[*]"

  const std::vector<IndexRange>& ranges() const { return ranges_; }
  bool isEmpty() const { return ranges_.empty(); }
  bool contains(int index) const;
  bool operator==(const IndexSet& other) const { return ranges_ == other.ranges_; }

  IndexSet unitedWith(const IndexSet& other) const;
  IndexSet without(const IndexSet& other) const;
  IndexSet below(int count) const;  // what is smaller than `count`

  // The numbers themselves, those below `count` only.
  std::vector<int> toIndices(int count) const;

 private:
  std::vector<IndexRange> ranges_;
};

// Faces, vertices, edges or UVs of a shape, by number.
class Component : public Object {
 public:
  enum class Kind { kFace, kVertex, kEdge, kUv, kFaceVertex };

  Component(Kind kind, IndexSet elements) : kind_(kind), elements_(std::move(elements)) {}

  Kind kind() const { return kind_; }
  const IndexSet& elements() const { return elements_; }

  MFn::Type apiType() const override;
  bool equals(const Object& other) const override;

  // One text a range: "f[0:5]", "vtx[7]", "f[*]".
  std::vector<std::string> toTexts() const;

  // Reads "f[3]", "f[0:5]", "f[*]", "vtx[..]", "e[..]", "map[..]". Null when the text is none of
  // these.
  static std::shared_ptr<Component> parse(std::string_view text);

 private:
  Kind kind_;
  IndexSet elements_;
};

using ComponentPtr = std::shared_ptr<Component>;

// The union of the faces that component texts name ("f[0:5]", "f[9]"); other kinds are passed over.
IndexSet parseFaces(const std::vector<std::string>& texts);

}  // namespace host

#endif  // MORVANE_HOST_ATTRIBUTE_COMPONENT_H_
