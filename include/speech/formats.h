#pragma once

/// @file
/// The numbers by which ITextToSpeech::textToFile and ITextToSpeech::exportAudio name file formats and sample
/// rates.
///
///     engine->textToFile(L"Hello, world.", L"hello.wav", speech::kFormatWav, false, speech::kRate16000Hz,
///                        false);

namespace speech {

/// Format of an audio file, always mono. Numbers 8, 9 and 11 to 13 are formats of an engine's own; the
/// bundled engine library has none.
enum FileFormat : int {
  kFormatPcm = 0,        ///< 16-bit samples without a header.
  kFormatWavAlias = 1,   ///< A second number of kFormatWav; textToFile only.
  kFormatOgg = 2,        ///< Ogg Vorbis. Needs sox.exe.
  kFormatGsm = 3,        ///< GSM 06.10, by textToFile always at 8000 Hz. Needs sox.exe.
  kFormatMp3 = 4,        ///< MP3 at 320 kbit/s or the most that the rate allows. Needs sox.exe.
  kFormatWav = 5,        ///< WAV, 16 bits.
  kFormatALaw = 6,       ///< WAV, A-law, at the voice's own rate; local voices and textToFile only.
  kFormatMuLaw = 7,      ///< WAV, mu-law, likewise.
  kFormatPcmAlias = 10,  ///< A second number of kFormatPcm; textToFile only.
};

/// A format that every voice can be exported to, and the extension by which SoX and other programs know it.
struct FileType {
  FileFormat format;         ///< For textToFile and exportAudio.
  const wchar_t* extension;  ///< With its dot.
};

/// All of them.
inline constexpr FileType kFileTypes[] = {{kFormatPcm, L".pcm"},
                                          {kFormatWav, L".wav"},
                                          {kFormatOgg, L".ogg"},
                                          {kFormatGsm, L".gsm"},
                                          {kFormatMp3, L".mp3"}};

/// Sample rate by index; ITextToSpeech::getSampleRate gives the rate, LXAPIProduct::getSampleRateIndex a
/// voice's own index.
enum SampleRateIndex : int {
  kRate8000Hz = 0,   ///< 8000 Hz.
  kRate16000Hz = 1,  ///< 16000 Hz.
  kRate22050Hz = 2,  ///< 22050 Hz.
  kRate44100Hz = 3,  ///< 44100 Hz.
  kRate48000Hz = 4,  ///< 48000 Hz.
};

/// The rates in hertz, by SampleRateIndex.
inline constexpr int kSampleRatesHz[] = {8000, 16000, 22050, 44100, 48000};

}  // namespace speech
