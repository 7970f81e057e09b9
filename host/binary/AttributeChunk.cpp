#include "host/binary/AttributeChunk.h"

#include "host/binary/ChunkWalker.h"

namespace host {
namespace {

// Bits of the flags.
constexpr std::uint32_t kHasMin = 1U << 1;
constexpr std::uint32_t kHasMax = 1U << 2;
constexpr std::uint32_t kHasDefault = 1U << 3;
constexpr std::uint32_t kIsCompound = 1U << 4;
constexpr std::uint32_t kHasParent = 1U << 5;
constexpr std::uint32_t kIsInternal = 1U << 7;
constexpr std::uint32_t kHasEnum = 1U << 9;
constexpr std::uint32_t kIsColour = 1U << 10;
constexpr std::uint32_t kHasSoftMin = 1U << 11;
constexpr std::uint32_t kHasSoftMax = 1U << 12;
constexpr std::uint32_t kIsHidden = 1U << 13;
constexpr std::uint32_t kIsKeyable = 1U << 14;
constexpr std::uint32_t kHasNiceName = 1U << 15;

struct TypeRow {
  const char (&letters)[5];
  const char* word;
};
constexpr TypeRow kNumbers[] = {{"aBOL", "bool"}, {"aDBL", "double"}, {"aFLT", "float"},
                                {"aLI1", "long"}, {"aSI1", "short"},  {"aENM", "enum"}};
// What the first of an attribute's type tags says.
constexpr TypeRow kCompounds[] = {{"DBL2", "double2"}, {"DBL3", "double3"}, {"FLT2", "float2"},
                                  {"FLT3", "float3"},  {"LNG2", "long2"},   {"LNG3", "long3"},
                                  {"SRT2", "short2"},  {"SRT3", "short3"}};
constexpr TypeRow kData[] = {{"STR ", "string"},     {"STR#", "stringArray"},   {"MATR", "matrix"},
                             {"I32#", "Int32Array"}, {"CMP#", "componentList"}, {"MESH", "mesh"},
                             {"NRBC", "nurbsCurve"}, {"ATAL", "attributeAlias"}};

template <std::size_t kCount>
std::string wordFor(const TypeRow (&rows)[kCount], std::uint32_t tag) {
  for (const TypeRow& row : rows)
    if (tagOf(row.letters) == tag) return row.word;
  return std::string();
}

// The kind, and the tags of the values that it may hold; the first is its own.
void readType(ByteCursor& in, std::uint32_t kind, bool isCompound, AttributeDeclaration& out) {
  out.children = isCompound ? in.word() : 0;
  const std::uint32_t tags = in.word();
  std::uint32_t first = 0;
  for (std::uint32_t i = 0; i < tags && !in.failed(); ++i) {
    const std::uint32_t tag = in.word();
    first = i == 0 ? tag : first;
  }
  out.isData = kind == tagOf("aTYP");
  out.type = isCompound   ? wordFor(kCompounds, first)
             : out.isData ? wordFor(kData, first)
                          : wordFor(kNumbers, kind);
  out.typeTag = tagText(isCompound || out.isData ? first : kind);
}

void readNames(ByteCursor& in, std::uint32_t flags, AttributeDeclaration& out) {
  out.longName = std::string(in.text());
  out.shortName = std::string(in.text());
  if ((flags & kHasParent) != 0) out.parent = std::string(in.text());
  if ((flags & kHasNiceName) != 0) out.niceName = std::string(in.text());
  if ((flags & kHasEnum) != 0) out.enumNames = std::string(in.text());
}

void readLimits(ByteCursor& in, std::uint32_t flags, AttributeDeclaration& out) {
  in.word();
  for (const auto& [flag, limit] :
       {std::pair(kHasMin, &out.min), std::pair(kHasMax, &out.max),
        std::pair(kHasSoftMin, &out.softMin), std::pair(kHasSoftMax, &out.softMax)}) {
    if ((flags & flag) != 0) *limit = in.real();
  }
  // The default follows the tag of a double, whatever the attribute's type.
  if ((flags & kHasDefault) != 0 && in.word() == tagOf("DBLE")) out.defaultValue = in.real();
}

}  // namespace

bool readAttributeChunk(ByteCursor in, bool isWide, AttributeDeclaration& out) {
  out = AttributeDeclaration();
  const std::uint32_t kind = in.word();
  const std::uint32_t flags = isWide ? in.word() : in.half();
  out.isInternal = (flags & kIsInternal) != 0;
  out.isHidden = (flags & kIsHidden) != 0;
  out.isKeyable = (flags & kIsKeyable) != 0;
  out.isColour = (flags & kIsColour) != 0;
  readType(in, kind, (flags & kIsCompound) != 0, out);
  readNames(in, flags, out);
  readLimits(in, flags, out);
  return !in.failed() && !out.longName.empty();
}

}  // namespace host
