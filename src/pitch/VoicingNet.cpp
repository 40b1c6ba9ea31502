#include "pitch/VoicingNet.h"

#include <algorithm>

namespace parlowen {

constexpr float kMostDeviations = 5;

float Squash(float x) {
  const float cut = std::clamp(x, -3.0f, 3.0f), square = cut * cut;
  return cut * (27 + square) / (27 + 9 * square);
}

float VoicingLogOdds(const VoicingNet& net, const VoicingInputs& inputs) {
  std::array<float, VoicingNet::kUnits> sums = net.bias;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    const float x =
        std::clamp((inputs[i] - net.mean[i]) / net.deviation[i], -kMostDeviations, kMostDeviations);
    for (std::size_t u = 0; u < sums.size(); ++u) sums[u] += x * net.weights[i][u];
  }
  float logOdds = net.outputBias;
  for (std::size_t u = 0; u < sums.size(); ++u) logOdds += net.output[u] * Squash(sums[u]);
  return logOdds;
}

}  // namespace parlowen
