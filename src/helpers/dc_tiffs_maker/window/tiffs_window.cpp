// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/window/tiffs_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QCollator>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <algorithm>

#include "base/path_text.h"
#include "helpers/dc_tiffs_maker/window/picture_list.h"
#include "helpers/dc_tiffs_maker/window/task.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"

namespace quillon::helpers {
namespace {

constexpr int kMaxDpi = 10000;
constexpr int kWidth = 90 * ui::kGap;
constexpr int kHeight = 66 * ui::kGap;
constexpr int kYesNoDefaultNo = host::kYesNoQuestion + host::kSecondIsDefault;
constexpr const char* kPictureFilter = "图片|*.jpg;*.jpeg;*.bmp;*.png;*.gif;*.tif;*.tiff";
constexpr const char* kTiffFilter = "Tiff|*.tif;*.tiff";

enum Colours { kColour, kGrey, kBlackWhite };

int ColoursOf(const tools::OkList& order) { return order.colour ? kColour : order.grey ? kGrey : kBlackWhite; }

// Sorts by the numbers inside of names: page 2 before page 10.
void SortByNumbers(std::vector<std::string>& paths) {
  QCollator collator;
  collator.setNumericMode(true);
  std::sort(paths.begin(), paths.end(), [&](const std::string& a, const std::string& b) {
    return collator.compare(ui::Shown(a), ui::Shown(b)) < 0;
  });
}

void Ink(QWidget& widget, const QColor& ink) {
  QPalette palette;
  palette.setColor(QPalette::WindowText, ink);
  widget.setPalette(palette);
}

QColor InkOf(Mood mood, const QPalette& palette) {
  if (mood == Mood::Good) return ui::GoodInk(palette);
  return mood == Mood::Bad ? ui::DangerInk(palette) : palette.color(QPalette::WindowText);
}

QLabel* LabelFor(const QString& text, QWidget* field) {
  auto* label = new QLabel(text);
  label->setBuddy(field);
  return label;
}

}  // namespace

TiffsWindow::TiffsWindow(host::Host& world, tools::OkList order, const std::string& note, std::string program)
    : QDialog(nullptr, Qt::Window),
      world_(world),
      order_(std::move(order)),
      run_(world, std::move(program),
           {[this](const std::string& report) { OnProgress(report); }, [this](const MakerEnd& end) { OnEnded(end); }}) {
  setObjectName(QStringLiteral("DCTiffsMaker"));
  setWindowTitle(QStringLiteral("Quillon—Tiff独立版"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(2 * ui::kGap, 2 * ui::kGap, 2 * ui::kGap, 2 * ui::kGap);
  column->setSpacing(ui::kGap);
  column->addLayout(MakeList(), 1);
  column->addSpacing(ui::kGap);
  column->addLayout(MakeFields());
  column->addSpacing(ui::kGap);
  column->addLayout(MakeEnds());
  resize(QSize(kWidth, kHeight).expandedTo(minimumSizeHint()));
  Show(order_);
  ShowStatus(note, Mood::Plain);
}

QPushButton* TiffsWindow::Button(const QString& text, void (TiffsWindow::*act)()) {
  auto* button = new QPushButton(text);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, act);
  inputs_.push_back(button);
  return button;
}

QLayout* TiffsWindow::MakeList() {
  list_ = new PictureList;
  list_->setObjectName(QStringLiteral("list"));
  list_->SetDropHandler([this](const std::vector<std::string>& paths) { AddPaths(paths); });
  connect(list_->model(), &QAbstractItemModel::rowsInserted, this, [this] { Refresh(); });
  connect(list_->model(), &QAbstractItemModel::rowsRemoved, this, [this] { Refresh(); });
  inputs_.push_back(list_);
  count_ = LabelFor({}, list_);

  auto* buttons = new QVBoxLayout;
  buttons->setSpacing(ui::kGap);
  buttons->addWidget(Button(QStringLiteral("添加图片(&P)…"), &TiffsWindow::AddFiles));
  buttons->addWidget(Button(QStringLiteral("添加文件夹(&F)…"), &TiffsWindow::AddFolder));
  buttons->addSpacing(ui::kGap);
  buttons->addWidget(Button(QStringLiteral("上移(&U)"), &TiffsWindow::Up));
  buttons->addWidget(Button(QStringLiteral("下移(&N)"), &TiffsWindow::Down));
  buttons->addSpacing(ui::kGap);
  buttons->addWidget(Button(QStringLiteral("移除(&R)"), &TiffsWindow::Remove));
  buttons->addWidget(Button(QStringLiteral("清空(&L)"), &TiffsWindow::Clear));
  buttons->addStretch(1);

  auto* grid = new QGridLayout;
  grid->setSpacing(ui::kGap);
  grid->addWidget(count_, 0, 0);
  grid->addWidget(list_, 1, 0);
  grid->addLayout(buttons, 1, 1);
  grid->setRowStretch(1, 1);
  grid->setColumnStretch(0, 1);
  return grid;
}

QLayout* TiffsWindow::MakeFields() {
  target_ = new QLineEdit;
  target_->setObjectName(QStringLiteral("target"));
  colours_ = new QComboBox;
  colours_->setObjectName(QStringLiteral("colours"));
  colours_->addItems({QStringLiteral("彩色"), QStringLiteral("灰度"), QStringLiteral("黑白")});
  compress_ = new QCheckBox(QStringLiteral("JPEG压缩(&J)"));
  compress_->setToolTip(QStringLiteral("文件小得多，画质略有损失；不勾则无损保存"));
  quality_ = new QComboBox;
  quality_->setObjectName(QStringLiteral("quality"));
  quality_->addItems({QStringLiteral("高品质"), QStringLiteral("中品质"), QStringLiteral("低品质")});
  dpi_ = new QSpinBox;
  dpi_->setRange(0, kMaxDpi);
  dpi_->setSpecialValueText(QStringLiteral("与图片相同"));
  dpi_->setSuffix(QStringLiteral(" DPI"));
  for (QWidget* field : std::initializer_list<QWidget*>{target_, colours_, compress_, quality_, dpi_}) {
    inputs_.push_back(field);
  }
  connect(colours_, &QComboBox::currentIndexChanged, this, [this] { Refresh(); });
  connect(compress_, &QCheckBox::toggled, this, [this] { Refresh(); });
  further_ = new QLabel;
  further_->setObjectName(QStringLiteral("further"));
  further_->setWordWrap(true);

  auto* grid = new QGridLayout;
  grid->setSpacing(ui::kGap);
  grid->addWidget(LabelFor(QStringLiteral("保存为(&T)："), target_), 0, 0);
  grid->addWidget(target_, 0, 1, 1, 5);
  grid->addWidget(Button(QStringLiteral("浏览(&B)…"), &TiffsWindow::Browse), 0, 6);
  grid->addWidget(LabelFor(QStringLiteral("颜色(&C)："), colours_), 1, 0);
  grid->addWidget(colours_, 1, 1);
  grid->addWidget(compress_, 1, 2);
  grid->addWidget(quality_, 1, 3);
  grid->addWidget(LabelFor(QStringLiteral("分辨率(&D)："), dpi_), 1, 4, Qt::AlignRight);
  grid->addWidget(dpi_, 1, 5, 1, 2);
  grid->addWidget(further_, 2, 0, 1, 7);
  grid->setColumnStretch(4, 1);
  quality_->setAccessibleName(QStringLiteral("JPEG品质"));
  return grid;
}

QLayout* TiffsWindow::MakeEnds() {
  status_ = new QLabel;
  status_->setObjectName(QStringLiteral("status"));
  status_->setWordWrap(true);
  status_->setTextFormat(Qt::PlainText);
  status_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // Room for two lines, so that the layout does not move when a long sentence appears.
  status_->setMinimumHeight(2 * status_->fontMetrics().lineSpacing());
  bar_ = new QProgressBar;
  bar_->setTextVisible(false);
  bar_->setFixedHeight(ui::kGap);
  start_ = Button(QStringLiteral("开始(&S)"), &TiffsWindow::Start);
  start_->setDefault(true);
  stop_ = Button(QStringLiteral("停止(&O)"), &TiffsWindow::Stop);
  inputs_.pop_back();
  auto* close = new QPushButton(QStringLiteral("关闭(&X)"));
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &QWidget::close);

  auto* column = new QVBoxLayout;
  column->setSpacing(ui::kGap);
  column->addWidget(bar_);
  column->addWidget(status_);
  auto* ends = new QHBoxLayout;
  ends->setSpacing(ui::kGap);
  ends->addStretch(1);
  for (QPushButton* button : {start_, stop_, close}) ends->addWidget(button);
  column->addLayout(ends);
  return column;
}

void TiffsWindow::Show(const tools::OkList& order) {
  list_->Add(order.pictures);
  target_->setText(ui::Shown(order.target));
  colours_->setCurrentIndex(ColoursOf(order));
  compress_->setChecked(order.compress);
  quality_->setCurrentIndex(order.quality);
  dpi_->setValue(order.dpi);
  const std::string further = FurtherSteps(order);
  further_->setText(ui::Shown("任务文件还要求：" + further));
  further_->setVisible(!further.empty());
  Refresh();
}

tools::OkList TiffsWindow::Order() const {
  tools::OkList order = order_;
  // A name with bytes that are not UTF-8 is shown incompletely. It keeps its bytes until the user types another one.
  if (target_->text() != ui::Shown(order_.target)) order.target = TiffName(ui::Bytes(target_->text()));
  order.colour = colours_->currentIndex() == kColour;
  order.grey = colours_->currentIndex() == kGrey;
  order.compress = compress_->isChecked();
  order.quality = quality_->currentIndex();
  order.dpi = dpi_->value();
  order.pictures = list_->Paths();
  return order;
}

void TiffsWindow::AddFiles() { AddPaths(world_.dialogs.OpenFiles("添加图片", kPictureFilter, host::Choice::Many)); }

void TiffsWindow::AddFolder() {
  const std::optional<std::string> folder = world_.dialogs.ChooseFolder("添加文件夹中的图片", {});
  if (folder) AddPaths({*folder});
}

void TiffsWindow::AddPaths(const std::vector<std::string>& paths) {
  if (run_.Running()) return;
  const int before = list_->count();
  for (const std::string& path : paths) {
    std::vector<std::string> pictures{path};
    if (world_.files.IsFolder(path)) {
      pictures = PicturesIn(world_.files, path);
      SortByNumbers(pictures);
    }
    list_->Add(pictures);
  }
  const int added = list_->count() - before;
  if (added > 0) return ShowStatus("添加了 " + std::to_string(added) + " 张图片。", Mood::Plain);
  if (!paths.empty()) ShowStatus("文件夹里没有可以合成的图片：请另选一个，或直接添加图片。", Mood::Bad);
}

void TiffsWindow::Remove() { list_->RemoveSelected(); }
void TiffsWindow::Up() { list_->MoveSelected(PictureList::Direction::Up); }
void TiffsWindow::Down() { list_->MoveSelected(PictureList::Direction::Down); }
void TiffsWindow::Clear() {
  list_->clear();
  Refresh();
}

void TiffsWindow::Browse() {
  const std::string target = Order().target;
  const std::vector<std::string> pictures = list_->Paths();
  const base::PathParts parts = base::SplitPath(target.empty() && !pictures.empty() ? pictures.front() : target);
  const std::string name = parts.name.empty() || target.empty() ? "Tiff" : parts.name;
  const std::string chosen = world_.dialogs.SaveFile({"保存Tiff", kTiffFilter, parts.folder, name + ".tif"});
  if (chosen.empty()) return;
  mayReplace_ = TiffName(chosen);
  order_.target = mayReplace_;
  target_->setText(ui::Shown(mayReplace_));
}

bool TiffsWindow::MayReplace(const std::string& target) {
  if (!world_.files.Stat(target) || target == mayReplace_) return true;
  const std::string question = "“" + NameOf(target) + "”已经存在，要替换它吗？";
  return world_.boxes.Show({question, kYesNoDefaultNo}) == host::Reply::Yes;
}

void TiffsWindow::Start() {
  const tools::OkList order = Order();
  if (const std::string why = WhyNotStartable(world_.files, order); !why.empty()) {
    return ShowStatus(why, Mood::Bad);
  }
  if (!MayReplace(order.target)) return;
  mayReplace_.clear();
  order_.target = order.target;
  target_->setText(ui::Shown(order.target));
  bar_->setRange(0, static_cast<int>(order.pictures.size()));
  bar_->setValue(0);
  ShowStatus("正在启动…", Mood::Plain);
  run_.Start(order);
  Refresh();
  if (run_.Running()) stop_->setFocus();
}

void TiffsWindow::Stop() { run_.Stop(); }

void TiffsWindow::OnProgress(const std::string& report) {
  if (const auto picture = ParseProgress(report)) bar_->setValue(picture->number - 1);
  ShowStatus(report, Mood::Plain);
}

void TiffsWindow::OnEnded(const MakerEnd& end) {
  const Verdict verdict = VerdictOf(end, order_.target);
  bar_->setValue(end.ending == Ending::Done ? bar_->maximum() : 0);
  ShowStatus(verdict.sentence, verdict.mood);
  Refresh();
  start_->setFocus();
}

void TiffsWindow::ShowStatus(const std::string& sentence, Mood mood) {
  status_->setText(ui::Shown(sentence));
  mood_ = mood;
  UpdateColours();
}

void TiffsWindow::UpdateColours() {
  Ink(*status_, InkOf(mood_, palette()));
  Ink(*further_, ui::FaintInk(palette()));
}

void TiffsWindow::Refresh() {
  count_->setText(QStringLiteral("图片(&I)：共 %1 张").arg(list_->count()));
  const bool running = run_.Running();
  for (QWidget* input : inputs_) input->setEnabled(!running);
  stop_->setEnabled(running);
  const bool coloured = colours_->currentIndex() != kBlackWhite;
  compress_->setEnabled(!running && coloured);
  quality_->setEnabled(!running && coloured && compress_->isChecked());
}

// The desktop may switch to dark colours while the window is open.
void TiffsWindow::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && status_) UpdateColours();
}

void TiffsWindow::closeEvent(QCloseEvent* event) {
  run_.Stop();
  QDialog::closeEvent(event);
}

// Escape must not stop a run by mistake.
void TiffsWindow::reject() {
  if (!run_.Running()) QDialog::reject();
}

}  // namespace quillon::helpers
