// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pics_to_ani_gif/gif_order.h"
#include "imaging/animation.h"

namespace {

using namespace quillon;

constexpr const char* kApplication = "PicsCut";
constexpr const char* kKey = "PicsToGif";

host::Status Work(helpers::Helper& helper) {
  helpers::GifOrder order;
  if (host::Status read = helpers::ReadGifOrder(helper, order); !read) return read;
  return helper.Files().Save(order.target, [&](host::Draft& draft) {
    return imaging::WriteAnimation(
        helper.Files(), order.frames, order.canvas, {},
        [&](int done) { helper.Set(kApplication, kKey, std::to_string(done)); }, draft);
  });
}

}  // namespace

int main(int count, char** arguments) { return helpers::RunHelper("PicsToAniGif", count, arguments, Work); }
