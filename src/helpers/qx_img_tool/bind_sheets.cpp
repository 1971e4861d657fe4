// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number_text.h"
#include "base/path_text.h"
#include "helpers/qx_img_tool/operations.h"
#include "helpers/qx_img_tool/pages.h"
#include "helpers/qx_img_tool/sheet_binder.h"
#include "helpers/runtime/patience.h"

namespace quillon::helpers {
namespace {

constexpr double kSecondsBetweenLooks = 0.005;
constexpr const char* kEnd = "end";

bool IsTrue(const std::string& text) {
  const std::string lower = base::ToLowerAscii(text);
  return lower == "true" || base::LeadingNumber(lower) != 0;
}

// The name as it was given where it fits the kind, else with the extension of the kind.
std::string TargetOf(const std::string& name, bool tiff) {
  base::PathParts parts = base::SplitPath(name);
  const std::string extension = base::ToLowerAscii(parts.extension);
  const bool isTiff = extension == "tif" || extension == "tiff";
  if (tiff ? isTiff : extension == "pdf") return name;
  if (isTiff || extension == "pdf") return base::JoinPath(parts.folder, parts.name, tiff ? "tiff" : "pdf");
  return name + (tiff ? ".tiff" : ".pdf");
}

// The program's side of the feed: a path in the key is a sheet, and waits for an answer.
class Feed {
 public:
  Feed(Helper& helper, const ToolOrder& order) : helper_(helper), order_(order) {}

  enum class Ended { ByWord, BySilence };
  // Hands sheets to take, and answers them with what it says, until the program says that was the last.
  template <class Take>
  Ended Run(Take take) {
    Patience patience(helper_);
    std::string answer;
    for (;;) {
      const std::string text = helper_.Get(order_.application, order_.key);
      if (text == kEnd) return Ended::ByWord;
      if (!text.empty() && text != answer) {
        const host::Status taken = helper_.Files().IsFile(text) ? take(text) : Missing();
        answer = taken ? "" : taken.Why();
        helper_.Set(order_.application, order_.key, answer);
        patience.Renew();
      }
      if (patience.Over()) return Ended::BySilence;
      helper_.World().clock.Sleep(kSecondsBetweenLooks);
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
    const Feed::Ended ended = feed.Run([&](const std::string& sheet) {
      host::Status added = binder->Add(sheet);
      whole = whole && added;
      return added;
    });
    fed = true;
    if (host::Status may = MayReplace(helper, target, whole && ended == Feed::Ended::ByWord); !may) return may;
    return binder->Finish();
  });
  // Without a place for the result every sheet is still answered, or the program would wait for ever.
  if (!saved && !fed) feed.Run([&](const std::string&) { return saved; });
  return saved;
}

}  // namespace quillon::helpers
