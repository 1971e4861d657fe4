// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/large_normal_cut.h"

#include "base/path_text.h"

namespace quillon::job {

void LargeNormalCut::Cut(const std::string& path, std::size_t /*number*/, std::vector<FileResult>& results) {
  // The window stays usable during the run, so that the type may be chosen again before any file.
  controls::ComboBox& type = run_.program.form1.CmbOutType;
  if (Selected<OutType>(type) == OutType::Pdf) Select(type, OutType::Jpg);
  results.push_back(CutOneFile(run_, 0, path));
}

void LargeNormalCut::HandledBefore(const std::string& path) {
  if (ReadCutSettings(run_.program).omitFolders) run_.omitted.Take(base::SplitPath(path).folder);
}

}  // namespace quillon::job
