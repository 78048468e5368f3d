#include "platform/qt/QtDesktop.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QScreen>
#include <QUrl>
#include <utility>

#include "platform/base/Guard.h"
#include "platform/base/Trace.h"
#include "platform/net/SocketEvents.h"
#include "platform/qt/AccessibleFactory.h"
#include "platform/qt/ContextMenu.h"
#include "platform/qt/Decode.h"
#include "platform/qt/FirstFolder.h"
#include "platform/qt/MenuBarView.h"
#include "platform/qt/MessageBox.h"
#include "platform/qt/OtherWindows.h"
#include "platform/qt/PictureRendering.h"
#include "platform/qt/QtWindow.h"
#include "platform/qt/ReadableStyle.h"
#include "platform/qt/SaveDialog.h"
#include "platform/system/AssignedApplication.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Application.h"

namespace varnith {

namespace {

class QtTimer : public TimerView {
  public:
    QtTimer(std::int32_t period, std::function<void()> fire) {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(fire));
        timer_.start(period);
    }

  private:
    QTimer timer_;
};

QtMessageHandler shown_by_qt = nullptr;

void ShowUnlessNoise(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    // The program needs no runtime directory, but Qt looks for one at its start, to find out whether it runs
    // in a Flatpak. This warning has no logging category, so it is recognised by its text.
    if (!text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        shown_by_qt(type, context, text);
}

}  // namespace

QtDesktop::MessageFilter::MessageFilter() {
    shown_by_qt = qInstallMessageHandler(ShowUnlessNoise);
}

QtDesktop::MessageFilter::~MessageFilter() {
    qInstallMessageHandler(shown_by_qt);
}

QtDesktop::QtDesktop(int& argc, char** argv)
    : application_(argc, argv),
      sockets_(SocketEvents::Current()->Descriptor(), QSocketNotifier::Read),
      user_time_(application_),
      last_folder_(QDir::homePath()),
      last_save_folder_(QDir::homePath()) {
    // The program itself decides when it ends.
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationName(QStringLiteral("Varnith"));
    QApplication::setStyle(new ReadableStyle);
    InstallAccessibleFactory();
    // The texts of Qt's own dialogs and menus. The program's own layout doesn't follow their language.
    QApplication::setLayoutDirection(Qt::LeftToRight);
    if (translator_.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&translator_);
    turn_timer_.setSingleShot(true);
    QObject::connect(&turn_timer_, &QTimer::timeout, [this] {
        if (Application::Current().IsQuitting()) return;
        Scheduler::Current().Turn();
        ScheduleTurn();
    });
    Scheduler::Current().SetWakeUp([this] { ScheduleTurn(); });
    QObject::connect(&sockets_, &QSocketNotifier::activated, [] { SocketEvents::Current()->Serve(); });
}

QtDesktop::~QtDesktop() {
    Scheduler::Current().SetWakeUp(nullptr);
    // Run pending deleteLater() calls: the loop will not run again.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool QtDesktop::GuardedApplication::notify(QObject* receiver, QEvent* event) {
    bool handled = true;
    Guarded([&] {
        // A dialog is polished before it is first shown. Those that Qt's dialogs open are reached only here.
        auto* dialog = event->type() == QEvent::Polish ? qobject_cast<QDialog*>(receiver) : nullptr;
        if (dialog) MenuBarView::AddShortcuts(*dialog);
        handled = QApplication::notify(receiver, event);
    });
    return handled;
}

void QtDesktop::ScheduleTurn() {
    if (const auto wait = Scheduler::Current().UntilNextTurn())
        turn_timer_.start(*wait);
    else
        turn_timer_.stop();
}

int QtDesktop::RunEventLoop() {
    return QApplication::exec();
}

void QtDesktop::DoEvents(std::int32_t milliseconds) {
    QTimer alarm;
    if (milliseconds > 0) alarm.start(milliseconds);
    QApplication::processEvents(milliseconds > 0 ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
}

void QtDesktop::Quit(int status) {
    // A question whose loop ends without an answer is not a "No" to Qt's file dialogs: they would delete the
    // file that they have asked about.
    for (QWidget* window : QApplication::topLevelWidgets())
        if (qobject_cast<QMessageBox*>(window)) window->close();
    QApplication::exit(status);
}

std::unique_ptr<WindowView> QtDesktop::Show(Window& window) {
    return std::make_unique<QtWindow>(window, *this, clock_);
}

std::unique_ptr<TimerView> QtDesktop::StartTimer(std::int32_t period, std::function<void()> fire) {
    return std::make_unique<QtTimer>(period, std::move(fire));
}

void QtDesktop::SetIcon(const Picture& picture) {
    QIcon icon;
    for (const int side : {16, 32, 48, 128})
        icon.addPixmap(QPixmap::fromImage(Rendered(picture, QSize(side, side))));
    QApplication::setWindowIcon(icon);
}

Desktop::Size QtDesktop::ScreenSize(int screen) const {
    const QList<QScreen*> screens = QGuiApplication::screens();
    if (screen < 0 || screen >= screens.size()) return {0, 0};
    const QSize size = screens[screen]->size();
    return {size.width(), size.height()};
}

std::optional<std::string> QtDesktop::ChooseFolder() {
    // Qt's own dialog has this title by default, but the desktop's has none.
    QFileDialog dialog(QApplication::activeWindow(), QFileDialog::tr("Find Directory"),
                       FirstFolder(last_folder_));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    last_folder_ = dialog.selectedFiles().constFirst();
    return QFile::encodeName(last_folder_).toStdString();
}

std::optional<std::string> QtDesktop::ChooseFileToWrite(const std::string& filter, const std::string& name) {
    return AskForFileToWrite(filter, name, last_save_folder_);
}

std::optional<std::size_t> QtDesktop::ChooseFromMenu(const std::vector<std::string>& entries) {
    return ShowContextMenu(entries);
}

bool QtDesktop::IsContextualPress() const {
    return ContextualPress::Place().has_value();
}

void QtDesktop::OpenDocument(const std::string& path, bool to_front) {
    OpenInAssignedApplication(path, to_front ? user_time_.NewStartupId() : "");
}

void QtDesktop::ShowMessage(const std::string& text) {
    ShowMessageBox(text);
}

void QtDesktop::Beep() {
    QApplication::beep();
}

void QtDesktop::OpenURL(const std::string& url) {
    const QUrl address(QString::fromStdString(url));
    if (!address.isValid()) TraceFailure("open the address", url, address.errorString().toStdString());
    OpenInBrowser(address.toEncoded().toStdString());
}

void QtDesktop::BringToFront(std::int64_t process) {
    RaiseWindowsOf(process);
}

std::string QtDesktop::ClipboardText() const {
    return Encoded(QGuiApplication::clipboard()->text());
}

bool QtDesktop::IsCommandKeyDown() const {
    return IsDown(Qt::MetaModifier);
}

bool QtDesktop::IsControlKeyDown() const {
    return IsDown(Qt::ControlModifier);
}

bool QtDesktop::IsDown(Qt::KeyboardModifier modifier) const {
    return (delivered_ | QGuiApplication::queryKeyboardModifiers()).testFlag(modifier);
}

QtDesktop::DeliveredModifiers::DeliveredModifiers(QtDesktop& desktop, Qt::KeyboardModifiers modifiers)
    : desktop_(desktop), previous_(std::exchange(desktop.delivered_, modifiers)) {}

QtDesktop::DeliveredModifiers::~DeliveredModifiers() {
    desktop_.delivered_ = previous_;
}

}  // namespace varnith
