#include "audio/rate/converter.h"

#include <algorithm>

#include "audio/rate/block_loop.h"
#include "audio/rate/producers.h"
#include "audio/rate/tables.h"
#include "audio/rate/vector_filters.h"

namespace speech::audio::rate {
namespace {

constexpr std::int32_t kLinearGuard = 10;
// For fewer output samples the vector filters' tables cost more than they save.
constexpr std::int32_t kFewestForVectors = 96;

std::int32_t convertLinear(const RateRequest& request, const Parameters& parameters) {
  WorkBuffer work;
  return convertBlocks({parameters.step, kLinearGuard, TailRule::kLinear}, request, work,
                       [&](const WorkBuffer& buffer, std::uint32_t clock, std::span<std::int16_t> output) {
                         produceLinear(parameters.step, buffer, clock, output);
                       });
}

template <typename Fast>
std::int32_t convertFast(const LoopSetting& loop, const RateRequest& request, Fast&& filter) {
  WorkBuffer work;
  return convertBlocks(loop, request, work,
                       [&](const WorkBuffer& buffer, std::uint32_t clock, std::span<std::int16_t> output) {
                         filter.produce(buffer, clock, output);
                       });
}

std::int32_t convertFiltered(const RateRequest& request, const Parameters& parameters, bool large,
                             Level level) {
  const std::int32_t guard = large ? parameters.guardLarge : parameters.guardSmall;
  // With a guard of half the buffer no block would be left.
  if (2 * guard >= kWorkLength) return -1;
  const LoopSetting loop{parameters.step, guard, TailRule::kFilter};
  const FilterSetting setting{large ? &largeFilter() : &smallFilter(), parameters.step, parameters.coefStep,
                              large ? parameters.gainLarge : parameters.gainSmall};

  if (const Kernels* kernels = kernelsFor(level, wingTaps(setting)); kernels != nullptr) {
    if (SteadyFilter::serves(setting)) return convertFast(loop, request, SteadyFilter(setting, *kernels));
    if (RowFilter::serves(setting, *kernels)) return convertFast(loop, request, RowFilter(setting, *kernels));
  }
  WorkBuffer work;
  return convertBlocks(loop, request, work,
                       [&](const WorkBuffer& buffer, std::uint32_t clock, std::span<std::int16_t> output) {
                         produceFiltered(setting, buffer, clock, output);
                       });
}

}  // namespace

std::int32_t convert(const RateRequest& request, Level level) {
  if (request.inputCount <= 0) return 0;
  if (request.input == nullptr || request.output == nullptr) return -1;
  if (request.inputRate == request.outputRate) {
    // Kept: ignores the capacity, and takes any rate.
    std::copy_n(request.input, request.inputCount, request.output);
    return request.inputCount;
  }
  if (request.inputRate < 1 || request.outputRate < 1) return -1;

  const auto parameters = parametersFor(request.inputRate, request.outputRate);
  if (!parameters) return -1;
  const unsigned method = request.quality & 0xFFu;
  if (method == kRateQualityLinear) return convertLinear(request, *parameters);
  return convertFiltered(request, *parameters, method == kRateQualityLarge, level);
}

}  // namespace speech::audio::rate

using namespace speech::audio::rate;

std::int32_t RATEAPI(const RateRequest* request) {
  if (request == nullptr) return -1;
  const bool few = request->outputCapacity < kFewestForVectors;
  return convert(*request, few ? Level::kPlain : bestLevel());
}
