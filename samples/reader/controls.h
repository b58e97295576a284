#pragma once

// The window's controls: where they are, and their size on every screen.

#include <windows.h>

#include <array>
#include <memory>
#include <type_traits>

struct DeleteFont {
  void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteFont>;

/// The dots per inch at which a window is shown.
UINT dpiOf(HWND window);

/// The user's message font for a resolution, scaled by a percentage.
Font messageFont(UINT dpi, int percent = 100);

/// Dialog units: a quarter of a font's mean width, an eighth of its height. A layout in dialog units suits
/// every font and every resolution.
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

/// The window's controls and where they are. Members are in the order in which the Tab key visits them.
struct Controls {
  struct Slider {
    HWND label, slider, value;
  };

  HWND filterLabel, filter;
  HWND voicesLabel, voices;
  std::array<Slider, 3> sliders;
  HWND textLabel, text;
  HWND speak, pause, stop, exportSpeech;
  HWND line, status, progress;

  /// Makes every control as a child of the window.
  static Controls create(HWND window);

  /// Makes the fonts for a resolution and gives them to the controls.
  void setResolution(UINT dpi);

  /// Puts every control in its place, for the window's current size.
  void arrange() const;

  /// A good and the smallest size for the window, with its frame, in pixels.
  SIZE initialSize() const;
  SIZE smallestSize() const;

 private:
  SIZE windowSize(int widthUnits, int heightUnits) const;

  HWND window_ = nullptr;
  Font font_;
  Font textFont_;
  DialogUnits units_;
};
