#ifndef MORVANE_HOST_INCLUDE_MAYA_MPXFILETRANSLATOR_H_
#define MORVANE_HOST_INCLUDE_MAYA_MPXFILETRANSLATOR_H_

#include <maya/MFileObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

// Base of a plug-in's file formats. The host makes one object a file operation and deletes it
// after.
class MPxFileTranslator {
 public:
  enum MFileKind { kIsMyFileType, kCouldBeMyFileType, kNotMyFileType };

  // Values as in API version 300; later versions have more, so name them.
  enum FileAccessMode {
    kUnknownAccessMode,
    kOpenAccessMode,
    kImportAccessMode,
    kSaveAccessMode,
    kExportAccessMode,
    kExportActiveAccessMode
  };

  MPxFileTranslator();
  virtual ~MPxFileTranslator();

  virtual MStatus reader(const MFileObject& file, const MString& options, FileAccessMode mode);
  virtual MStatus writer(const MFileObject& file, const MString& options, FileAccessMode mode);
  virtual bool haveReadMethod() const;       // false unless overridden
  virtual bool haveWriteMethod() const;      // false unless overridden
  virtual MString defaultExtension() const;  // without a dot
  virtual bool canBeOpened() const;  // true unless overridden: the file may become the scene

  // `buffer` holds the first `size` bytes of the file.
  virtual MFileKind identifyFile(const MFileObject& file, const char* buffer, short size) const;

 private:
  MPxFileTranslator(const MPxFileTranslator&) = delete;
  MPxFileTranslator& operator=(const MPxFileTranslator&) = delete;
};

#endif  // MORVANE_HOST_INCLUDE_MAYA_MPXFILETRANSLATOR_H_
