#include "host/attribute/Attribute.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

struct CompoundRow {
  const char* word;
  int size;
  const char* element;
};

constexpr CompoundRow kCompounds[] = {
    {"float2", 2, "float"},      {"float3", 3, "float"},   {"double2", 2, "double"},
    {"double3", 3, "double"},    {"double4", 4, "double"}, {"short2", 2, "short"},
    {"short3", 3, "short"},      {"long2", 2, "long"},     {"long3", 3, "long"},
    {"reflectance", 3, "float"}, {"spectrum", 3, "float"}, {"reflectanceRGB", 3, "float"},
    {"spectrumRGB", 3, "float"},
};

constexpr const char* kNumberWords[] = {
    "bool",        "byte",         "char",       "short",       "long",   "enum", "float", "double",
    "doubleAngle", "doubleLinear", "floatAngle", "floatLinear", "long64", "int",  "time",
};

const CompoundRow* findCompound(std::string_view word) {
  const auto* end = std::end(kCompounds);
  const auto* row = std::find_if(std::begin(kCompounds), end,
                                 [word](const CompoundRow& r) { return word == r.word; });
  return row == end ? nullptr : row;
}

Attribute::Kind kindOf(std::string_view word) {
  if (findCompound(word) || word == "compound" || word == "TdataCompound")
    return Attribute::Kind::kCompound;
  const auto* end = std::end(kNumberWords);
  if (std::find(std::begin(kNumberWords), end, word) != end) return Attribute::Kind::kNumber;
  if (word == "string") return Attribute::Kind::kText;
  if (word == "message") return Attribute::Kind::kMessage;
  return word.empty() ? Attribute::Kind::kLoose : Attribute::Kind::kData;
}

}  // namespace

Attribute::Attribute(std::string longName, std::string shortName, std::string typeWord)
    : longName_(std::move(longName)),
      shortName_(std::move(shortName)),
      typeWord_(std::move(typeWord)),
      kind_(kindOf(typeWord_)) {
  if (shortName_.empty()) shortName_ = longName_;
}

AttributePtr Attribute::makeLoose(const std::string& name) {
  return std::make_shared<Attribute>(name, name, std::string());
}

AttributePtr Attribute::makeData(std::string longName, std::string shortName,
                                 std::string typeWord) {
  auto attribute =
      std::make_shared<Attribute>(std::move(longName), std::move(shortName), std::move(typeWord));
  if (attribute->kind_ == Kind::kCompound) attribute->kind_ = Kind::kData;
  return attribute;
}

bool Attribute::isNumericCompound() const {
  return kind_ == Kind::kCompound && findCompound(typeWord_) != nullptr;
}

AttributePtr Attribute::findChild(std::string_view longOrShortName) const {
  for (const AttributePtr& child : children_)
    if (child->longName_ == longOrShortName || child->shortName_ == longOrShortName) return child;
  return nullptr;
}

void Attribute::adopt(const AttributePtr& parent, const AttributePtr& child) {
  child->parent_ = parent;
  parent->children_.push_back(child);
}

MFn::Type Attribute::apiType() const {
  switch (kind_) {
    case Kind::kNumber:
      return typeWord_ == "enum" ? MFn::kEnumAttribute : MFn::kNumericAttribute;
    case Kind::kText:
      return MFn::kTypedAttribute;
    case Kind::kData:
      return typeWord_ == "matrix" ? MFn::kMatrixAttribute : MFn::kTypedAttribute;
    case Kind::kMessage:
      return MFn::kMessageAttribute;
    case Kind::kCompound:
      return isNumericCompound() ? MFn::kNumericAttribute : MFn::kCompoundAttribute;
    case Kind::kLoose:
      break;
  }
  return MFn::kGenericAttribute;
}

int numericCompoundSize(std::string_view typeWord) {
  const CompoundRow* row = findCompound(typeWord);
  return row ? row->size : 0;
}

std::string_view numericCompoundElement(std::string_view typeWord) {
  const CompoundRow* row = findCompound(typeWord);
  return row ? row->element : std::string_view();
}

}  // namespace host
