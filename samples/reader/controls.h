#pragma once

#include <windows.h>

#include <array>

#include "dpi.h"

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

  /// Puts every control in its place, for the window's present size.
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
