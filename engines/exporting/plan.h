#pragma once

// The plan of an export: the steps from a text, or from raw samples, to a file.
//
// Each exporter has a table of routes, one for each kind of file, and rules of its own: where temporary files
// lie, which failures it passes over, what it deletes. One routine walks a route:
//
//   constexpr Step kConverted[] = {{kSynthesize, kTemporaryWav}, {kConvert, kDestination}, {kLog}};
//   const ExportJob job{.format = exportFormat(kFormatWav), .route = kConverted, .rateHz = 16000, ...};
//   if (!runExport(job, rules)) ...  // the file is there
//
// A step takes the file that the step before it made; the first one takes the job's source.

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "engines/exporting/formats.h"
#include "engines/exporting/samples.h"
#include "win32/text.h"

namespace speech {

enum class Action : std::uint8_t {
  kRefuse,          ///< Ends the export: the engine has no such file.
  kFindSox,         ///< Ends the export unless sox.exe is there.
  kSynthesize,      ///< Makes a file. The exporter's own work.
  kConvert,         ///< WAV: makes a WAV file at the job's rate.
  kStripHeader,     ///< WAV: writes the samples alone.
  kCompress,        ///< WAV: has SoX make a file of the job's format.
  kCopy,            ///< Raw samples: copies them.
  kAddHeader,       ///< Raw samples: makes a WAV file.
  kCompressRaw,     ///< Raw samples: has SoX make a file of the job's format.
  kRequireContent,  ///< Ends the export unless there is something in the file.
  kPublish,         ///< Moves the file to the destination, over what is there.
  kLog              ///< Deletes what the exporter deletes, then writes the job's line to the log.
};

/// Where a step writes.
enum class Place : std::uint8_t {
  kNowhere,
  kTemporaryWav,
  kTemporary,   ///< A temporary file of the job's format.
  kDestination  ///< The destination, which may be the file that the step reads.
};

struct Step {
  Action action;
  Place to = Place::kNowhere;
};

using Route = std::span<const Step>;

/// The routes to a kind of file. The voice's own rate may need no conversion.
struct RoutesToKind {
  Route atVoiceRate;
  Route atOtherRate;
};

/// An exporter's routes.
struct RouteTable {
  RoutesToKind toKind[4];  ///< By FileKind.
  Route toNoFormat;        ///< For a number that no format has.

  Route find(const ExportFormat* format, bool isVoiceRate) const {
    if (format == nullptr) return toNoFormat;
    const RoutesToKind& routes = toKind[static_cast<int>(format->kind)];
    return isVoiceRate ? routes.atVoiceRate : routes.atOtherRate;
  }
};

/// What differs between those who export.
struct ExportRules {
  /// In which the rate converter, the header writer and the log get their paths.
  CodePage codePage;
  /// Whether a step that could open a wide name opens what the code page holds of it, as the others must. SoX
  /// and a copy always get the name as it is.
  bool usesOneName = false;
  /// Failures of these do not end the export. A conversion whose input is missing always ends it.
  std::span<const Action> passesOver = {};
  std::wstring (*temporaryPath)(std::wstring_view extension) = nullptr;
  bool deletesTemporaries = false;
  bool deletesSource = false;
  LastFullBlock lastFullBlock = LastFullBlock::kWritten;
};

/// Makes a file of a format. False, or an exception, when it could not.
using Synthesize = std::function<bool(const std::wstring& path, const ExportFormat& format)>;

struct ExportJob {
  const ExportFormat* format = nullptr;  ///< Null where the route has no step that makes a file.
  Route route = {};
  int rateHz = 0;
  std::wstring source = {};  ///< A file of raw 16-bit mono samples, for those who have one.
  int sourceBytes = 0;       ///< How much of it is samples.
  std::wstring destination = {};
  std::wstring soxFolder = {};  ///< Ends in a backslash.
  Synthesize synthesize = {};
  /// Empty where nothing is to be logged. After a synthesis that failed and was passed over nothing is
  /// either.
  std::optional<std::wstring> logLine = {};
};

/// Whether there is a file with something in it.
bool hasContent(const std::wstring& path);

/// Walks a job's route. Temporary files that the exporter deletes are gone when it returns.
/// @return what ended the export, where that is kPublish with GetLastError's reason; empty when it ran to its
/// end.
///   Exceptions of `synthesize` pass through.
std::optional<Action> runExport(const ExportJob& job, const ExportRules& rules);

}  // namespace speech
