#ifndef MORVANE_IMPORT_PSDTRANSLATOR_H_
#define MORVANE_IMPORT_PSDTRANSLATOR_H_

#include <maya/MFileObject.h>
#include <maya/MObject.h>
#include <maya/MPxFileTranslator.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

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
  MFileKind identifyFile(const MFileObject& file, const char* buffer, short size) const override;

  // The document that the writer starts from; blank while this is empty, which it is: no operation
  // sets it.
  MString sourceFileName;
};

}  // namespace morvane

#endif  // MORVANE_IMPORT_PSDTRANSLATOR_H_
