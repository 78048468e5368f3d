#pragma once

#include <QString>

namespace varnith {

// The folder in which a file dialog is to open: the given one, or the home folder if the given one doesn't
// answer within half a second. Qt's dialog would block the window until it does, as long as a share is down.
QString FirstFolder(const QString& folder);

}  // namespace varnith
