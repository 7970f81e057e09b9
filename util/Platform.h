#ifndef MORVANE_UTIL_PLATFORM_H_
#define MORVANE_UTIL_PLATFORM_H_

#include <string>

// What differs between platforms in the plug-in: how a symbol is exported and how a path splits.

#if defined(_WIN32)
#define MORVANE_EXPORT extern "C" __declspec(dllexport)
#else
#define MORVANE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

// Lets the compiler check a printf-like function's arguments against its format.
#if defined(__GNUC__)
#define MORVANE_PRINTF_FORMAT(formatArgument, firstArgument) \
  __attribute__((format(printf, formatArgument, firstArgument)))
#else
#define MORVANE_PRINTF_FORMAT(formatArgument, firstArgument)
#endif

namespace morvane {

// A path cut so that drive + directory + name + extension is the path again. The drive ("D:") is
// empty where there are none, the directory ends with its separator, the extension begins with its
// dot.
struct SplitPath {
  std::string drive;
  std::string directory;
  std::string name;
  std::string extension;
};

SplitPath splitPath(const std::string& path);

}  // namespace morvane

#endif  // MORVANE_UTIL_PLATFORM_H_
