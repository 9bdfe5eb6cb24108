// What a dialog asks of the toolkit beside its controls: messages, files, dialogs over it.

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QUrl>

#include "toolkit/qt/qt_dialog.h"
#include "toolkit/qt/qt_text.h"

namespace gantry::platform {

namespace {

/// The filters as this toolkit has them, the pattern within the name. Files of any name can be
/// picked besides: executables have no extension here.
QStringList NameFilters(const char* filters) {
  const QString every = QStringLiteral("All files (*)");
  const QStringList parts = QString::fromLatin1(filters).split(u'|', Qt::SkipEmptyParts);
  QStringList names;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    if (parts[i + 1] != QStringLiteral("*.*")) names << parts[i];
  }
  return names << every;
}

/// Picks an existing file. A name that is typed gets the extension only where there is no file of
/// the name alone: executables have none here.
class FilePicker : public QFileDialog {
 public:
  FilePicker(const FileRequest& request, QWidget* parent)
      : QFileDialog(parent), extension_(QString::fromLatin1(request.defaultExtension)) {
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::ExistingFile);
    setNameFilters(NameFilters(request.filters));
    const QDir folder(QFile::decodeName(QByteArray::fromStdString(request.folder)));
    if (!request.folder.empty() && folder.exists()) setDirectory(folder);
  }

 protected:
  void accept() override {
    auto* const edit = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    const QString longer = edit->text() + u'.' + extension_;
    if (!directory().exists(edit->text()) && directory().exists(longer)) edit->setText(longer);
    QFileDialog::accept();
  }

 private:
  QString extension_;
};

}  // namespace

void QtDialog::ShowMessage(const std::string& text) {
  QMessageBox box(QMessageBox::Warning, windowTitle(), ToQt(text), QMessageBox::Ok, this);
  box.exec();
}

std::optional<std::string> QtDialog::AskForFile(const FileRequest& request) {
  FilePicker dialog(request, this);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return QFile::encodeName(dialog.selectedFiles().first()).toStdString();
}

int QtDialog::RunDialog(DialogHandler& handler) { return QtDialog(handler, this).exec(); }

// One viewer takes the number of a topic; whatever else the desktop has for such files shows the
// first.
bool QtDialog::ShowHelp(const std::string& file, uint32_t topic) {
  const QString path = QFile::decodeName(QByteArray::fromStdString(file));
  if (!QFile::exists(path)) return false;
  const QString viewer = QStandardPaths::findExecutable(QStringLiteral("xchm"));
  if (viewer.isEmpty()) return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
  return QProcess::startDetached(viewer, {QStringLiteral("-c"), QString::number(topic), path});
}

void QtDialog::SetWaitCursor(bool isWaiting) {
  if (isWaiting) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void QtDialog::Pause(int milliseconds) {
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  QThread::msleep(static_cast<unsigned long>(milliseconds));
}

}  // namespace gantry::platform
