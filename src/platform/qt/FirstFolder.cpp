#include "platform/qt/FirstFolder.h"

#include <QDir>
#include <QFile>
#include <chrono>

#include "platform/base/Trace.h"
#include "platform/files/FileSystem.h"
#include "platform/threads/Workers.h"

namespace varnith {

QString FirstFolder(const QString& folder) {
    constexpr std::chrono::milliseconds Patience{500};
    const std::string path = QFile::encodeName(folder).toStdString();
    // Workers of its own, because one that asks a share which is down is of no use for the next question.
    Workers workers(1, 1);
    const auto answer = workers.Do([path, &disk = FileSystem::Current()] { return disk.Status(path); });
    workers.WaitBriefly(answer, Patience);
    if (answer.IsThere()) return folder;
    TraceFailure("open a dialog in", path, "no answer");
    return QDir::homePath();
}

}  // namespace varnith
