// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pics_to_ani_gif/gif_order.h"
#include "imaging/codecs/animation.h"

namespace quillon::helpers {
namespace {

constexpr const char* kApplication = "PicsCut";
constexpr const char* kKey = "PicsToGif";

host::Status Execute(Helper& helper) {
  GifOrder order;
  if (host::Status read = ReadGifOrder(helper, order); !read) return read;
  return helper.Files().Save(order.target, [&](host::Draft& draft) {
    return imaging::WriteAnimation(
        helper.Files(), order.frames, order.canvas, {},
        [&](int done) { helper.Set(kApplication, kKey, std::to_string(done)); }, draft);
  });
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  return helpers::RunHelper("PicsToAniGif", count, arguments, helpers::Execute, {.seconds = helpers::kSecondsOfABatch});
}
