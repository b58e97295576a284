#include "engines/cloud/temporary_names.h"

#include <windows.h>

#include <objbase.h>

namespace speech {

CStringW getTempFolder() {
  wchar_t folder[MAX_PATH] = {};
  const DWORD length = GetTempPathW(MAX_PATH, folder);
  // A folder that does not fit leaves the buffer undefined.
  return length < MAX_PATH ? CStringW(folder) : CStringW();
}

CStringW makeGuidName() {
  GUID guid = {};
  static_cast<void>(CoCreateGuid(&guid));
  CStringW name;
  name.Format(L"%.8X-%.4X-%.4X-%.2X%.2X-%.2X%.2X%.2X%.2X%.2X%.2X", guid.Data1, guid.Data2, guid.Data3,
              guid.Data4[0], guid.Data4[1], guid.Data4[2], guid.Data4[3], guid.Data4[4], guid.Data4[5],
              guid.Data4[6], guid.Data4[7]);
  return name;
}

CStringW makeTempPath(const wchar_t* extension) { return getTempFolder() + makeGuidName() + extension; }

}  // namespace speech
