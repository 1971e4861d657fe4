// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/desktop/qt_boxes.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

#include "base/path_text.h"
#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

QMessageBox::Icon IconOf(int type) {
  switch (type & host::kIconMask) {
    case host::kStopIcon:
      return QMessageBox::Critical;
    case host::kQuestionIcon:
      return QMessageBox::Question;
    case host::kExclamationIcon:
      return QMessageBox::Warning;
    case host::kInformationIcon:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

struct ButtonText {
  QMessageBox::ButtonRole role;
  const char* text;
};

ButtonText TextOf(host::Reply reply) {
  switch (reply) {
    case host::Reply::Ok:
      return {QMessageBox::AcceptRole, "确定"};
    case host::Reply::Cancel:
      return {QMessageBox::RejectRole, "取消"};
    case host::Reply::Abort:
      return {QMessageBox::DestructiveRole, "中止"};
    case host::Reply::Retry:
      return {QMessageBox::AcceptRole, "重试"};
    case host::Reply::Ignore:
      return {QMessageBox::ActionRole, "忽略"};
    case host::Reply::Yes:
      return {QMessageBox::YesRole, "是"};
    case host::Reply::No:
      return {QMessageBox::NoRole, "否"};
  }
  return {QMessageBox::AcceptRole, "确定"};
}

QString OfferedPath(const host::FileQuestion& question) {
  return QFile::decodeName(QByteArray::fromStdString(base::JoinPath(question.folder, question.name)));
}

// Returns "clt" for "name|*.clt|...": the extension of the first pattern.
QString FirstSuffix(const std::string& filter) {
  return Shown(filter).section(u'|', 1, 1).section(u';', 0, 0).section(u'.', -1);
}

// Returns the active window, or the owner if no window of the program is active.
QWidget* Front(const QPointer<QWidget>& owner) {
  QWidget* active = QApplication::activeWindow();
  return active ? active : owner.data();
}

}  // namespace

host::Reply QtBoxes::Show(const host::Box& box) {
  if (news_ && host::NeedsNoAnswer(box) && owner_ && owner_->isVisible() && Front(owner_) == owner_) {
    news_(Shown(box.notice.empty() ? box.text : box.notice).simplified());
    return host::Reply::Ok;
  }
  QMessageBox window(Front(owner_));
  window.setWindowModality(Qt::ApplicationModal);
  window.setWindowTitle(Shown(box.title));
  window.setIcon(IconOf(box.type));
  window.setTextFormat(Qt::PlainText);
  window.setText(Shown(box.text));
  const std::vector<host::Reply> replies = host::ButtonsOf(box.type);
  std::vector<QAbstractButton*> buttons;
  host::Reply closed = host::DefaultOf(box.type);  // the reply when the box is closed without a button
  for (const host::Reply reply : replies) {
    const ButtonText text = TextOf(reply);
    QPushButton* button = window.addButton(QString::fromUtf8(text.text), text.role);
    button->setObjectName(QString::number(static_cast<int>(reply)));
    buttons.push_back(button);
    if (reply == host::DefaultOf(box.type)) window.setDefaultButton(button);
    if (reply == host::Reply::Cancel) closed = reply;
  }
  for (std::size_t i = 0; i < replies.size(); ++i) {
    if (replies[i] == closed) window.setEscapeButton(buttons[i]);
  }
  window.exec();
  for (std::size_t i = 0; i < replies.size(); ++i) {
    if (window.clickedButton() == buttons[i]) return replies[i];
  }
  return closed;
}

void QtBoxes::Beep() { QApplication::beep(); }

std::vector<std::string> QtDialogs::OpenFiles(const std::string& title, const std::string& filter,
                                              host::Choice choice) {
  QWidget* front = Front(owner_);
  QStringList names;
  if (choice == host::Choice::Many) {
    names = QFileDialog::getOpenFileNames(front, Shown(title), {}, ToolkitFilter(filter));
  } else {
    names << QFileDialog::getOpenFileName(front, Shown(title), {}, ToolkitFilter(filter));
  }
  std::vector<std::string> paths;
  for (const QString& name : names) {
    if (!name.isEmpty()) paths.push_back(QFile::encodeName(name).toStdString());
  }
  return paths;
}

std::string QtDialogs::OpenFile(const host::FileQuestion& question) {
  const QString name = QFileDialog::getOpenFileName(Front(owner_), Shown(question.title), OfferedPath(question),
                                                    ToolkitFilter(question.filter));
  return QFile::encodeName(name).toStdString();
}

std::string QtDialogs::SaveFile(const host::FileQuestion& question) {
  QFileDialog dialog(Front(owner_), Shown(question.title), OfferedPath(question), ToolkitFilter(question.filter));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(FirstSuffix(question.filter));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString();
}

std::optional<std::string> QtDialogs::ChooseFolder(const std::string& title, const std::string& initial) {
  const QString start = QFile::decodeName(QByteArray::fromStdString(initial));
  const QString folder = QFileDialog::getExistingDirectory(Front(owner_), Shown(title), start);
  if (folder.isEmpty()) return std::nullopt;
  return QFile::encodeName(folder).toStdString();
}

QString ToolkitFilter(const std::string& filter) {
  const QStringList parts = Shown(filter).split(u'|');
  QStringList entries;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString patterns = QString(parts[i + 1]).replace(u';', u' ').simplified();
    const QString name = parts[i].section(u'(', 0, 0).trimmed();
    entries << QStringLiteral("%1 (%2)").arg(name, patterns);
  }
  return entries.join(QStringLiteral(";;"));
}

}  // namespace quillon::ui
