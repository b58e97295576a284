#pragma once

/// @file
/// ITextToSpeech: one speech engine behind one interface.
///
///     LXAPIProductList* voices = ITextToSpeech::getLXAPIProductList();
///     ITextToSpeech* engine = ITextToSpeech::getInstance(window, WM_APP + 1, voices->GetHead());
///     if (engine && engine->speak(L"Hello, world.", false)) {
///       // WM_APP + 1 arrives at `window`: words as they are heard, then the end (see speech/notices.h)
///     }
///     ITextToSpeech::releaseInstance();
///
/// Threads: every call belongs to one thread, the one that owns the host window. Nothing here takes a lock.
/// Errors are results; no exception leaves the library, save the one that getISOListAt promises.

#include <cstdint>

#include <framework/framework.h>
#include <speech/export.h>
#include <speech/formats.h>
#include <speech/notices.h>
#include <speech/options.h>
#include <speech/product.h>

/// A speech engine: the statics choose, hand out and release the one engine of the process, the virtual
/// operations are the engine's own.
class SPEECH_API ITextToSpeech {
 public:
  /// Creates the engine for a product and makes it the current one, after unloading and deleting the one
  /// before.
  /// @param window   receives the notices
  /// @param message  the message number that notices carry
  /// @param product  from getLXAPIProductList; not owned, must live as long as the engine
  /// @return the engine, owned by the library until the next getInstance or releaseInstance. Null when
  ///   `product` is null; nothing changes then. Null also when the engine cannot be initialised: the engine
  ///   before is gone then, but window, message and current product stay as they were.
  static ITextToSpeech* getInstance(HWND window, UINT message, LXAPIProduct* product);

  /// Stops and deletes the current engine, then deletes the product list with all its products. Window,
  /// message number and language codes stay.
  static void releaseInstance();

  /// Unloads the current engine and loads it again. False when there is none or when either fails.
  static bool reloadEngine();

  /// Sends the notices to another window from now on, under the same message number. The end of a playback
  /// that has begun still goes to the window it began with.
  /// @param window  receives the notices; null ends them
  static void setEventHandle(HWND window);

  /// The product of the last successful getInstance, or null. Dangling after releaseInstance.
  static LXAPIProduct* getCurrentProduct();

  /// Every installed voice. Built by the first call, owned by the library until releaseInstance.
  static LXAPIProductList* getLXAPIProductList();

  /// The distinct language codes of the products. Owned by the library.
  ///
  /// Each call appends the codes once more; use getISOListCount and getISOListAt to see each once.
  static CStringArray* getISOCodeList();

  /// A language code by its index from 0; builds nothing. The text lives as long as the library. An index out
  /// of range throws the framework's invalid-argument exception.
  static const wchar_t* getISOListAt(int index);

  /// How many language codes there are, after building their list if it is empty.
  static int getISOListCount();

  // The engine's operations. Hosts call them by slot: their order is part of the interface. Wide text is
  // UTF-16, where a lone surrogate counts as U+FFFD; a null text counts as empty.

  /// Binds and loads the engine; getInstance has done it. False when the engine refuses.
  virtual bool initialize() = 0;

  /// Starts speaking and returns once the text is accepted. Local: a text is refused while another is being
  /// spoken; stop first. Cloud: returns when the service has answered.
  /// @param text    what to speak
  /// @param isSsml  whether the text is an SSML document
  /// @return false when the text was refused; the failure notice is posted as well
  virtual bool speak(const wchar_t* text, bool isSsml) = 0;

  /// Local: stops, then speaks without waiting for the end, and ignores the engine's answer. Cloud: does
  /// nothing.
  /// @param message  sent to no window
  /// @param text     in the system's code page
  /// @return true
  virtual bool speakSync(UINT message, const char* text) = 0;

  /// Synthesizes a text into an audio file.
  /// @param text       what to speak
  /// @param path       the file to write
  /// @param format     a speech::FileFormat, or a number of the engine's own
  /// @param isSsml     whether the text is an SSML document
  /// @param rateIndex  a speech::SampleRateIndex
  /// @param logExport  whether to write a line to the daily log
  /// @return 1 when the work ran, 0 or -1 on failure
  virtual int textToFile(const wchar_t* text, const wchar_t* path, int format, bool isSsml, int rateIndex,
                         bool logExport) = 0;

  /// Silences at once and forgets the rest; no end notice follows from the local engine. A pause outlasts it:
  /// isPaused stays true until the next speak. Always true.
  virtual bool stop() = 0;

  /// Pauses, or goes on when paused, and ignores the engine's answer. Always true.
  virtual bool pauseResume() = 0;

  /// True from an accepted speak until stop; the end notice does not clear it.
  virtual bool isSpeaking() = 0;

  /// True while paused.
  virtual bool isPaused() = 0;

  /// @name Reserved
  /// @{

  /// Does nothing; keeps the slot numbers of the operations behind it.
  virtual void reserved8() = 0;
  virtual void reserved9() = 0;
  virtual void reserved10() = 0;

  /// @}

  /// Names the folder that holds sox.exe, which ogg, gsm and mp3 files need. It ends in a backslash, and is
  /// empty at first.
  virtual void setToolFolder(const wchar_t* folder) = 0;

  /// Hands volume, speed, pitch and pauses to the engine, which decides about values out of range; call
  /// options.applied() afterwards. Cloud: does nothing.
  /// @return the result of the engine's last call, 0 for success; cloud: 0
  virtual int applyOptions(const TextToSpeech_Options& options) = 0;

  /// Runs the product's dictionary editor and waits for it to end, pumping messages.
  /// @param dictionary  the file to edit; empty for the product's own
  /// @param extra       further parameters, appended as they stand
  /// @return false when the editor could not be started
  virtual bool runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) = 0;

 protected:
  virtual ~ITextToSpeech();

 public:
  /// @name User dictionaries
  /// Of the local engine; the cloud engine answers all of these with fixed values. Pointer-sized arguments
  /// are numbers, or addresses of the host's data, that go to the engine unread. Results are the engine's, -1
  /// where it gives no answer; a verdict is a LxDictCheck.
  /// @{

  /// A limit of dictionaries.
  /// @param a  which one (LxDictLimit); 0 is the largest number of entries
  virtual int getUserDictLimit(intptr_t a) = 0;

  /// Loads a dictionary: a path ending in .csv (in any case) is a word list, which replaces the one before;
  /// anything else is a lexicon. A failure is shown to the user in a modal message box.
  /// @param path  in the system's code page
  /// @return word list: 0 when it is loaded, empty or cannot be read, else the low 16 bits of the engine's
  ///   code; lexicon: 65535, loaded or not
  virtual unsigned short loadUserDict(const char* path) = 0;

  /// Unloads a dictionary and returns the engine's result, 0 for success.
  /// @param number  0 for the one that loadUserDict loads; with engines of type "nv" it is always number 1
  virtual int unloadUserDict(int number) = 0;

  /// The verdict on an entry's target as text, whose address is `a`.
  virtual int checkUserDictTargetNorm(intptr_t a) = 0;
  /// The verdict on an entry's target as phonemes.
  virtual int checkUserDictTargetPhon(intptr_t a) = 0;
  /// Makes a line of a word list.
  /// @param a  address of the source
  /// @param b  address of the target
  /// @param c  address of a buffer for the line
  /// @param d  the buffer's size in bytes
  /// @return the line's length in bytes, or a negative code
  virtual int csvParserMakeCsv(intptr_t a, intptr_t b, intptr_t c, intptr_t d) = 0;
  /// 1 when the engine reads Latin letters as pinyin, else 0. The arguments are the engine's own; the bundled
  /// one takes 0.
  virtual int getPinyinActiveInfo(intptr_t a, intptr_t b) = 0;

  /// @}

  /// Chooses the local engine's sound device for the next speak and ignores the engine's answer. Always true.
  /// @param device  0 is the system's default, n the engine's device n - 1
  virtual bool setOutputAudio(int device) = 0;

  /// Switches the local engine's event notices on or off; every new local engine starts with them on.
  virtual void setEventNotify(bool on) = 0;

  /// Unloads the engine, as often as wanted. True when the engine reports success; cloud: true.
  virtual bool unloadEngine() = 0;
  /// Loads the engine, with the same answers.
  virtual bool loadEngine() = 0;

  /// @name The engine's parser of word lists
  /// @{

  /// Starts a parser and returns its address, or 0.
  virtual intptr_t csvParserInit() = 0;
  /// Reads a record of at least two fields.
  /// @param a  the parser @param b  address of the text, whose first record is read; 0 for the next record
  /// @return the line on which the record begins, 0 behind the last one, or a negative code
  virtual int csvParserParsing(intptr_t a, intptr_t b) = 0;
  /// How many fields the record of the parser `a` has.
  virtual int csvParserGetNfields(intptr_t a) = 0;
  /// Field `b`, from 0, of the parser `a`, as narrow text of at most 1000 bytes; empty when there is none.
  /// Valid until the next call on the engine.
  virtual const char* csvParserGetField(intptr_t a, intptr_t b) = 0;
  /// The verdict on a whole record, whose address is `a`.
  virtual int checkUserDictSubstitution(intptr_t a) = 0;
  /// The verdict on an entry's source as text.
  virtual int checkUserDictSourceNorm(intptr_t a) = 0;
  /// The verdict on the length of an entry's source.
  virtual int checkUserDictSourceLen(intptr_t a) = 0;

  /// @}

  /// Synthesizes into memory and returns when all of it is there. Posts no notice.
  /// @param text    what to speak
  /// @param isSsml  whether the text is an SSML document
  /// @param out     receives the samples (16-bit mono at the product's rate), to be freed with ExternFree;
  /// the
  ///   local engine puts one zero byte behind them; may be null
  /// @return size in bytes without that zero; 0 when the text was refused or memory ran out: `out` is
  ///   untouched then
  virtual int synthesizeToBuffer(const wchar_t* text, bool isSsml, unsigned char** out) = 0;

  /// Turns a raw 16-bit mono PCM file into an audio file. Afterwards the local engine deletes the PCM file,
  /// even after a failure; the cloud engine leaves it.
  /// @param source       path of the PCM file, whose rate is that of `rateIndex`
  /// @param destination  path without extension; for pcm and wav the extension is appended to it
  /// @param format       speech::kFormatPcm, kFormatWav, kFormatOgg, kFormatGsm or kFormatMp3; any other
  ///   writes nothing
  /// @param dataSize     size of the PCM data in bytes; 65535 or less give a WAV file of silence
  /// @param rateIndex    a speech::SampleRateIndex
  /// @return 0, or -1 when a file of kFormatWav cannot be opened
  virtual int exportAudio(const wchar_t* source, CStringW& destination, int format, int dataSize,
                          int rateIndex) = 0;

  /// Writes a file that holds nothing but a WAV header.
  /// @param path           the file to write
  /// @param dataSize       size in bytes of the samples that the header announces
  /// @param sampleRateHz   their rate
  /// @param bitsPerSample  8 or 16
  /// @param channels       1 or 2
  /// @return 0, or -1 when the file cannot be made or `bitsPerSample` is another
  virtual int makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                            int channels) = 0;

  /// The rate in hertz of a speech::SampleRateIndex; -1 for any other number.
  virtual int getSampleRate(int index) = 0;

  /// A text for use in an SSML document: & < > ' " become XML entities; entities in it are escaped once more.
  virtual CStringW escapeXml(const CStringW& text) = 0;

  /// Converts a WAV file to another rate, sample width and channel count.
  /// @param input     PCM of 8 or 16 bits
  /// @param rateHz    the new rate
  /// @param bits      8 or 16
  /// @param channels  1 or 2
  /// @param output    the file to write; not the input itself
  /// @return 1, or -1 on failure
  virtual int convertWavRate(const wchar_t* input, int rateHz, int bits, int channels,
                             const wchar_t* output) = 0;

 protected:
  /// Engines are made by getInstance only.
  ITextToSpeech();
  /// @name Copying
  /// @{

  /// There is nothing to copy.
  ITextToSpeech(const ITextToSpeech& /*other*/);
  ITextToSpeech& operator=(const ITextToSpeech& /*other*/);

  /// @}
};
