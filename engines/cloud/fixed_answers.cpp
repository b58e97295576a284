// What the cloud engine has no use for: engine loading, user dictionaries, options, devices.

#include "engines/cloud/skyvo.h"
#include "engines/shared/buffer_synthesis.h"
#include "engines/shared/guarded.h"

namespace speech {
namespace {

constexpr int kUnsupported = -1;

// No engine of the engine library is ever opened here.
constexpr std::uint32_t kNoSynthesisHandle = 0;

}  // namespace

void Skyvo::reserved8() {}
void Skyvo::reserved9() {}
void Skyvo::reserved10() {}

int Skyvo::applyOptions(const TextToSpeech_Options& /*options*/) { return 0; }
bool Skyvo::setOutputAudio(int /*device*/) { return true; }
void Skyvo::setEventNotify(bool /*on*/) {}
bool Skyvo::unloadEngine() { return true; }
bool Skyvo::loadEngine() { return true; }

int Skyvo::getUserDictLimit(intptr_t /*a*/) { return kUnsupported; }
unsigned short Skyvo::loadUserDict(const char* /*path*/) { return 0; }
int Skyvo::unloadUserDict(int /*number*/) { return 0; }
int Skyvo::checkUserDictTargetNorm(intptr_t /*a*/) { return kUnsupported; }
int Skyvo::checkUserDictTargetPhon(intptr_t /*a*/) { return kUnsupported; }
int Skyvo::checkUserDictSubstitution(intptr_t /*a*/) { return kUnsupported; }
int Skyvo::checkUserDictSourceNorm(intptr_t /*a*/) { return kUnsupported; }
int Skyvo::checkUserDictSourceLen(intptr_t /*a*/) { return kUnsupported; }
int Skyvo::csvParserMakeCsv(intptr_t /*a*/, intptr_t /*b*/, intptr_t /*c*/, intptr_t /*d*/) {
  return kUnsupported;
}
int Skyvo::getPinyinActiveInfo(intptr_t /*a*/, intptr_t /*b*/) { return kUnsupported; }
intptr_t Skyvo::csvParserInit() { return 0; }
int Skyvo::csvParserParsing(intptr_t /*a*/, intptr_t /*b*/) { return kUnsupported; }
int Skyvo::csvParserGetNfields(intptr_t /*a*/) { return kUnsupported; }
const char* Skyvo::csvParserGetField(intptr_t /*a*/, intptr_t /*b*/) { return ""; }

int Skyvo::synthesizeToBuffer(const wchar_t* text, bool useSsml, unsigned char** out) {
  // Kept: asks the engine library all the same, and puts no zero byte behind the samples as the local engine
  // does.
  constexpr std::size_t kExtraBytes = 0;
  return guarded(0,
                 [&] { return synthesizeIntoBuffer(kNoSynthesisHandle, text, useSsml, kExtraBytes, out); });
}

}  // namespace speech
