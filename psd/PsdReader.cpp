#include "psd/PsdReader.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "psd/FileKind.h"
#include "psd/PsdNames.h"
#include "psd/TgaImport.h"
#include "util/ByteOrder.h"
#include "util/ReserveMore.h"
#include "util/WholeFile.h"

namespace morvane {

namespace {

constexpr std::size_t kResourceHeader = 4 + 2 + 2 + 4;  // with an empty name

bool isSeparator(char c) {
#ifdef _WIN32
  if (c == '\\' || c == ':') return true;
#endif
  return c == '/';
}

// The part of the file name after its last period, in upper case; empty when there is none.
std::string upperExtension(const char* path) {
  const char* const end = path + std::strlen(path);
  const char* start = end;
  while (start != path && start[-1] != '.' && !isSeparator(start[-1])) --start;
  if (start == path || start[-1] != '.') return std::string();
  std::string extension(start, end);
  for (char& c : extension)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return extension;
}

void readHeader(PsdInput& in, PsdDocument& document) {
  in.copy(document.signature, 4);
  document.version = in.u16();
  in.copy(document.reserved, 6);
  document.channels = in.u16();
  document.rows = in.u32();
  document.columns = in.u32();
  document.depth = in.u16();
  document.colourMode = in.u16();
}

void readColourMode(PsdInput& in, PsdDocument& document) {
  in.setPart("colour mode data");
  document.colourModeLength = in.u32();
  document.colourModeData = readOwned(in, document.colourModeLength);
}

std::size_t paddedSize(std::size_t size) {
  return size + (size & 1);
}

// A block that does not fit its section is damage when its signature is that of resources.
// Otherwise it is not a resource, and kept unread.
bool isForeign(const PsdResource& resource) {
  return std::memcmp(resource.signature, "8BIM", 4) != 0;
}

// Reads one resource; null, with nothing read, when what follows is not one or memory runs out.
std::unique_ptr<PsdResource> readResource(PsdInput& in) {
  PsdInput probe = in;
  std::unique_ptr<PsdResource> resource(new (std::nothrow) PsdResource);
  if (!resource) {
    in.failForMemory();
    return nullptr;
  }
  probe.copy(resource->signature, 4);
  resource->id = probe.u16();
  readName(probe, kResourceNameAlignment, resource->name, resource->nameField);
  resource->size = probe.u32();
  // A last resource of odd size may lack its padding byte.
  const bool unpadded = probe.ok() && probe.left() == resource->size && (resource->size & 1) != 0;
  if (!unpadded) resource->data = readOwned(probe, paddedSize(resource->size));
  if (unpadded || (!probe.ok() && isForeign(*resource))) return nullptr;
  in = probe;
  return resource;
}

void readResources(PsdInput& in, PsdDocument& document) {
  in.setPart("image resources");
  document.resourcesLength = in.u32();
  const PsdPart section(in, document.resourcesLength);
  while (in.ok() && in.left() >= kResourceHeader) {
    std::unique_ptr<PsdResource> resource = readResource(in);
    if (!resource) break;
    if (!reserveMore(document.resources, 1)) return in.failForMemory();
    document.resources.push_back(std::move(resource));
  }
  document.resourcesTail = in.takeOpaque(in.left());
}

void readMergedImage(PsdInput& in, PsdDocument& document) {
  in.setPart("merged image");
  document.mergedCompression = in.u16();
  document.mergedLength = static_cast<std::uint32_t>(in.left());
  if (in.left() != 0) document.mergedData = Bytes::view(in.take(in.left()));
}

void readSections(PsdInput& in, PsdDocument& document) {
  readHeader(in, document);
  readColourMode(in, document);
  readResources(in, document);
  in.setPart("layer and mask information");
  document.layerAndMaskLength = in.u32();
  if (document.layerAndMaskLength != 0) {
    const PsdPart section(in, document.layerAndMaskLength);
    readLayerSection(in, document);
  }
  readMergedImage(in, document);
}

// Stops at what no file can hold.
std::uint64_t cappedProduct(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  return b != 0 && a > kMost / b ? kMost : a * b;
}

// Of the table of row lengths alone where that is not whole.
std::uint64_t packedMergedSize(const PsdDocument& document, std::uint64_t rowCount) {
  std::uint64_t size = 2 * rowCount;
  if (size > document.mergedLength) return size;
  const std::uint8_t* length = document.mergedData.get();
  for (std::uint64_t row = 0; row < rowCount; ++row, length += 2) size += loadBe16(length);
  return size;
}

// In bytes, behind the compression word.
std::uint64_t promisedMergedSize(const PsdDocument& document) {
  const std::uint64_t rowCount = std::uint64_t{document.channels} * document.rows;
  const std::uint64_t rowSize = (std::uint64_t{document.columns} * document.depth + 7) / 8;
  if (rowSize == 0) return 0;
  if (document.mergedCompression == 0) return cappedProduct(rowCount, rowSize);
  if (document.mergedCompression == 1) return packedMergedSize(document, rowCount);
  return rowCount == 0 ? 0 : 1;
}

Status emptyFile() {
  return {StatusCode::kDamaged, "the file is empty"};
}

// A reason that explains an unreadable file better than the byte where reading ended does.
Status refusal(const PsdDocument& document, std::size_t size, const Status& status) {
  constexpr std::size_t kVersionEnd = 4 + 2;
  if (size == 0) return emptyFile();
  const std::string fault = size < kVersionEnd ? std::string() : document.headerFault();
  return fault.empty() ? status : Status(StatusCode::kUnsupported, fault);
}

// Lengths within a file have 32 bits.
constexpr std::uint64_t kMaxFile = std::numeric_limits<std::uint32_t>::max();

Status loadPsd(const char* path, PsdDocument& document, FileIdentity& identity) {
  std::unique_ptr<std::uint8_t[]> bytes;
  std::size_t size = 0;
  Status status = readWholeFile(path, kMaxFile, bytes, size, &identity);
  return status.ok() ? parsePsd(std::move(bytes), size, document) : status;
}

// A reason that explains a file that is no TGA image better than its numbers do.
Status tgaRefusal(InputFile& file, const Status& status) {
  if (file.size() == 0) return emptyFile();
  std::uint8_t first[kKindSize];
  std::size_t got = 0;
  const bool isRead = file.read(0, first, kKindSize, got).ok() && got == kKindSize;
  if (!isRead || knownKind(first) == nullptr) return status;
  return {isPsd(first) ? StatusCode::kOtherKind : StatusCode::kUnsupported,
          "not a TGA image: " + describeBeginning(first)};
}

Status loadTga(const char* path, PsdDocument& document, FileIdentity& identity) {
  InputFile file;
  Status status = file.open(path, kMaxFile);
  if (!status.ok()) return status;
  identity = file.identity();
  status = importTga(file, document);
  return status.ok() ? status : tgaRefusal(file, status);
}

}  // namespace

Status parsePsd(std::unique_ptr<std::uint8_t[]> bytes, std::size_t size, PsdDocument& document) {
  PsdInput in(bytes.get(), size);
  document.fileBytes = std::move(bytes);
  readSections(in, document);
  return in.ok() ? Status() : refusal(document, size, in.status());
}

std::unique_ptr<std::uint8_t[]> readOwned(PsdInput& in, std::size_t size) {
  const std::uint8_t* const at = in.take(size);
  if (!at || size == 0) return nullptr;
  std::unique_ptr<std::uint8_t[]> copy(new (std::nothrow) std::uint8_t[size]);
  if (copy)
    std::memcpy(copy.get(), at, size);
  else
    in.failForMemory();
  return copy;
}

void readName(PsdInput& in, std::uint32_t alignment, std::unique_ptr<char[]>& name,
              PsdOpaque& field) {
  PsdInput start = in;
  const std::size_t length = in.u8();
  const std::uint32_t fieldSize = paddedNameSize(length, alignment);
  const std::uint8_t* const text = in.take(length);
  const std::uint8_t* const padding = in.take(fieldSize - 1 - length);
  if (!in.ok()) return;
  if (length != 0) {
    name.reset(new (std::nothrow) char[length + 1]());
    if (!name) return in.failForMemory();
    std::memcpy(name.get(), text, length);
  }
  const bool plain =
      std::find(text, text + length, 0) == text + length &&
      std::all_of(padding, text + fieldSize - 1, [](auto byte) { return byte == 0; });
  if (!plain) field = start.takeOpaque(fieldSize);
}

std::string PsdDocument::headerFault() const {
  if (std::memcmp(signature, "8BPS", 4) != 0)
    return "not a PSD file: " + describeBeginning(signature);
  if (version == 1) return std::string();
  return "version " + std::to_string(version) + " is not supported" +
         (version == 2 ? ": a large document (PSB), not a PSD file" : "");
}

std::string PsdDocument::mergedFault() const {
  const std::uint64_t promised = headerFault().empty() ? promisedMergedSize(*this) : 0;
  if (promised <= mergedLength) return std::string();
  return "the merged image is cut off: at least " + std::to_string(promised) + " bytes wanted, " +
         std::to_string(mergedLength) + " there";
}

Status PsdDocument::loadFile(const char* loadPath) {
  const std::string extension = loadPath ? upperExtension(loadPath) : std::string();
  const bool isTga = extension == "TGA";
  if (!isTga && extension != "PSD")
    return {StatusCode::kBadArgument, "the file name ends neither in .psd nor in .tga"};
  PsdDocument fresh;
  FileIdentity identity;
  Status status = (isTga ? loadTga : loadPsd)(loadPath, fresh, identity);
  if (!status.ok()) return status;
  fresh.onDisk_ = identity;
  const std::size_t pathSize = std::strlen(loadPath) + 1;
  fresh.path.reset(new (std::nothrow) char[pathSize]);
  if (!fresh.path) return {StatusCode::kOutOfMemory, "out of memory"};
  std::memcpy(fresh.path.get(), loadPath, pathSize);
  *this = std::move(fresh);
  return status;
}

bool PsdDocument::load(const char* loadPath, Status* status) {
  return reportTo(status, loadFile(loadPath));
}

bool PsdDocument::loadBytes(std::unique_ptr<std::uint8_t[]> bytes, std::size_t size,
                            Status* status) {
  if (size > kMaxFile)
    return reportTo(status,
                    {StatusCode::kTooLarge, "too large: " + std::to_string(size) + " bytes"});
  PsdDocument fresh;
  const Status parsed = parsePsd(std::move(bytes), size, fresh);
  if (parsed.ok()) *this = std::move(fresh);
  return reportTo(status, parsed);
}

}  // namespace morvane
