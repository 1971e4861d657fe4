// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// ChSplit: the finished cut becomes columns x rows pieces, named "<name>_01" and on, row by row from the top left.
#include <string>
#include <vector>

#include "base/path_text.h"
#include "base/utf8.h"
#include "job/cut/conversions.h"
#include "job/cut/cut_steps.h"

namespace quillon::job {
namespace {

using host::Status;

std::vector<base::Rect> PiecesOf(base::Size size, int columns, int rows) {
  std::vector<base::Rect> pieces;
  for (int row = 0; row < rows; ++row) {
    const int top = PartBegin(size.height, row, rows);
    const int height = PartBegin(size.height, row + 1, rows) - top;
    for (int column = 0; column < columns; ++column) {
      const int left = PartBegin(size.width, column, columns);
      pieces.push_back({left, top, PartBegin(size.width, column + 1, columns) - left, height});
    }
  }
  return pieces;
}

Step FinishPiece(CutFile& piece) {
  for (const auto step : {AddBorder, ConvertToCmyk, CopyExif, MakePdf, Deliver, PlaceOnSheet}) {
    if (step(piece) == Step::FileDone) return Step::FileDone;
  }
  return Step::Next;
}

Step MakePiece(const CutFile& whole, const base::Rect& rect, CutFile& piece) {
  if (NameOutput(piece) == Step::FileDone) return Step::FileDone;
  imaging::Services& images = piece.program.images;
  if (const Status cloned = images.CloneImage(whole.Work, piece.Work); !cloned) return Fail(piece, cloned);
  if (const Status cut = images.CutImage(piece.Work, rect); !cut) return Fail(piece, cut);
  if (const Status saved = SaveWork(piece); !saved) return Fail(piece, saved);
  piece.latestFile = piece.target;
  piece.program.host.pump.Turn();
  return FinishPiece(piece);
}

// If one piece fails, the source has no result: the pieces that were made are moved to the trash.
Step GiveUp(CutFile& file, const std::vector<std::string>& outputs) {
  for (const std::string& output : outputs) static_cast<void>(file.program.host.files.Discard(output));
  return Step::FileDone;
}

}  // namespace

std::size_t PieceCount(const CutSettings& options) {
  return static_cast<std::size_t>(options.columns) * static_cast<std::size_t>(options.rows);
}

std::string PieceName(const CutFile& file, std::size_t number) {
  return base::NumberedName(file.name, number, PieceCount(file.settings));
}

Step SplitCut(CutFile& file) {
  const CutSettings& options = file.settings;
  const imaging::Services& images = file.program.images;
  const base::Size size{images.GetImageWidth(file.Work), images.GetImageHeight(file.Work)};
  if (const std::string why = SplitFailure(options, size); !why.empty()) return Fail(file, why);
  const bool turned = file.program.flags.ImageRotated;
  const std::vector<base::Rect> rects = PiecesOf(size, options.columns, options.rows);
  std::vector<std::string> outputs;
  for (const base::Rect& rect : rects) {
    CutFile piece(file.run, file.row, file.listedPath);
    piece.settings = options;
    piece.settings.split = false;
    piece.name = PieceName(file, outputs.size() + 1);
    piece.exifSource = file.exifSource;
    piece.RestoreAngle = file.RestoreAngle;
    file.program.flags.ImageRotated = turned;
    const Step made = MakePiece(file, rect, piece);
    if (made == Step::Next) outputs.push_back(piece.result.output);
    const bool stopped = file.program.flags.StopRequested && outputs.size() < rects.size();
    if (made == Step::FileDone || stopped) {
      if (made == Step::Next) Fail(piece, "已停止，未处理完");
      file.result.result = piece.result.result;
      file.result.why = piece.result.why;
      return GiveUp(file, outputs);
    }
    // A note that applies to several pieces is reported once.
    AddNote(file.result.why, piece.result.why);
  }
  file.result.output = outputs.front();
  file.result.more.assign(outputs.begin() + 1, outputs.end());
  file.result.result = Result::Written;
  return Step::FileDone;
}

}  // namespace quillon::job
