#include "tools/model/TileFile.h"

#include <algorithm>
#include <new>

#include "tools/terminal/Activity.h"
#include "tools/terminal/Text.h"
#include "util/FileExtension.h"
#include "util/FileFacts.h"
#include "util/Path.h"

namespace tools {
namespace {

// Advice for a file that is not loaded.
std::string loadingAdvice(morvane::StatusCode code, bool isTga) {
  using Code = morvane::StatusCode;
  switch (code) {
    case Code::kNotFound:
      return "check the name";
    case Code::kNotAllowed:
      return "make the file readable";
    case Code::kNotAFile:
    case Code::kBadArgument:
      return "name a PSD or TGA file";
    case Code::kOtherKind:
      return "give its name the extension .psd";
    case Code::kUnsupported:
      return isTga ? "save it again as PSD, or as an uncompressed TGA of 24 or 32 bits"
                   : "save it again as PSD";
    case Code::kTooLarge:
      return "save it again with fewer layers or pixels";
    case Code::kChanged:
      return "wait until it is written";
    case Code::kOutOfMemory:
      return "free memory, or use another machine";
    default:
      return isTga ? "it is cut off or compressed: fetch it again, or save it again uncompressed"
                   : "it is damaged or cut off: fetch it again, or save it again where it was made";
  }
}

std::uint32_t countDistinct(const std::vector<std::vector<std::int32_t>>& faces) {
  std::vector<std::int32_t> used;
  for (const auto& face : faces) used.insert(used.end(), face.begin(), face.end());
  std::sort(used.begin(), used.end());
  return static_cast<std::uint32_t>(std::unique(used.begin(), used.end()) - used.begin());
}

Goblin toGoblin(const morvane::GoblinRecord& record) {
  Goblin goblin;
  if (record.name) goblin.name = record.name.get();
  if (record.textureFileName) goblin.texture = record.textureFileName.get();
  for (std::int32_t i = 0; i < record.faceCount; ++i) {
    const morvane::GoblinFace& face = record.faces[static_cast<std::size_t>(i)];
    goblin.faces.emplace_back(face.indices.get(), face.indices.get() + face.cornerCount);
  }
  goblin.vertices = countDistinct(goblin.faces);
  return goblin;
}

// Reads to the end or to the first value that does not fit, which it names; the empty text when all
// fits.
std::string decode(morvane::GoblinGeometryReader& reader, Goblins& goblins) {
  std::uint32_t count = 0;
  if (!reader.readPool(goblins.pool)) return "the vertex pool does not fit";
  if (!reader.readGoblinCount(count)) return "the goblin count does not fit";
  for (std::uint32_t i = 0; i < count; ++i) {
    morvane::GoblinRecord record;
    const bool isRead = reader.readGoblin(record);
    if (reader.lacksMemory()) throw std::bad_alloc();
    if (!isRead)
      return "goblin " + std::to_string(i + 1) + " of " + std::to_string(count) + " does not fit";
    goblins.goblins.push_back(toGoblin(record));
  }
  return reader.consumed() == goblins.bytes ? "" : "bytes are left after the last goblin";
}

Goblins decodeAs(morvane::GoblinLayout layout, const std::uint8_t* bytes, std::uint32_t size,
                 std::size_t& consumed) {
  Goblins goblins;
  goblins.present = true;
  goblins.bytes = size;
  morvane::GoblinGeometryReader reader(bytes, size, layout);
  const std::string fault = decode(reader, goblins);
  consumed = reader.consumed();
  if (!fault.empty()) {
    goblins.fault = fault + " (byte " + std::to_string(consumed) + " of " + std::to_string(size) +
                    ", read in the " +
                    (layout == morvane::GoblinLayout::kNamed ? "named" : "tagged") + " layout)";
  }
  return goblins;
}

// A damaged blob is shown in the layout that gets further.
Goblins decodeBlob(const std::uint8_t* bytes, std::uint32_t size) {
  std::size_t namedEnd = 0;
  std::size_t taggedEnd = 0;
  const morvane::GoblinBlobKind kind = morvane::classifyGoblinBlob(bytes, size);
  Goblins named = decodeAs(morvane::GoblinLayout::kNamed, bytes, size, namedEnd);
  if (kind == morvane::GoblinBlobKind::kNamed) {
    named.kind = kind;
    return named;
  }
  Goblins tagged = decodeAs(morvane::GoblinLayout::kTagged, bytes, size, taggedEnd);
  tagged.kind = kind;
  if (kind == morvane::GoblinBlobKind::kTagged) return tagged;
  return taggedEnd > namedEnd ? std::move(tagged) : std::move(named);
}

}  // namespace

const char* Goblins::layoutName() const {
  switch (kind) {
    case morvane::GoblinBlobKind::kNamed:
      return "named";
    case morvane::GoblinBlobKind::kTagged:
      return "tagged";
    case morvane::GoblinBlobKind::kDamaged:
      break;
  }
  return "damaged";
}

std::size_t Goblins::faceCount() const {
  std::size_t count = 0;
  for (const Goblin& goblin : goblins) count += goblin.faces.size();
  return count;
}

std::string unreadable(const std::string& path, const morvane::Status& status,
                       const std::string& shown) {
  if (morvane::factsOf(path).isFolder()) {
    const std::string files = morvane::nameOf(morvane::pathOf(shown) / "*.psd");
    return printable(shown) + ": it is a folder; name the files in it: " + printable(files);
  }
  const bool isTga = morvane::lowerExtension(path) == ".tga";
  return printable(shown) + ": " + printable(status.text()) + "; " +
         loadingAdvice(status.code(), isTga);
}

bool isTileFileName(const std::string& name) {
  const std::string extension = morvane::lowerExtension(name);
  return extension == ".psd" || extension == ".tga";
}

std::unique_ptr<morvane::PsdDocument> loadDocument(const std::string& path,
                                                   const std::string& shown) {
  nowDoing("reading", path);
  auto document = std::make_unique<morvane::PsdDocument>(1u, 1u);
  morvane::Status status;
  if (document->load(path.c_str(), &status)) return document;
  complain(unreadable(path, status, shown));
  return nullptr;
}

std::string documentFault(const morvane::PsdDocument& document) {
  const std::string fault = document.headerFault();
  return fault.empty() ? document.mergedFault() : fault;
}

Goblins readGoblins(const morvane::PsdDocument& document) {
  Goblins goblins;
  if (document.findLayer(morvane::kGoblinLayerName) < 0) return goblins;
  std::uint32_t size = 0;
  const auto bytes = document.peekDataLayer(morvane::kGoblinLayerName, size);
  if (bytes) return decodeBlob(bytes.get(), size);
  goblins.present = true;
  goblins.fault = "the layer's channels do not hold as many bytes as it says";
  return goblins;
}

bool reportFaults(const std::string& shown, const morvane::PsdDocument& document,
                  const Goblins& goblins) {
  const std::string fault = documentFault(document);
  if (!fault.empty()) {
    complain(printable(shown) + ": " + fault +
             (document.headerFault().empty()
                  ? "; fetch the file again, or save it again where it was made"
                  : ": it takes no goblins; save it again as PSD"));
  }
  if (!goblins.fault.empty()) {
    complain(printable(shown) + ": the goblin geometry is damaged: " + goblins.fault +
             "; export the tile again");
  }
  return fault.empty() && goblins.fault.empty();
}

}  // namespace tools
