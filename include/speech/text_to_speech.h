#pragma once

// ITextToSpeech: one speech engine behind one interface.
//
//   LXAPIProductList* voices = ITextToSpeech::getLXAPIProductList();
//   ITextToSpeech* engine = ITextToSpeech::getInstance(window, WM_APP + 1, voices->GetHead());
//   if (engine && engine->speak(L"Hello, world.", false)) {
//     // WM_APP + 1 arrives at `window`: words as they are heard, then the end (see speech/notices.h)
//   }
//   ITextToSpeech::releaseInstance();
//
// Threads: every call belongs to one thread, the one that owns the host window. Nothing here takes a lock.
// Errors are results; no exception leaves the library, save the one that getISOListAt promises.

#include <cstdint>

#include <windows.h>

#include <speech/notices.h>
#include <speech/options.h>
#include <speech/product.h>
#include "audio/export.h"
#include "framework/framework.h"

class SPEECH_API ITextToSpeech {
 public:
  /// Creates the engine for a product and makes it the current one; the engine before it is unloaded and
  /// deleted.
  /// @param window   receives the notices
  /// @param message  the message number that notices carry
  /// @param product  from getLXAPIProductList; not owned, must live as long as the engine
  /// @return the engine, owned by the library; null when `product` is null (nothing changes) or when the
  /// engine
  ///         cannot be initialised (window, message and current product then keep their earlier values)
  static ITextToSpeech* getInstance(HWND window, UINT message, LXAPIProduct* product);

  /// Stops and deletes the current engine, then deletes the product list and with it every product.
  static void releaseInstance();

  /// Unloads the current engine and loads it again. False when there is none, or when either fails.
  static bool reloadEngine();

  /// Sends the notices to another window from now on.
  static void setEventHandle(HWND window);

  /// The product of the last successful getInstance, or null. Dangling after releaseInstance.
  static LXAPIProduct* getCurrentProduct();

  /// Every installed voice. Built by the first call, owned by the library until releaseInstance.
  static LXAPIProductList* getLXAPIProductList();

  /// The distinct language codes of the products. Owned by the library.
  /// Each call appends the codes once more; use getISOListCount and getISOListAt to see each once.
  static CStringArray* getISOCodeList();

  /// A language code by its place. Throws the framework's invalid-argument exception for a place out of
  /// range.
  static const wchar_t* getISOListAt(int index);

  /// How many language codes the list holds; builds it when it is empty.
  static int getISOListCount();

  // The engine's operations. Hosts call them by slot: their order is part of the interface.

  /// Prepares the engine; getInstance has done it.
  virtual bool initialize() = 0;

  /// Starts speaking and returns once the text is accepted.
  /// @param flag  true when the text is an SSML document
  /// @return false when the text was refused; the failure notice is posted as well
  virtual bool speak(const wchar_t* text, bool flag) = 0;

  /// Local: stops, then speaks `text` (in the system's code page) whatever the engine answers. Cloud:
  /// nothing.
  /// @param message  sent to no window
  /// @return true
  virtual bool speakSync(UINT message, const char* text) = 0;

  /// Synthesizes a text into an audio file.
  /// @param path       the file to write
  /// @param format     0, 10 raw PCM; 1, 5 WAV; 2 ogg; 3 gsm; 4 mp3; 6 A-law; 7 mu-law; others by engine
  /// @param flag       true when the text is an SSML document
  /// @param rateIndex  sample rate by index, see getSampleRate
  /// @param logExport  true to write a line to the daily log
  /// @return 1 when the work ran, 0 or -1 on failure
  virtual int textToFile(const wchar_t* text, const wchar_t* path, int format, bool flag, int rateIndex,
                         bool logExport) = 0;

  /// Silences at once. True.
  virtual bool stop() = 0;

  /// Pauses, or goes on when paused. True.
  virtual bool pauseResume() = 0;

  /// True from an accepted speak until stop; the end notice alone does not clear it.
  virtual bool isSpeaking() = 0;

  /// True while paused.
  virtual bool isPaused() = 0;

  // Reserved slots; they keep the numbers of those behind them.
  virtual void reserved8() = 0;
  virtual void reserved9() = 0;
  virtual void reserved10() = 0;

  /// The folder, ending in a backslash, that holds sox.exe.
  virtual void setToolFolder(const wchar_t* folder) = 0;

  /// Hands volume, speed, pitch and pauses to the engine. The last engine call's result; cloud: 0.
  virtual int applyOptions(const TextToSpeech_Options& options) = 0;

  /// Runs the product's dictionary editor and waits for it to end, pumping messages.
  /// @param dictionary  the file to edit; empty for the product's own
  /// @param extra       further parameters, appended as they stand
  /// @return false when the editor could not be started
  virtual bool runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) = 0;

 protected:
  virtual ~ITextToSpeech();

 public:
  // User dictionaries. The pointer-sized arguments go to the engine unchanged; -1 when the engine gave no
  // answer.

  /// Largest number of entries.
  virtual int getUserDictLimit(intptr_t a) = 0;

  /// Loads a dictionary: a path ending in .csv is a word list, anything else a lexicon.
  /// @param path  in the system's code page
  /// @return word list: 0 when loaded or unreadable, else the engine's code; lexicon: 65535
  virtual unsigned short loadUserDict(const char* path) = 0;

  /// Unloads a dictionary by its number. The engine's result.
  virtual int unloadUserDict(int number) = 0;

  virtual int checkUserDictTargetNorm(intptr_t a) = 0;
  virtual int checkUserDictTargetPhon(intptr_t a) = 0;
  virtual int csvParserMakeCsv(intptr_t a, intptr_t b, intptr_t c, intptr_t d) = 0;
  virtual int getPinyinActiveInfo(intptr_t a, intptr_t b) = 0;

  /// Chooses the sound device: 0 the system's default, n the device n - 1. True.
  virtual bool setOutputAudio(int device) = 0;

  /// Switches the local engine's notices on or off.
  virtual void setEventNotify(bool on) = 0;

  /// Unloads and loads the engine.
  virtual bool unloadEngine() = 0;
  virtual bool loadEngine() = 0;

  virtual intptr_t csvParserInit() = 0;
  virtual int csvParserParsing(intptr_t a, intptr_t b) = 0;
  virtual int csvParserGetNfields(intptr_t a) = 0;
  /// The text is valid until the next call on the engine.
  virtual const char* csvParserGetField(intptr_t a, intptr_t b) = 0;
  virtual int checkUserDictSubstitution(intptr_t a) = 0;
  virtual int checkUserDictSourceNorm(intptr_t a) = 0;
  virtual int checkUserDictSourceLen(intptr_t a) = 0;

  /// Synthesizes into memory.
  /// @param flag  true when the text is an SSML document
  /// @param out   receives the samples (16-bit mono at the product's rate), to be freed with ExternFree; may
  /// be null
  /// @return size in bytes; 0 when the text was refused, and `out` is then untouched
  virtual int synthesizeToBuffer(const wchar_t* text, bool flag, unsigned char** out) = 0;

  /// Turns a raw 16-bit mono PCM file into an audio file and deletes it.
  /// @param source       path of the PCM file, whose rate is that of `rateIndex`
  /// @param destination  path without extension; for formats 0 and 5 the extension is appended to it
  /// @param format       0 pcm, 5 wav, 2 ogg, 3 gsm, 4 mp3
  /// @param dataSize     size of the PCM data in bytes
  /// @return 0, or -1 when a file of format 5 cannot be opened
  virtual int exportAudio(const wchar_t* source, CStringW& destination, int format, int dataSize,
                          int rateIndex) = 0;

  /// Writes a file that holds nothing but a WAV header. 0, or -1.
  virtual int makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                            int channels) = 0;

  /// Index 0 to 4: 8000, 16000, 22050, 44100, 48000 Hz; any other -1.
  virtual int getSampleRate(int index) = 0;

  /// The text with & < > ' " replaced by their XML entities.
  virtual CStringW escapeXml(const CStringW& text) = 0;

  /// Converts a WAV file. 1, or -1.
  virtual int convertWavRate(const wchar_t* input, int rateHz, int bits, int channels,
                             const wchar_t* output) = 0;

 protected:
  ITextToSpeech();
  ITextToSpeech(const ITextToSpeech&);
  ITextToSpeech& operator=(const ITextToSpeech&);
};
