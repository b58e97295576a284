#include "lxapi/bundled/wave_output.h"

#include <algorithm>

namespace speech::lxapi {

WaveOutput::WaveOutput() : wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

WaveOutput::~WaveOutput() { close(); }

bool WaveOutput::open(int32_t device, uint32_t sampleRateHz) {
  if (!wake_) return false;
  WAVEFORMATEX format{};
  format.wFormatTag = WAVE_FORMAT_PCM;
  format.nChannels = 1;
  format.nSamplesPerSec = sampleRateHz;
  format.wBitsPerSample = 16;
  format.nBlockAlign = sizeof(int16_t);
  format.nAvgBytesPerSec = sampleRateHz * format.nBlockAlign;
  const UINT number = device < 0 ? WAVE_MAPPER : static_cast<UINT>(device);
  const auto event = reinterpret_cast<DWORD_PTR>(wake_.get());
  if (waveOutOpen(&device_, number, &format, event, 0, CALLBACK_EVENT) != MMSYSERR_NOERROR) {
    device_ = nullptr;
    return false;
  }
  for (Buffer& buffer : buffers_) {
    buffer.samples.resize(sampleRateHz / kBuffersPerSecond);
    buffer.header.lpData = reinterpret_cast<char*>(buffer.samples.data());
    buffer.header.dwBufferLength = static_cast<DWORD>(buffer.samples.size()) * sizeof(int16_t);
    if (waveOutPrepareHeader(device_, &buffer.header, sizeof(WAVEHDR)) != MMSYSERR_NOERROR) return false;
    buffer.header.dwFlags |= WHDR_DONE;
  }
  return true;
}

bool WaveOutput::play(const std::function<size_t(std::span<int16_t>)>& source) {
  for (Buffer& buffer : buffers_) {
    const std::lock_guard guard(mutex_);
    if (isSilenced_) return true;
    if ((buffer.header.dwFlags & WHDR_DONE) == 0) continue;
    const size_t count = source(buffer.samples);
    if (count == 0) return true;
    buffer.header.dwBufferLength = static_cast<DWORD>(count) * sizeof(int16_t);
    buffer.header.dwFlags &= ~static_cast<DWORD>(WHDR_DONE);
    if (waveOutWrite(device_, &buffer.header, sizeof(WAVEHDR)) != MMSYSERR_NOERROR) {
      buffer.header.dwFlags |= WHDR_DONE;
      return false;
    }
  }
  return true;
}

uint64_t WaveOutput::position() {
  const std::lock_guard guard(mutex_);
  if (device_ == nullptr) return 0;
  MMTIME time{};
  time.wType = TIME_SAMPLES;
  if (waveOutGetPosition(device_, &time, sizeof(time)) != MMSYSERR_NOERROR) return 0;
  if (time.wType == TIME_SAMPLES) return time.u.sample;
  return time.wType == TIME_BYTES ? time.u.cb / sizeof(int16_t) : 0;
}

bool WaveOutput::isIdle() {
  const std::lock_guard guard(mutex_);
  return std::all_of(buffers_.begin(), buffers_.end(),
                     [](const Buffer& buffer) { return (buffer.header.dwFlags & WHDR_DONE) != 0; });
}

void WaveOutput::pause() {
  const std::lock_guard guard(mutex_);
  if (isSilenced_) return;
  isPaused_ = true;
  waveOutPause(device_);
}

void WaveOutput::resume() {
  {
    const std::lock_guard guard(mutex_);
    if (isSilenced_) return;
    isPaused_ = false;
    waveOutRestart(device_);
  }
  wake();
}

bool WaveOutput::isPaused() {
  const std::lock_guard guard(mutex_);
  return isPaused_;
}

void WaveOutput::silence() {
  const std::lock_guard guard(mutex_);
  if (isSilenced_) return;
  isSilenced_ = true;
  isPaused_ = false;
  if (device_ != nullptr) waveOutReset(device_);
}

void WaveOutput::close() {
  silence();
  const std::lock_guard guard(mutex_);
  if (device_ == nullptr) return;
  for (Buffer& buffer : buffers_) waveOutUnprepareHeader(device_, &buffer.header, sizeof(WAVEHDR));
  waveOutClose(device_);
  device_ = nullptr;
}

}  // namespace speech::lxapi
