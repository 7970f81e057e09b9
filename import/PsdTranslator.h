#ifndef MORVANE_IMPORT_PSDTRANSLATOR_H_
#define MORVANE_IMPORT_PSDTRANSLATOR_H_

#include <maya/MFileObject.h>
#include <maya/MObject.h>
#include <maya/MPxFileTranslator.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <cstdint>
#include <memory>

#include "psd/PsdDocument.h"

namespace morvane {

// The file translator "psd": exports the selected tile's goblins to a PSD file, and applies such a
// file to the selected tile. It never opens a file as a scene of its own.
class PsdTranslator : public MPxFileTranslator {
 public:
  PsdTranslator() = default;
  ~PsdTranslator() override = default;

  static void* creator();

  MStatus reader(const MFileObject& file, const MString& options, FileAccessMode mode) override;
  MStatus writer(const MFileObject& file, const MString& options, FileAccessMode mode) override;
  bool haveReadMethod() const override { return true; }
  bool haveWriteMethod() const override { return true; }
  MString defaultExtension() const override { return "psd"; }
  bool canBeOpened() const override { return false; }

  // Decides by the signature "8BPS" alone, whatever the file is called.
  MFileKind identifyFile(const MFileObject& file, const char* start, short size) const override;

  // Gives a mesh a shading network coloured by the file; see import/TextureNetwork.h.
  MStatus applyTexture(MObject node, MString fileName);

  // The file from which the writer's document is loaded; the document is blank while this is empty,
  // and no operation sets it.
  MString sourceFileName;

  // Kept for translators that hold a file between calls. Reader and writer each use a document of
  // their own.
  std::unique_ptr<std::uint8_t[]> buffer;
  std::int32_t bufferSize = 0;
  PsdDocument document{256, 256};
};

}  // namespace morvane

#endif  // MORVANE_IMPORT_PSDTRANSLATOR_H_
