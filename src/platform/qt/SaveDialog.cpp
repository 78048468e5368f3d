#include "platform/qt/SaveDialog.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

#include "platform/qt/Decode.h"
#include "platform/qt/FirstFolder.h"

namespace varnith {

std::optional<std::string> AskForFileToWrite(const std::string& filter, const std::string& name,
                                             QString& folder) {
    QFileDialog dialog(QApplication::activeWindow(), QFileDialog::tr("Save As"), FirstFolder(folder),
                       Decoded(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(QFileInfo(Decoded(name)).suffix());
    dialog.selectFile(Decoded(name));
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    const QString file = dialog.selectedFiles().constFirst();
    folder = QFileInfo(file).path();
    return QFile::encodeName(file).toStdString();
}

}  // namespace varnith
