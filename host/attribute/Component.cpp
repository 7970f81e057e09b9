#include "host/attribute/Component.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace host {
namespace {

constexpr int kMaxIndex = std::numeric_limits<int>::max();

struct KindRow {
  Component::Kind kind;
  const char* word;
  MFn::Type apiType;
};

constexpr KindRow kKinds[] = {
    {Component::Kind::kFace, "f", MFn::kMeshPolygonComponent},
    {Component::Kind::kVertex, "vtx", MFn::kMeshVertComponent},
    {Component::Kind::kEdge, "e", MFn::kMeshEdgeComponent},
    {Component::Kind::kUv, "map", MFn::kMeshComponent},
    {Component::Kind::kFaceVertex, "vtxFace", MFn::kMeshComponent},
};

const KindRow& rowOf(Component::Kind kind) {
  return kKinds[static_cast<int>(kind)];
}

bool readIndex(std::string_view text, int& index) {
  const char* end = text.data() + text.size();
  const auto [stop, problem] = std::from_chars(text.data(), end, index);
  return problem == std::errc() && stop == end && index >= 0;
}

// Reads what stands between the brackets: "3", "0:5", "*".
std::optional<IndexRange> readRange(std::string_view text) {
  if (text == "*") return IndexRange{0, kMaxIndex};
  IndexRange range;
  const std::size_t colon = text.find(':');
  const bool single = colon == std::string_view::npos;
  if (!readIndex(text.substr(0, colon), range.first)) return std::nullopt;
  if (single) return IndexRange{range.first, range.first};
  const std::string_view last = text.substr(colon + 1);
  if (last == "*") return IndexRange{range.first, kMaxIndex};
  if (!readIndex(last, range.last) || range.last < range.first) return std::nullopt;
  return range;
}

}  // namespace

IndexSet::IndexSet(std::vector<IndexRange> ranges) {
  std::sort(ranges.begin(), ranges.end(),
            [](const IndexRange& a, const IndexRange& b) { return a.first < b.first; });
  for (IndexRange range : ranges) {
    range.first = std::max(range.first, 0);
    if (range.last < range.first) continue;
    if (!ranges_.empty() && range.first - 1 <= ranges_.back().last)
      ranges_.back().last = std::max(ranges_.back().last, range.last);
    else
      ranges_.push_back(range);
  }
}

IndexSet IndexSet::all() {
  return IndexSet({{0, kMaxIndex}});
}

bool IndexSet::contains(int index) const {
  const auto after =
      std::upper_bound(ranges_.begin(), ranges_.end(), index,
                       [](int wanted, const IndexRange& range) { return wanted < range.first; });
  return after != ranges_.begin() && index <= std::prev(after)->last;
}

IndexSet IndexSet::unitedWith(const IndexSet& other) const {
  std::vector<IndexRange> ranges = ranges_;
  ranges.insert(ranges.end(), other.ranges_.begin(), other.ranges_.end());
  return IndexSet(std::move(ranges));
}

IndexSet IndexSet::without(const IndexSet& other) const {
  std::vector<IndexRange> left;
  auto hole = other.ranges_.begin();
  for (IndexRange range : ranges_) {
    while (hole != other.ranges_.end() && hole->last < range.first) ++hole;
    bool used = false;
    for (auto cut = hole; cut != other.ranges_.end() && cut->first <= range.last; ++cut) {
      if (cut->first > range.first) left.push_back({range.first, cut->first - 1});
      used = cut->last >= range.last;
      if (used) break;
      range.first = cut->last + 1;
    }
    if (!used) left.push_back(range);
  }
  return IndexSet(std::move(left));
}

IndexSet IndexSet::below(int count) const {
  if (count >= kMaxIndex) return *this;
  return without(IndexSet({{std::max(count, 0), kMaxIndex}}));
}

std::vector<int> IndexSet::toIndices(int count) const {
  std::vector<int> indices;
  for (const IndexRange& range : ranges_)
    for (int i = range.first; i < count && i <= range.last; ++i) indices.push_back(i);
  return indices;
}

MFn::Type Component::apiType() const {
  return rowOf(kind_).apiType;
}

bool Component::equals(const Object& other) const {
  const auto* component = dynamic_cast<const Component*>(&other);
  return component && component->kind_ == kind_ && component->elements_ == elements_;
}

std::vector<std::string> Component::toTexts() const {
  std::vector<std::string> texts;
  for (const IndexRange& range : elements_.ranges()) {
    std::string text = std::string(rowOf(kind_).word) + "[";
    if (range == IndexRange{0, kMaxIndex}) {
      text += "*";
    } else {
      text += std::to_string(range.first);
      if (range.last > range.first) text += ":" + std::to_string(range.last);
    }
    texts.push_back(text + "]");
  }
  return texts;
}

std::shared_ptr<Component> Component::parse(std::string_view text) {
  const std::size_t bracket = text.find('[');
  if (bracket == std::string_view::npos || text.back() != ']') return nullptr;
  const std::string_view word = text.substr(0, bracket);
  const auto range = readRange(text.substr(bracket + 1, text.size() - bracket - 2));
  if (!range) return nullptr;
  for (const KindRow& row : kKinds)
    if (word == row.word) return std::make_shared<Component>(row.kind, IndexSet({*range}));
  return nullptr;
}

IndexSet parseFaces(const std::vector<std::string>& texts) {
  std::vector<IndexRange> ranges;
  for (const std::string& text : texts) {
    const ComponentPtr component = Component::parse(text);
    if (!component || component->kind() != Component::Kind::kFace) continue;
    const auto& more = component->elements().ranges();
    ranges.insert(ranges.end(), more.begin(), more.end());
  }
  return IndexSet(std::move(ranges));
}

}  // namespace host
