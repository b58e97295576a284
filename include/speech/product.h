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

#include <framework/framework.h>
#include <speech/export.h>
#include <speech/options.h>

class ITextToSpeech;

/// What the engine library reports about one voice, and what follows from it. Products are made and deleted
/// with their list. Hosts read them, and edit the record behind getOptions. All calls belong to the host's
/// thread.
///
/// The virtual operations' order is part of the interface. Setters store their argument and return it;
/// getters return a copy. Without memory for the copy they return an empty text.
class SPEECH_API LXAPIProduct final {
 public:
  struct EngineInfo;  // private to the library

  /// Asks the engine library for a synthesis handle, an engine reference, bounds and defaults.
  explicit LXAPIProduct(const EngineInfo& info);
  LXAPIProduct(const LXAPIProduct&) = delete;
  LXAPIProduct& operator=(const LXAPIProduct&) = delete;

  /// @name Properties
  /// @{

  /// The first of the two keys that name the engine to the engine library: the voice's name.
  virtual CStringW setEngineKey1(CStringW value);
  virtual CStringW getEngineKey1() const;
  /// The second key: the voice's variety.
  virtual CStringW setEngineKey2(CStringW value);
  virtual CStringW getEngineKey2() const;
  /// The rate of the samples that the engine makes.
  virtual int setSampleRateHz(int value);
  virtual int getSampleRateHz() const;
  /// Free text; the bundled engine library gives its folder.
  virtual CStringW setInfoText4(CStringW value);
  virtual CStringW getInfoText4() const;
  /// Free text; the bundled engine library gives the voice's identifier.
  virtual CStringW setInfoText3(CStringW value);
  virtual CStringW getInfoText3() const;
  /// "F", "M" or empty.
  virtual CStringW setGenderCode(CStringW value);
  virtual CStringW getGenderCode() const;
  /// Free text; the bundled engine library gives the maker.
  virtual CStringW setInfoText7(CStringW value);
  virtual CStringW getInfoText7() const;
  /// A free number.
  virtual int setInfoNumber9(int value);
  virtual int getInfoNumber9() const;
  /// Free text; the bundled engine library gives the language code.
  virtual CStringW setInfoText5(CStringW value);
  virtual CStringW getInfoText5() const;
  /// Such as "en-US".
  virtual CStringW setLanguageCode(CStringW value);
  virtual CStringW getLanguageCode() const;
  /// The kind of engine; "skyvo", in any case, is a voice of the cloud service.
  virtual CStringW setEngineType(CStringW value);
  virtual CStringW getEngineType() const;
  /// The engine library's synthesis handle, which lives as long as the list.
  virtual uint32_t setSynthHandle(uint32_t value);
  virtual uint32_t getSynthHandle() const;
  /// The engine library's engine handle, which lives as long as the list.
  virtual uint32_t setEngineRef(uint32_t value);
  virtual uint32_t getEngineRef() const;
  /// The product's own record, not a copy. It lives as long as the product.
  virtual TextToSpeech_Options* getOptions();
  /// The program that edits user dictionaries; empty where the engine's folder is unknown.
  virtual CStringW setUserDictEditorPath(CStringW value);
  virtual CStringW getUserDictEditorPath() const;
  /// The user's lexicon or, for engines of type "nv", the word list that all users share; empty where the
  /// folder is unknown.
  virtual CStringW setUserDictPath2(CStringW value);
  virtual CStringW getUserDictPath2() const;
  /// The user's own word list; empty where the documents folder is unknown.
  virtual CStringW setUserDictPath3(CStringW value);
  virtual CStringW getUserDictPath3() const;

  /// @}
  /// @name Texts for people
  /// @{

  /// "name (v.version)", or "Unknown".
  virtual CStringW getDisplayName() const;
  /// Two free texts of the engine itself, empty when it gives none.
  virtual CStringW getEngineInfo1() const;
  virtual CStringW getEngineInfo2() const;
  /// The rate in hertz, in decimal.
  virtual CStringW getSampleRateText() const;
  /// "FEMALE", "MALE" or "UNKNOWN".
  virtual CStringW getGenderText() const;
  /// The free number in decimal.
  virtual CStringW getInfoNumber9Text() const;
  /// Both keys and info text 5, for a list.
  virtual CStringW getKeyLabel() const;

  /// @}

  /// The sample rate's index for ITextToSpeech::getSampleRate; 2 for rates that have none.
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

/// Owns its products. The engine library runs from its construction to its end, so only the module makes and
/// deletes it: see ITextToSpeech::getLXAPIProductList and ITextToSpeech::releaseInstance.
class SPEECH_API LXAPIProductList final : public CTypedPtrList<CPtrList, LXAPIProduct*> {
 public:
  LXAPIProductList(const LXAPIProductList&) = delete;
  LXAPIProductList& operator=(const LXAPIProductList&) = delete;

 private:
  friend class ITextToSpeech;

  // NOLINTBEGIN(modernize-use-equals-delete): the module has them
  /// Starts the engine library, creates the per-user folders and makes a product of each installed engine.
  LXAPIProductList();
  /// Deletes the products and ends the engine library.
  ~LXAPIProductList();
  // NOLINTEND(modernize-use-equals-delete)
};
