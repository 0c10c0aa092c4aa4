#include "ui/create_database_dialog.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "platform/error.h"
#include "platform/file.h"
#include "platform/site.h"
#include "ui/exec_modal.h"
#include "ui/message_box.h"
#include "ui/window_texts.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

/// Stays open when the folder that was typed does not exist.
class SaveDialog : public QFileDialog {
  public:
    using QFileDialog::QFileDialog;

    void accept() override {
        const QString file = selectedFiles().value(0);
        if (QFileInfo(file).dir().exists()) return QFileDialog::accept();
        platform::Message message;
        message.Title = windowTitle().toStdString();
        message.Text = file.toStdString() + "\nPath does not exist.";
        ShowMessageBox(message, this);
    }
};

QString ChosenPath(QWidget* parent) {
    SaveDialog dialog(parent, u"Create Database"_s, FromUtf8(platform::DocumentsFolder()));
    dialog.setObjectName(u"dlgCreateDB"_s);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // Shown is what stands before the last parentheses; the pattern in them has no period, on purpose.
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilter(u"VB Databases (*.mdb) (*mdb)"_s);
    dialog.setDefaultSuffix(u"mdb"_s);
    dialog.selectFile(u"MyData"_s);
    if (ExecModal(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return QDir::toNativeSeparators(dialog.selectedFiles().constFirst());
}

bool IsLockedElsewhere(const std::string& path) {
    try {
        const auto file = platform::File::Open(path, platform::File::Mode::ReadWrite);
        return !file->TryLock(platform::File::Lock::Exclusive);
    } catch (const platform::Error& error) {
        return error.Number == platform::PermissionDenied;
    }
}

/// Access keeps a lock file beside a database as long as somebody has it open.
bool HasLiveLockFile(const std::string& path) {
    const QFileInfo database(FromUtf8(path));
    const QFileInfo lockFile(database.dir(), database.completeBaseName() % u".ldb"_s);
    if (!lockFile.exists()) return false;
    if (IsLockedElsewhere(lockFile.filePath().toStdString())) return true;
    return database.exists() && lockFile.lastModified() > database.lastModified();
}

}  // namespace

bool DeleteFormerDatabase(const std::string& path) {
    try {
        if (platform::FileExists(path) && HasLiveLockFile(path)) return false;
        platform::RemoveFile(path);
    } catch (const platform::Error& error) {
        return error.Number == platform::FileNotFound;
    }
    return true;
}

QString CreateDatabaseDialog(QtWindowServices& services) {
    QString path = ChosenPath(services.DialogParent());
    services.RethrowFailure();
    if (path.isEmpty() || DeleteFormerDatabase(path.toStdString())) return path;
    platform::Message message;
    message.Text = "Could not Create file: " + path.toStdString();
    message.Critical = true;
    services.ShowMessage(message);
    return {};
}

}  // namespace ui
