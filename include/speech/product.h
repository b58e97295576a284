#pragma once

/// @file
/// LXAPIProduct: one installed voice. LXAPIProductList: all of them, in the engine library's order.
///
///     LXAPIProductList* voices = ITextToSpeech::getLXAPIProductList();
///     for (POSITION at = voices->GetHeadPosition(); at != nullptr;) {
///       LXAPIProduct* voice = voices->GetNext(at);
///       wprintf(L"%s  %s\n", voice->getKeyLabel().GetString(), voice->getLanguageCode().GetString());
///     }

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
    CStringW engineKey1;    ///< With engineKey2 the pair that names the engine.
    CStringW engineKey2;    ///< Its variety.
    CStringW infoText3;     ///< Free text.
    CStringW infoText4;     ///< Likewise.
    CStringW infoText5;     ///< Likewise.
    CStringW genderCode;    ///< "F", "M" or empty.
    CStringW infoText7;     ///< Free text.
    int sampleRateHz = 0;   ///< Rate of the samples that the engine makes.
    int infoNumber9 = 0;    ///< Free number.
    CStringW languageCode;  ///< Such as "en-US".
    CStringW engineType;    ///< "skyvo", in any case, is a voice of the cloud service.
  };

  /// Asks the engine library for a synthesis handle, an engine reference, bounds and defaults.
  /// @param info  what the engine library's enumeration says of the engine
  explicit LXAPIProduct(const EngineInfo& info);
  LXAPIProduct(const LXAPIProduct&) = delete;
  LXAPIProduct& operator=(const LXAPIProduct&) = delete;

  /// @name Properties
  /// Each has a setter, which returns its argument, and a getter, which returns a copy.
  /// @{

  /// @param value  stored as given, here and in every setter below
  /// @return `value`
  virtual CStringW setEngineKey1(CStringW value);
  /// @return the first of the two keys that name the engine to the engine library: the voice's name
  virtual CStringW getEngineKey1() const;
  /// @param value  stored @return `value`
  virtual CStringW setEngineKey2(CStringW value);
  /// @return the second key: the voice's variety
  virtual CStringW getEngineKey2() const;
  /// @param value  stored @return `value`
  virtual int setSampleRateHz(int value);
  /// @return the rate of the samples that the engine makes
  virtual int getSampleRateHz() const;
  /// @param value  stored @return `value`
  virtual CStringW setInfoText4(CStringW value);
  /// @return a free text of the engine library (the bundled one: its folder)
  virtual CStringW getInfoText4() const;
  /// @param value  stored @return `value`
  virtual CStringW setInfoText3(CStringW value);
  /// @return a free text of the engine library (the bundled one: the voice's identifier)
  virtual CStringW getInfoText3() const;
  /// @param value  stored @return `value`
  virtual CStringW setGenderCode(CStringW value);
  /// @return "F", "M" or empty
  virtual CStringW getGenderCode() const;
  /// @param value  stored @return `value`
  virtual CStringW setInfoText7(CStringW value);
  /// @return a free text of the engine library (the bundled one: the maker)
  virtual CStringW getInfoText7() const;
  /// @param value  stored @return `value`
  virtual int setInfoNumber9(int value);
  /// @return a free number of the engine library
  virtual int getInfoNumber9() const;
  /// @param value  stored @return `value`
  virtual CStringW setInfoText5(CStringW value);
  /// @return a free text of the engine library (the bundled one: the language code)
  virtual CStringW getInfoText5() const;
  /// @param value  stored @return `value`
  virtual CStringW setLanguageCode(CStringW value);
  /// @return the language code, such as "en-US"
  virtual CStringW getLanguageCode() const;
  /// @param value  stored @return `value`
  virtual CStringW setEngineType(CStringW value);
  /// @return the kind of engine; "skyvo", in any case, is a voice of the cloud service
  virtual CStringW getEngineType() const;
  /// @param value  stored @return `value`
  virtual uint32_t setSynthHandle(uint32_t value);
  /// @return the engine library's synthesis handle; it lives as long as the list
  virtual uint32_t getSynthHandle() const;
  /// @param value  stored @return `value`
  virtual uint32_t setEngineRef(uint32_t value);
  /// @return the engine library's engine handle; it lives as long as the list
  virtual uint32_t getEngineRef() const;
  /// @return the product's own record, not a copy; it lives as long as the product
  virtual TextToSpeech_Options* getOptions();
  /// @param value  stored @return `value`
  virtual CStringW setUserDictEditorPath(CStringW value);
  /// @return path of the program that edits user dictionaries; empty where the engine's folder is unknown
  virtual CStringW getUserDictEditorPath() const;
  /// @param value  stored @return `value`
  virtual CStringW setUserDictPath2(CStringW value);
  /// @return path of the user's lexicon, or, where the engine type is "nv", of the word list that all users
  ///   share; empty where the folder is unknown
  virtual CStringW getUserDictPath2() const;
  /// @param value  stored @return `value`
  virtual CStringW setUserDictPath3(CStringW value);
  /// @return path of the user's own word list; empty where the documents folder is unknown
  virtual CStringW getUserDictPath3() const;

  /// @}
  /// @name Texts for people
  /// @{

  /// @return "name (v.version)", or "Unknown"
  virtual CStringW getDisplayName() const;
  /// @return free text of the engine itself, empty when it gives none
  virtual CStringW getEngineInfo1() const;
  /// @return likewise
  virtual CStringW getEngineInfo2() const;
  /// @return the rate in hertz, in decimal
  virtual CStringW getSampleRateText() const;
  /// @return "FEMALE", "MALE" or "UNKNOWN"
  virtual CStringW getGenderText() const;
  /// @return the free number in decimal
  virtual CStringW getInfoNumber9Text() const;
  /// @return both keys and info text 5, for a list
  virtual CStringW getKeyLabel() const;

  /// @}

  /// @return the sample rate's index for ITextToSpeech::getSampleRate; 2 for rates that have none
  virtual int getSampleRateIndex() const;

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
