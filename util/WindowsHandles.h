#ifndef MORVANE_UTIL_WINDOWSHANDLES_H_
#define MORVANE_UTIL_WINDOWSHANDLES_H_

#include <windows.h>

#include <string>

namespace morvane {

// Others may read, write, rename and replace the file meanwhile.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A handle for what the system knows of a file, for CloseHandle(); INVALID_HANDLE_VALUE when there
// is none. A folder takes the flag FILE_FLAG_BACKUP_SEMANTICS.
inline HANDLE openToLook(const std::wstring& path, DWORD flags = 0) {
  return CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING, flags,
                     nullptr);
}

}  // namespace morvane

#endif  // MORVANE_UTIL_WINDOWSHANDLES_H_
