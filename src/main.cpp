#include "app/Start.h"
#include "platform/base/InForce.h"
#include "platform/qt/QtDesktop.h"

int main(int /*argc*/, char** argv) {
    // The program takes no arguments; Qt, which would read its own from them, is told of none either.
    int count = 1;
    char* name[] = {argv[0], nullptr};
    varnith::QtDesktop desktop(count, name);
    const varnith::InForce<varnith::Desktop> in_force(desktop);
    return varnith::_Main();
}
