#include <maya/MPxFileTranslator.h>

MPxFileTranslator::MPxFileTranslator() = default;
MPxFileTranslator::~MPxFileTranslator() = default;

MStatus MPxFileTranslator::reader(const MFileObject&, const MString&, FileAccessMode) {
  return MStatus::kNotImplemented;
}
MStatus MPxFileTranslator::writer(const MFileObject&, const MString&, FileAccessMode) {
  return MStatus::kNotImplemented;
}
bool MPxFileTranslator::haveReadMethod() const {
  return false;
}
bool MPxFileTranslator::haveWriteMethod() const {
  return false;
}
MString MPxFileTranslator::defaultExtension() const {
  return MString();
}
bool MPxFileTranslator::canBeOpened() const {
  return true;
}
MPxFileTranslator::MFileKind MPxFileTranslator::identifyFile(const MFileObject&, const char*,
                                                             short) const {
  return kNotMyFileType;
}
