#include "import/PsdTranslator.h"

#include <cstring>
#include <new>

#include "export/TileWriter.h"
#include "import/TextureNetwork.h"
#include "import/TileReader.h"

namespace morvane {
namespace {

constexpr char kSignature[] = {'8', 'B', 'P', 'S'};

}  // namespace

void* PsdTranslator::creator() {
  return new (std::nothrow) PsdTranslator;
}

MStatus PsdTranslator::reader(const MFileObject& file, const MString&, FileAccessMode mode) {
  return readTile(file, mode);
}

MStatus PsdTranslator::writer(const MFileObject& file, const MString&, FileAccessMode mode) {
  return writeTile(file, mode, sourceFileName);
}

MStatus PsdTranslator::applyTexture(MObject node, MString fileName) {
  return morvane::applyTexture(node, fileName);
}

MPxFileTranslator::MFileKind PsdTranslator::identifyFile(const MFileObject&, const char* start,
                                                         short size) const {
  if (size < static_cast<short>(sizeof kSignature)) return kNotMyFileType;
  return std::memcmp(start, kSignature, sizeof kSignature) == 0 ? kIsMyFileType : kNotMyFileType;
}

}  // namespace morvane
