// Reading a WAV file by its RIFF chunks.

#include <windows.h>

#include <mmsystem.h>

#include <climits>
#include <new>
#include <string>

#include "engines/cloud/decoder.h"

namespace speech {
namespace {

struct MmioCloser {
  using pointer = HMMIO;
  void operator()(HMMIO file) const { mmioClose(file, 0); }
};
using UniqueMmio = std::unique_ptr<HMMIO__, MmioCloser>;

constexpr FOURCC fourCc(const char (&name)[5]) {
  return static_cast<FOURCC>(name[0]) | static_cast<FOURCC>(name[1]) << 8 |
         static_cast<FOURCC>(name[2]) << 16 | static_cast<FOURCC>(name[3]) << 24;
}

bool descend(HMMIO file, MMCKINFO& chunk, const MMCKINFO* parent, UINT search) {
  return mmioDescend(file, &chunk, parent, search) == MMSYSERR_NOERROR;
}

bool readExactly(HMMIO file, void* destination, DWORD size) {
  return size <= LONG_MAX &&
         mmioRead(file, static_cast<HPSTR>(destination), static_cast<LONG>(size)) == static_cast<LONG>(size);
}

}  // namespace

int CDecoder::openWav(const wchar_t* path) {
  if (path == nullptr) return kNoPath;
  std::wstring name(path);  // the call wants a path that it may write to
  const UniqueMmio file(mmioOpenW(name.data(), nullptr, MMIO_READ | MMIO_ALLOCBUF));
  if (!file) return kNotOpened;

  MMCKINFO form = {};
  form.fccType = fourCc("WAVE");
  if (!descend(file.get(), form, nullptr, MMIO_FINDRIFF)) return kNoWaveData;

  MMCKINFO formatChunk = {};
  formatChunk.ckid = fourCc("fmt ");
  if (!descend(file.get(), formatChunk, &form, MMIO_FINDCHUNK)) return kNoFormat;
  WAVEFORMATEXTENSIBLE format = format_;
  if (formatChunk.cksize > sizeof format) return kNoFormat;
  if (!readExactly(file.get(), &format, formatChunk.cksize)) return kNoFormat;
  if (mmioAscend(file.get(), &formatChunk, 0) != MMSYSERR_NOERROR) return kFormatNotLeft;

  MMCKINFO dataChunk = {};
  dataChunk.ckid = fourCc("data");
  if (!descend(file.get(), dataChunk, &form, MMIO_FINDCHUNK)) return kNoWaveData;
  const DWORD size = dataChunk.cksize;
  if (size > LONG_MAX) return kNoMemory;  // no array of a 32-bit process is that long
  std::unique_ptr<unsigned char, ArrayDeleter> bytes(new (std::nothrow) unsigned char[size]);
  if (!bytes) return kNoMemory;
  if (!readExactly(file.get(), bytes.get(), size)) return kNoWaveData;

  payload_ = std::move(bytes);
  payloadSize_ = size;
  format_ = format;
  return kOpened;
}

void CDecoder::close() {
  payload_.reset();
  payloadSize_ = 0;
  format_ = {};
}

}  // namespace speech
