#include "controls.h"

#include <commctrl.h>

#include "resource.h"

namespace {

/// A function that only newer systems have, or null.
template <typename Function>
Function* userFunction(const char* name) {
  // Through void*, which tells the compiler that the change of type is intended.
  return reinterpret_cast<Function*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
}

UINT systemDpi() {
  HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return static_cast<UINT>(dpi);
}

// All of these in dialog units.
constexpr int kMargin = 7;
constexpr int kGap = 7;       // between groups
constexpr int kSmallGap = 4;  // between controls that belong together
constexpr int kLabelGap = 2;  // between a label and its control
constexpr int kLabelHeight = 8;
constexpr int kFieldHeight = 14;
constexpr int kButtonWidth = 52;
constexpr int kSliderHeight = 18;
constexpr int kSliderLabelWidth = 32;
constexpr int kSliderValueWidth = 24;
constexpr int kLeftWidth = 172;
constexpr int kStatusHeight = 2 * kLabelHeight;
constexpr int kProgressWidth = 140;
constexpr SIZE kInitialSize = {440, 260};
constexpr SIZE kSmallestSize = {400, 190};

struct ControlMaker {
  HWND window;

  HWND operator()(const wchar_t* className, const wchar_t* text, DWORD style, int id = 0,
                  DWORD extendedStyle = 0) const {
    return CreateWindowExW(extendedStyle, className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                           nullptr);
  }

  HWND label(const wchar_t* text) const { return (*this)(WC_STATICW, text, SS_LEFT); }

  HWND button(const wchar_t* text, int id, DWORD style = BS_PUSHBUTTON) const {
    return (*this)(WC_BUTTONW, text, WS_TABSTOP | style, id);
  }

  Controls::Slider slider(const wchar_t* text, int id) const {
    HWND name = label(text);
    HWND track = (*this)(TRACKBAR_CLASSW, L"", WS_TABSTOP | TBS_HORZ, id);
    return {name, track, (*this)(WC_STATICW, L"", SS_RIGHT)};
  }
};

/// Moves all controls at once, so that nothing is drawn twice.
class Placement {
 public:
  Placement() : positions_(BeginDeferWindowPos(24)) {}
  Placement(const Placement&) = delete;
  Placement& operator=(const Placement&) = delete;
  ~Placement() { EndDeferWindowPos(positions_); }

  void put(HWND control, int left, int top, int width, int height) {
    positions_ = DeferWindowPos(positions_, control, nullptr, left, top, width, height,
                                SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
  }

 private:
  HDWP positions_;
};

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

Controls Controls::create(HWND window) {
  const ControlMaker make{window};
  Controls controls = {};
  controls.window_ = window;
  controls.filterLabel = make.label(L"&Language or name of a voice:");
  controls.filter = make(WC_EDITW, L"", WS_TABSTOP | ES_AUTOHSCROLL, IDC_FILTER, WS_EX_CLIENTEDGE);
  controls.voicesLabel = make.label(L"&Voices:");
  controls.voices =
      make(WC_LISTVIEWW, L"", WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER,
           IDC_VOICES, WS_EX_CLIENTEDGE);
  controls.sliders = {make.slider(L"Spee&d:", IDC_SPEED), make.slider(L"Pit&ch:", IDC_PITCH),
                      make.slider(L"Vol&ume:", IDC_VOLUME)};
  controls.textLabel = make.label(L"&Text:");
  controls.text = make(WC_EDITW, L"",
                       WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | ES_NOHIDESEL,
                       IDC_TEXT, WS_EX_CLIENTEDGE);
  controls.speak = make.button(L"&Speak", IDC_SPEAK, BS_DEFPUSHBUTTON);
  controls.pause = make.button(L"&Pause", IDC_PAUSE);
  controls.stop = make.button(L"St&op", IDC_STOP);
  controls.exportSpeech = make.button(L"&Export\u2026", IDC_EXPORT);
  controls.line = make(WC_STATICW, L"", SS_ETCHEDHORZ);
  controls.status = make(WC_STATICW, L"", SS_LEFT | SS_NOPREFIX, IDC_STATUS);
  controls.progress = make(PROGRESS_CLASSW, L"", 0, IDC_PROGRESS);
  return controls;
}

void Controls::setResolution(UINT dpi) {
  constexpr int kTextPercent = 125;  // a long text should be easy to read
  Font font = messageFont(dpi);
  Font textFont = messageFont(dpi, kTextPercent);
  units_ = DialogUnits(window_, font.get());
  for (HWND child = GetWindow(window_, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    HFONT used = child == text ? textFont.get() : font.get();
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(used), TRUE);
  }
  // The old fonts are no longer in use.
  font_ = std::move(font);
  textFont_ = std::move(textFont);
}

void Controls::arrange() const {
  RECT client;
  GetClientRect(window_, &client);
  const auto x = [this](int units) { return units_.x(units); };
  const auto y = [this](int units) { return units_.y(units); };

  const int left = x(kMargin);
  const int leftWidth = x(kLeftWidth);
  const int middle = left + leftWidth + x(kGap);
  const int right = client.right - x(kMargin);
  const int label = y(kLabelHeight);
  const int field = y(kFieldHeight);
  const int statusTop = client.bottom - y(kSmallGap + kStatusHeight);
  const int lineTop = statusTop - y(kSmallGap);
  const int contentBottom = lineTop - y(kGap);

  Placement place;

  int top = y(kMargin);
  place.put(filterLabel, left, top, leftWidth, label);
  top += label + y(kLabelGap);
  place.put(filter, left, top, leftWidth, field);
  top += field + y(kGap);
  place.put(voicesLabel, left, top, leftWidth, label);
  top += label + y(kLabelGap);
  const int slidersTop = contentBottom - 3 * y(kSliderHeight);
  place.put(voices, left, top, leftWidth, slidersTop - y(kGap) - top);

  top = slidersTop;
  for (const Slider& row : sliders) {
    const int textTop = top + (y(kSliderHeight) - label) / 2;
    const int trackLeft = left + x(kSliderLabelWidth);
    const int valueLeft = left + leftWidth - x(kSliderValueWidth);
    place.put(row.label, left, textTop, x(kSliderLabelWidth), label);
    place.put(row.slider, trackLeft, top, valueLeft - trackLeft, y(kSliderHeight));
    place.put(row.value, valueLeft, textTop, x(kSliderValueWidth), label);
    top += y(kSliderHeight);
  }

  const int buttonTop = contentBottom - field;
  const int textTop = y(kMargin) + label + y(kLabelGap);
  place.put(textLabel, middle, y(kMargin), right - middle, label);
  place.put(text, middle, textTop, right - middle, buttonTop - y(kGap) - textTop);
  int buttonLeft = middle;
  for (HWND button : {speak, pause, stop}) {
    place.put(button, buttonLeft, buttonTop, x(kButtonWidth), field);
    buttonLeft += x(kButtonWidth + kSmallGap);
  }
  place.put(exportSpeech, right - x(kButtonWidth), buttonTop, x(kButtonWidth), field);

  // Without progress to show, the status has the whole width.
  const bool hasProgress = (GetWindowLongW(progress, GWL_STYLE) & WS_VISIBLE) != 0;
  const int progressLeft = right - x(kProgressWidth);
  const int statusRight = hasProgress ? progressLeft - x(kGap) : right;
  place.put(line, 0, lineTop, client.right, 2);
  place.put(status, left, statusTop, statusRight - left, y(kStatusHeight));
  place.put(progress, progressLeft, statusTop, right - progressLeft, label);
}

SIZE Controls::windowSize(int widthUnits, int heightUnits) const {
  RECT whole, client;
  GetWindowRect(window_, &whole);
  GetClientRect(window_, &client);
  const LONG frameWidth = whole.right - whole.left - client.right;
  const LONG frameHeight = whole.bottom - whole.top - client.bottom;
  return {units_.x(widthUnits) + frameWidth, units_.y(heightUnits) + frameHeight};
}

SIZE Controls::initialSize() const { return windowSize(kInitialSize.cx, kInitialSize.cy); }

SIZE Controls::smallestSize() const { return windowSize(kSmallestSize.cx, kSmallestSize.cy); }
