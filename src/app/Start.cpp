#include "app/Start.h"

#include "app/MainWindow.h"
#include "menus/MenuBar1.h"
#include "platform/base/Guard.h"

namespace varnith {

int _Main() {
    std::unique_ptr<App> app;
    int status = 1;
    Guarded([&] {
        _InitFileTypes();
        app = _NewAppInstance();
        _ApplicationAddMenuHandlers();
        _MakeDefaultView();
        status = app->Run();
    });
    return status;
}

void _InitFileTypes() {}

std::unique_ptr<App> _NewAppInstance() {
    auto app = std::make_unique<App>();
    app->SetMenuBar(MenuBar1::Instance());
    return app;
}

void _ApplicationAddMenuHandlers() {}

void _MakeDefaultView() {
    MainWindow::Instance();
}

}  // namespace varnith
