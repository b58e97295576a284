#pragma once

// LXAPIProduct: one installed voice. LXAPIProductList: all of them, in the engine library's order.
//
//   LXAPIProductList* voices = ITextToSpeech::getLXAPIProductList();
//   for (POSITION at = voices->GetHeadPosition(); at != nullptr;) {
//     LXAPIProduct* voice = voices->GetNext(at);
//     wprintf(L"%s  %s\n", voice->getKeyLabel().GetString(), voice->getLanguageCode().GetString());
//   }

#include <cstdint>

#include <speech/options.h>
#include "audio/export.h"
#include "framework/framework.h"

/// What the engine library says of one voice, and what follows from it. Made and deleted by the product list.
///
/// The virtual operations' order is part of the interface. Setters return the value they were given; getters
/// return copies. A host only reads, and edits the record behind getOptions. Belongs to the host's thread.
class SPEECH_API LXAPIProduct final {
 public:
  /// What the engine library reports of an installed engine.
  struct EngineInfo {
    CStringW engineKey1;
    CStringW engineKey2;
    CStringW infoText3;
    CStringW infoText4;
    CStringW infoText5;
    CStringW genderCode;
    CStringW infoText7;
    int sampleRateHz = 0;
    int infoNumber9 = 0;
    CStringW languageCode;
    CStringW engineType;
  };

  /// Asks the engine library for a synthesis handle, an engine reference, bounds and defaults.
  explicit LXAPIProduct(const EngineInfo& info);
  LXAPIProduct(const LXAPIProduct&) = delete;
  LXAPIProduct& operator=(const LXAPIProduct&) = delete;

  // The pair of keys names the engine to the engine library.
  virtual CStringW setEngineKey1(CStringW value);
  virtual CStringW getEngineKey1() const;
  virtual CStringW setEngineKey2(CStringW value);
  virtual CStringW getEngineKey2() const;
  virtual int setSampleRateHz(int value);
  virtual int getSampleRateHz() const;
  virtual CStringW setInfoText4(CStringW value);
  virtual CStringW getInfoText4() const;
  virtual CStringW setInfoText3(CStringW value);
  virtual CStringW getInfoText3() const;
  virtual CStringW setGenderCode(CStringW value);
  virtual CStringW getGenderCode() const;  ///< "F" or "M".
  virtual CStringW setInfoText7(CStringW value);
  virtual CStringW getInfoText7() const;
  virtual int setInfoNumber9(int value);
  virtual int getInfoNumber9() const;
  virtual CStringW setInfoText5(CStringW value);
  virtual CStringW getInfoText5() const;
  virtual CStringW setLanguageCode(CStringW value);
  virtual CStringW getLanguageCode() const;  ///< Such as "en-US".
  virtual CStringW setEngineType(CStringW value);
  virtual CStringW getEngineType() const;  ///< "skyvo", in any case, is a voice of the cloud service.
  // The engine library's handles; they live as long as the list.
  virtual uint32_t setSynthHandle(uint32_t value);
  virtual uint32_t getSynthHandle() const;
  virtual uint32_t setEngineRef(uint32_t value);
  virtual uint32_t getEngineRef() const;
  /// The product's own record, not a copy.
  virtual TextToSpeech_Options* getOptions();
  // The program that edits user dictionaries, and the dictionaries it edits: path 2 is the user's lexicon, or
  // the word list that all users share where the engine type is "nv"; path 3 is the user's own word list.
  // Empty where the folder is unknown.
  virtual CStringW setUserDictEditorPath(CStringW value);
  virtual CStringW getUserDictEditorPath() const;
  virtual CStringW setUserDictPath2(CStringW value);
  virtual CStringW getUserDictPath2() const;
  virtual CStringW setUserDictPath3(CStringW value);
  virtual CStringW getUserDictPath3() const;
  virtual CStringW getDisplayName() const;     ///< "name (v.version)", or "Unknown".
  virtual CStringW getEngineInfo1() const;     ///< Free text of the engine, empty when it gives none.
  virtual CStringW getEngineInfo2() const;     ///< Likewise.
  virtual CStringW getSampleRateText() const;  ///< The rate in hertz, in decimal.
  virtual CStringW getGenderText() const;      ///< "FEMALE", "MALE" or "UNKNOWN".
  virtual CStringW getInfoNumber9Text() const;
  virtual CStringW getKeyLabel() const;    ///< Both keys and info text 5, for a list.
  virtual int getSampleRateIndex() const;  ///< Index for ITextToSpeech::getSampleRate; 2 for other rates.

 private:
  CStringW engineKey1_;
  CStringW engineKey2_;
  CStringW infoText3_;
  CStringW infoText4_;
  CStringW infoText5_;
  CStringW genderCode_;
  CStringW infoText7_;
  int sampleRateHz_;
  int infoNumber9_;
  CStringW languageCode_;
  CStringW engineType_;
  uint32_t synthHandle_ = 0;
  uint32_t engineRef_ = 0;
  TextToSpeech_Options options_;
  CStringW userDictEditorPath_;
  CStringW userDictPath2_;
  CStringW userDictPath3_;
};

/// Owns its products; deleting it ends the engine library.
class SPEECH_API LXAPIProductList final : public CTypedPtrList<CPtrList, LXAPIProduct*> {
 public:
  LXAPIProductList();
  ~LXAPIProductList();
  LXAPIProductList(const LXAPIProductList&) = delete;
  LXAPIProductList& operator=(const LXAPIProductList&) = delete;

  /// Starts the engine library, creates the per-user folders and appends a product for each installed engine.
  void build();
};
