#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

struct DeleteFont {
  void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteFont>;

/// The dots per inch at which a window is shown.
UINT dpiOf(HWND window);

/// The font that the user has chosen for messages, for a resolution and enlarged to some percentage.
Font messageFont(UINT dpi, int percent = 100);

/// Dialog units: a quarter of a font's mean width, an eighth of its height. A layout in these suits every
/// font and every resolution.
class DialogUnits {
 public:
  DialogUnits() = default;
  DialogUnits(HWND window, HFONT font);

  int x(int units) const { return MulDiv(units, width_, 4); }
  int y(int units) const { return MulDiv(units, height_, 8); }

 private:
  int width_ = 0;   // of the font's mean character, in pixels
  int height_ = 0;  // of the font's line, in pixels
};
