// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/lists/region_editor.h"

#include <algorithm>

#include "host/saver.h"

#include "regions/lists/clt.h"

namespace quillon::regions {
namespace {

constexpr std::size_t kMostRows = 101;  // of the grid, with its header; a grid with more rows is full
constexpr const char* kTooMany = "裁剪区域个数超出上限100！";
constexpr const char* kSaved = "操作列表保存完毕！";
constexpr const char* kRead = "操作列表导入完毕！";
constexpr const char* kClearQuestion = "确实清空列表？";
constexpr const char* kFilter = "多区域裁剪操作列表(*.clt)|*.clt";
constexpr const char* kName = "我的多区域裁剪操作列表";
constexpr const char* kNothingToSave = "列表里还没有区域";
constexpr std::uint64_t kLongestFile = 64u << 20;  // bytes

// The indices of TCutValue (left, top, right, bottom) in the order of a row (top, left, right, bottom).
constexpr std::array<std::size_t, 4> kOrder{1, 0, 2, 3};

// Returns the start of a span of that length, moved so that it lies between 0 and limit. A longer span is moved so that
// it covers both.
double KeptInside(double begin, double length, double limit) {
  return std::clamp(begin, std::min(0.0, limit - length), std::max(0.0, limit - length));
}

}  // namespace

std::vector<std::string> RegionHeaders(Unit unit) {
  const std::string sign = unit == Unit::Pixels ? "/像素" : "/%";
  return {"上边距" + sign, "左边距" + sign, "右边距" + sign, "下边距" + sign};
}

RegionEditor::RegionEditor(job::Program& program, Parts parts, std::function<void()> onChange)
    : program_(program), parts_(parts), list_(parts.MSFlexGrid1), onChange_(std::move(onChange)) {
  parts_.CmdAdd.SetHandler([this] { CmdAdd_Click(); });
  parts_.CmdInput.SetHandler([this] { CmdInput_Click(); });
  parts_.CmdOut.SetHandler([this] { CmdOut_Click(); });
  parts_.MSFlexGrid1.SetDoubleClickHandler([this] { MSFlexGrid1_DblClick(); });
  parts_.MSFlexGrid1.SetRightClickHandler([this] { MSFlexGrid1_RightClick(); });
  // A change of the unit gives the same numbers another meaning, so the headers and the frames over the preview follow.
  token_ = program_.form1.Observe(program_.form1.ChCutA, [this](controls::Control&, controls::Aspect aspect) {
    if (aspect == controls::Aspect::Value) CmdUpdate_Click();
  });
  parts_.CmdOut.SetEnabled(false, kNothingToSave);
  CmdUpdate_Click();
}

RegionEditor::~RegionEditor() { program_.form1.Forget(token_); }

Unit RegionEditor::GetUnit() const { return program_.form1.ChCutA.On() ? Unit::Pixels : Unit::Percent; }

void RegionEditor::CmdUpdate_Click() {
  parts_.MSFlexGrid1.SetHeaders(RegionHeaders(GetUnit()));
  if (onChange_) onChange_();
}

void RegionEditor::CmdAdd_Click() {
  if (parts_.MSFlexGrid1.Rows() > kMostRows) {
    program_.host.boxes.Beep();
    program_.Ask(kTooMany, host::kExclamationIcon);
    return;
  }
  std::array<std::string, 4> fields;
  std::transform(kOrder.begin(), kOrder.end(), fields.begin(),
                 [this](std::size_t index) { return program_.form1.TCutValue[index].Value(); });
  if (!list_.Add(RowText(fields))) {
    program_.host.boxes.Beep();
    return;
  }
  Changed();
  parts_.MSFlexGrid1.Select(parts_.MSFlexGrid1.RowCount());
}

host::FileQuestion RegionEditor::Question(const char* title) const {
  return {title, kFilter, program_.host.programFolder, kName};
}

void RegionEditor::CmdOut_Click() {
  if (list_.RowCount() == 0) {
    program_.host.boxes.Beep();
    return;
  }
  const std::string path = program_.host.dialogs.SaveFile(Question("保存裁剪区域操作列表"));
  if (path.empty()) return;
  std::vector<std::array<std::string, 4>> rows;
  for (std::size_t row = 0; row < list_.RowCount(); ++row) rows.push_back(list_.Fields(row));
  // There is no run that giving up could stop.
  const host::Saver saver(program_.host.boxes, program_.host.files, {});
  const host::Status saved =
      saver.Save(path, [&] { return program_.host.files.Save(path, WriteClt(GetUnit(), rows)); });
  if (saved) {
    program_.Ask(kSaved, host::kInformationIcon);
  } else if (!saved.DiskFull()) {
    program_.Ask("操作列表没有保存：" + saved.Why(), host::kExclamationIcon);
  }
}

void RegionEditor::CmdInput_Click() {
  const std::string path = program_.host.dialogs.OpenFile(Question("导入裁剪区域操作列表"));
  if (path.empty() || !program_.host.files.IsFile(path)) {
    program_.host.boxes.Beep();
    return;
  }
  std::string text;
  if (const host::Status read = program_.host.files.ReadFile(path, text, kLongestFile); !read) {
    program_.Ask("操作列表读不出来：" + read.Why(), host::kExclamationIcon);
    return;
  }
  const CltFile file = ReadClt(text);
  list_.Clear();
  program_.form1.ChCutA.Set(file.unit == Unit::Pixels);
  for (const std::string& line : file.lines) list_.Add(line);
  Changed();
  program_.Ask(kRead, host::kInformationIcon);
}

void RegionEditor::MSFlexGrid1_DblClick() {
  const std::size_t selected = parts_.MSFlexGrid1.Selected();
  if (selected == 0) return;
  list_.Remove(selected - 1);
  Changed();
}

void RegionEditor::MSFlexGrid1_RightClick() {
  if (list_.RowCount() == 0) return;
  if (program_.Ask(kClearQuestion, host::kOkCancelDefaultCancel) == host::Reply::Ok) Clear();
}

void RegionEditor::Clear() {
  list_.Clear();
  Changed();
}

void RegionEditor::Changed() {
  parts_.CmdOut.SetEnabled(list_.RowCount() > 0, kNothingToSave);
  if (onChange_) onChange_();
}

std::vector<job::PreviewFrame> RegionEditor::Frames() const {
  const base::Size picture = program_.fCutPre.preview.Picture();
  std::vector<job::PreviewFrame> frames;
  for (const Margins& margins : list_.All()) frames.push_back(FrameOf(margins, GetUnit(), picture));
  return frames;
}

void RegionEditor::Move(std::size_t row, double across, double down) {
  const base::Size picture = program_.fCutPre.preview.Picture();
  if (picture.Empty()) return;
  job::PreviewFrame frame = FrameOf(MarginsOf(list_.Fields(row)), GetUnit(), picture);
  frame.left = KeptInside(frame.left + across, frame.width, picture.width);
  frame.top = KeptInside(frame.top + down, frame.height, picture.height);
  list_.Replace(row, RowText(MarginsOfFrame(frame, GetUnit(), picture)));
  Changed();
}

}  // namespace quillon::regions
