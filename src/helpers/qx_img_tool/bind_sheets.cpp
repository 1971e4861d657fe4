// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number_text.h"
#include "base/path_text.h"
#include "helpers/qx_img_tool/operations.h"
#include "helpers/qx_img_tool/pages.h"
#include "helpers/qx_img_tool/sheet_binder.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

constexpr double kPollInterval = 0.005;  // seconds
constexpr const char* kEnd = "end";

bool IsTrue(const std::string& text) {
  const std::string lower = base::ToLowerAscii(text);
  return lower == "true" || base::LeadingNumber(lower) != 0;
}

// Returns the name unchanged if its extension fits the format, otherwise with the extension of the format.
std::string TargetOf(const std::string& name, bool tiff) {
  base::PathParts parts = base::SplitPath(name);
  const std::string extension = base::ToLowerAscii(parts.extension);
  const bool isTiff = extension == "tif" || extension == "tiff";
  if (tiff ? isTiff : extension == "pdf") return name;
  if (isTiff || extension == "pdf") return base::JoinPath(parts.folder, parts.name, tiff ? "tiff" : "pdf");
  return name + (tiff ? ".tiff" : ".pdf");
}

// The queue of sheets: a path in the key is a sheet that waits for an answer.
class Feed {
 public:
  Feed(Helper& helper, const ToolOrder& order) : helper_(helper), order_(order) {}

  enum class End { Reported, TimedOut };
  // Calls accept for each sheet and writes its answer, until the program reports the end or a timeout expires.
  template <class Accept>
  End Run(Accept accept) {
    IdleTimeout timeout(helper_);
    std::string answer;
    for (;;) {
      const std::string text = helper_.Get(order_.application, order_.key);
      if (text == kEnd) return End::Reported;
      if (!text.empty() && text != answer) {
        const host::Status accepted = helper_.Files().IsFile(text) ? accept(text) : Missing();
        answer = accepted ? "" : accepted.Why();
        helper_.Set(order_.application, order_.key, answer);
        timeout.Restart();
      }
      if (timeout.Expired()) return End::TimedOut;
      helper_.World().clock.Sleep(kPollInterval);
    }
  }

 private:
  static host::Status Missing() { return {host::Problem::Missing, "找不到排版好的图片"}; }

  Helper& helper_;
  const ToolOrder& order_;
};

}  // namespace

host::Status BindSheets(Helper& helper, const ToolOrder& order) {
  const BindOptions options{.back = order.Field(0),
                            .header = order.Field(1),
                            .tiff = IsTrue(order.Field(2)),
                            .dpi = base::ParseInteger(order.Field(3)).value_or(0),
                            .cmyk = IsTrue(order.Field(4))};
  const std::string target = TargetOf(order.output, options.tiff);
  Feed feed(helper, order);
  bool fed = false;
  const host::Status saved = helper.Files().Save(target, [&](host::Draft& draft) {
    const auto binder = options.tiff ? MakeTiffBinder(helper, options, draft) : MakePdfBinder(helper, options, draft);
    bool whole = true;
    const Feed::End end = feed.Run([&](const std::string& sheet) {
      host::Status added = binder->Add(sheet);
      whole = whole && added;
      return added;
    });
    fed = true;
    const Complete complete = whole && end == Feed::End::Reported ? Complete::Yes : Complete::No;
    if (host::Status may = CheckReplace(helper, target, complete); !may) return may;
    return binder->Finish();
  });
  // If no draft could be created, every sheet still gets an answer; otherwise the program would wait forever.
  if (!saved && !fed) feed.Run([&](const std::string&) { return saved; });
  return saved;
}

}  // namespace quillon::helpers
