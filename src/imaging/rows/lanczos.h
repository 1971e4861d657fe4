// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace quillon::imaging {

// The Lanczos kernel of three lobes at a distance from its middle; 0 from 3 on.
double Lanczos(double distance);

// How the samples of one side are made of those of another: sample i of the target is the sum of weights[k] times
// sample first + k of the source. Kernels are as wide as the larger spacing asks, so that nothing is left of detail
// that the target has no room for; they are cut at the ends and their weights sum up to 1.
class LanczosAxis {
 public:
  struct Taps {
    int first = 0;
    int count = 0;
    const float* weights = nullptr;
  };

  // Both sides at least 1; ends meet ends.
  LanczosAxis(int source, int target);

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
