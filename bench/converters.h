#pragma once

// The converters that are compared, all as one call from 16-bit samples to 16-bit samples.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

struct Converter {
  std::string name;  ///< "library/recipe"
  /// Converts all of `input`; `output` has room for the whole result. Gives the samples stored.
  std::function<std::size_t(std::span<const std::int16_t> input, int inputRate, int outputRate,
                            std::span<std::int16_t> output)>
      convert;
};

/// Ours first: both filters on the processor's best level, then on the plain one.
const std::vector<Converter>& converters();
