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
  /// @return the engine, owned by the library until the next getInstance or releaseInstance; null when
  ///   `product` is null (nothing changes) or when the engine cannot be initialised (window, message and
  ///   current product then keep their earlier values, and the engine before it is gone)
  static ITextToSpeech* getInstance(HWND window, UINT message, LXAPIProduct* product);

  /// Stops and deletes the current engine, then deletes the product list and with it every product.
  static void releaseInstance();

  /// Unloads the current engine and loads it again. False when there is none, or when either fails.
  static bool reloadEngine();

  /// Sends the notices to another window from now on, under the same message number.
  static void setEventHandle(HWND window);

  /// The product of the last successful getInstance, or null. Dangling after releaseInstance.
  static LXAPIProduct* getCurrentProduct();

  /// Every installed voice. Built by the first call, owned by the library until releaseInstance.
  static LXAPIProductList* getLXAPIProductList();

  /// The distinct language codes of the products. Owned by the library.
  /// Each call appends the codes once more; use getISOListCount and getISOListAt to see each once.
  static CStringArray* getISOCodeList();

  /// A language code by its place from 0; builds nothing. The text belongs to the library and lives as
  /// long as it. Throws the framework's invalid-argument exception for a place out of range.
  static const wchar_t* getISOListAt(int index);

  /// How many language codes the list holds; builds it when it is empty. 0 without products.
  static int getISOListCount();

  // The engine's operations. Hosts call them by slot: their order is part of the interface. Wide text is
  // UTF-16, where a lone surrogate counts as U+FFFD; a null text counts as empty.

  /// Binds and loads the engine; getInstance has done it. False when the engine refuses.
  virtual bool initialize() = 0;

  /// Starts speaking and returns once the text is accepted. Local: a text is refused while another is being
  /// spoken; stop first. Cloud: returns when the service has answered.
  /// @param flag  true when the text is an SSML document
  /// @return false when the text was refused; the failure notice is posted as well
  virtual bool speak(const wchar_t* text, bool flag) = 0;

  /// Local: stops, then speaks whatever the engine answers, without waiting for the end. Cloud: nothing.
  /// @param message  sent to no window
  /// @param text     in the thread's code page
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

  /// Silences at once and forgets the rest; no end notice follows from the local engine. A pause outlasts it:
  /// isPaused stays true until the next speak. True.
  virtual bool stop() = 0;

  /// Pauses, or goes on when paused, whatever the engine answers. True.
  virtual bool pauseResume() = 0;

  /// True from an accepted speak until stop; the end notice alone does not clear it.
  virtual bool isSpeaking() = 0;

  /// True while paused.
  virtual bool isPaused() = 0;

  // Reserved slots; they keep the numbers of those behind them.
  virtual void reserved8() = 0;
  virtual void reserved9() = 0;
  virtual void reserved10() = 0;

  /// The folder, ending in a backslash, that holds sox.exe, which ogg, gsm and mp3 files need. Empty at
  /// first.
  virtual void setToolFolder(const wchar_t* folder) = 0;

  /// Hands volume, speed, pitch and pauses to the engine; call options.applied() afterwards. The result of
  /// the last of the engine's calls, 0 for success; cloud: does nothing, 0.
  virtual int applyOptions(const TextToSpeech_Options& options) = 0;

  /// Runs the product's dictionary editor and waits for it to end, pumping messages.
  /// @param dictionary  the file to edit; empty for the product's own
  /// @param extra       further parameters, appended as they stand
  /// @return false when the editor could not be started
  virtual bool runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) = 0;

 protected:
  virtual ~ITextToSpeech();

 public:
  // User dictionaries of the local engine; the cloud engine answers all of these with fixed values. The
  // pointer-sized arguments are numbers or addresses of the host's data that go to the engine unread; results
  // are the engine's, -1 where it gave no answer.

  /// Largest number of entries.
  virtual int getUserDictLimit(intptr_t a) = 0;

  /// Loads a dictionary: a path ending in .csv (in any case) is a word list, which replaces the one before;
  /// anything else is a lexicon. A failure is shown to the user in a modal message box.
  /// @param path  in the thread's code page
  /// @return word list: 0 when it is loaded, empty or cannot be read, else the low 16 bits of the engine's
  ///   code; lexicon: 65535, loaded or not
  virtual unsigned short loadUserDict(const char* path) = 0;

  /// Unloads a dictionary by its number; engines of type "nv" have but number 1. The engine's result, 0 for
  /// success.
  virtual int unloadUserDict(int number) = 0;

  /// Checks of an entry's target, as text and as phonemes.
  virtual int checkUserDictTargetNorm(intptr_t a) = 0;
  virtual int checkUserDictTargetPhon(intptr_t a) = 0;
  /// Makes a line of a word list.
  virtual int csvParserMakeCsv(intptr_t a, intptr_t b, intptr_t c, intptr_t d) = 0;
  /// A question for engines that know it.
  virtual int getPinyinActiveInfo(intptr_t a, intptr_t b) = 0;

  /// Chooses the local engine's sound device for the next speak: 0 is the system's default, n the engine's
  /// device n - 1. True, whatever the engine answers.
  virtual bool setOutputAudio(int device) = 0;

  /// Switches the local engine's event notices off, or on again; every new local engine starts with them on.
  virtual void setEventNotify(bool on) = 0;

  /// Unloads or loads the engine, as often as wanted. True when the engine reports success; cloud: true.
  virtual bool unloadEngine() = 0;
  virtual bool loadEngine() = 0;

  /// The engine's parser of word lists: starts it (its address, or 0), parses a line, and asks for its
  /// fields.
  virtual intptr_t csvParserInit() = 0;
  virtual int csvParserParsing(intptr_t a, intptr_t b) = 0;
  virtual int csvParserGetNfields(intptr_t a) = 0;
  /// A field as narrow text, at most 1000 bytes, valid until the next call on the engine; empty without one.
  virtual const char* csvParserGetField(intptr_t a, intptr_t b) = 0;
  /// Checks of an entry, of its source as text, and of its source's length.
  virtual int checkUserDictSubstitution(intptr_t a) = 0;
  virtual int checkUserDictSourceNorm(intptr_t a) = 0;
  virtual int checkUserDictSourceLen(intptr_t a) = 0;

  /// Synthesizes into memory and returns when all of it is there. Posts no notice.
  /// @param flag  true when the text is an SSML document
  /// @param out   receives the samples (16-bit mono at the product's rate), to be freed with ExternFree; the
  ///   local engine puts one zero byte behind them; may be null
  /// @return size in bytes without that zero; 0 when the text was refused or memory ran out: `out` is
  ///   untouched then
  virtual int synthesizeToBuffer(const wchar_t* text, bool flag, unsigned char** out) = 0;

  /// Turns a raw 16-bit mono PCM file into an audio file and deletes it.
  /// @param source       path of the PCM file, whose rate is that of `rateIndex`
  /// @param destination  path without extension; for formats 0 and 5 the extension is appended to it
  /// @param format       0 pcm, 5 wav, 2 ogg, 3 gsm, 4 mp3
  /// @param dataSize     size of the PCM data in bytes; 65535 or less give a WAV file of silence
  /// @return 0, or -1 when a file of format 5 cannot be opened
  virtual int exportAudio(const wchar_t* source, CStringW& destination, int format, int dataSize,
                          int rateIndex) = 0;

  /// Writes a file that holds nothing but a WAV header. 0, or -1 when the file cannot be made or
  /// `bitsPerSample` is neither 8 nor 16.
  virtual int makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                            int channels) = 0;

  /// Index 0 to 4: 8000, 16000, 22050, 44100, 48000 Hz; any other -1.
  virtual int getSampleRate(int index) = 0;

  /// The text with & < > ' " replaced by their XML entities; entities in it are escaped once more.
  virtual CStringW escapeXml(const CStringW& text) = 0;

  /// Converts a WAV file to another rate, sample width and channel count. 1, or -1.
  virtual int convertWavRate(const wchar_t* input, int rateHz, int bits, int channels,
                             const wchar_t* output) = 0;

 protected:
  ITextToSpeech();
  ITextToSpeech(const ITextToSpeech&);
  ITextToSpeech& operator=(const ITextToSpeech&);
};
