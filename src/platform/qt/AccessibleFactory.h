#pragma once

namespace varnith {

// Makes Qt describe the program's own widgets on the accessibility bus by what they are to the user: a table
// with check boxes, a link, a picture. REQUIRES: the application object exists, so that this comes before
// Qt's own descriptions.
void InstallAccessibleFactory();

}  // namespace varnith
