#include "dpi.h"

namespace {

/// A function that only newer systems have, or null.
template <typename Function>
Function* userFunction(const char* name) {
  // By way of void*, which says that the change of type is meant.
  return reinterpret_cast<Function*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
}

UINT systemDpi() {
  HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return static_cast<UINT>(dpi);
}

}  // namespace

UINT dpiOf(HWND window) {
  static const auto getDpiForWindow = userFunction<UINT WINAPI(HWND)>("GetDpiForWindow");
  const UINT dpi = getDpiForWindow != nullptr ? getDpiForWindow(window) : 0;
  return dpi != 0 ? dpi : systemDpi();
}

Font messageFont(UINT dpi, int percent) {
  static const auto parametersForDpi =
      userFunction<BOOL WINAPI(UINT, UINT, PVOID, UINT, UINT)>("SystemParametersInfoForDpi");
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  if (parametersForDpi == nullptr ||
      !parametersForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi)) {
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    metrics.lfMessageFont.lfHeight =
        MulDiv(metrics.lfMessageFont.lfHeight, static_cast<int>(dpi), static_cast<int>(systemDpi()));
  }
  metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, percent, 100);
  return Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

DialogUnits::DialogUnits(HWND window, HFONT font) {
  constexpr wchar_t kLetters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int kLetterCount = 52;
  HDC dc = GetDC(window);
  const HGDIOBJ former = SelectObject(dc, font);
  SIZE size = {};
  GetTextExtentPoint32W(dc, kLetters, kLetterCount, &size);
  SelectObject(dc, former);
  ReleaseDC(window, dc);
  width_ = (size.cx + kLetterCount / 2) / kLetterCount;
  height_ = size.cy;
}
