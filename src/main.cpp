#include "app/Start.h"
#include "platform/qt/QtDesktop.h"

int main(int argc, char** argv) {
    varnith::QtDesktop desktop(argc, argv);
    const varnith::Desktop::InForce in_force(desktop);
    return varnith::_Main();
}
