// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace quillon::imaging {

// Returns the value of the Lanczos kernel with three lobes at a distance from its centre, in samples.
// The result is 1 at 0, and 0 from a distance of 3 on.
double Lanczos(double distance);

// The weights that resample one axis of a picture.
// Target sample i is the sum of weights[k] times source sample first + k, for k from 0 to count - 1.
// The kernel is widened by the reduction factor when the axis shrinks, which removes detail that would alias.
// At both ends the kernel is cut off; the weights of each sample always sum to 1.
class LanczosAxis {
 public:
  // The source samples of one target sample. weights points into the axis and is valid while the axis lives.
  struct Taps {
    int first = 0;
    int count = 0;
    const float* weights = nullptr;
  };

  // source and target are the number of samples, at least 1. The outer edges of both axes coincide.
  LanczosAxis(int source, int target);

  // Returns the taps of target sample i, from 0 to target - 1.
  Taps At(int i) const;

 private:
  struct Place {
    int first;
    int count;
    std::size_t offset;
  };
  std::vector<Place> places_;
  std::vector<float> weights_;
};

}  // namespace quillon::imaging
