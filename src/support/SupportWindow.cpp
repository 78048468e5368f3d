#include "support/SupportWindow.h"

#include <cmath>

#include "BuildSettings.h"
#include "platform/base/RegEx.h"
#include "platform/base/Text.h"
#include "platform/net/Network.h"
#include "platform/system/SystemInformationMBS.h"
#include "platform/ui/Application.h"
#include "platform/ui/Clipboard.h"
#include "platform/ui/Dialogs.h"
#include "platform/ui/Keyboard.h"

namespace varnith {

namespace {

constexpr const char* AddressPattern =
    R"([a-z0-9!#$%&'*+/=?^_`{|}~-]+(?:\.[a-z0-9!#$%&'*+/=?^_`{|}~-]+)*@)"
    R"((?:[a-z0-9](?:[a-z0-9-]*[a-z0-9])?\.)+[a-z0-9](?:[a-z0-9-]*[a-z0-9])?)";

std::string InMegabytes(double bytes) {
    return Str(std::llrint(bytes / 1024 / 1024)) + " MB";
}

}  // namespace

SupportWindow::SupportWindow() {
    SetTitle("Support Feedback (Use all fields)");
    SetDesignSize(371, 358);
    SetStyle({.Frame = FrameKind::MovableModal,
              .Resizeable = false,
              .MaximizeButton = false,
              .MinimizeButton = false,
              .EscapeCloses = true});
    CreateControls();
}

void SupportWindow::CreateControls() {
    const Locks top_left{.Left = true, .Top = true};
    CreateFields();

    AddControl(PushButton2, {105, 317, 80, 20}, top_left, 6);
    PushButton2.SetCaption("Close");
    PushButton2.Action = [this] { PushButton2_Action(); };
    AddControl(PushButton1, {197, 317, 80, 20}, top_left, 5);
    PushButton1.SetCaption("Send");
    PushButton1.SetDefault(true);
    PushButton1.SetEnabled(false);
    PushButton1.Action = [this] { PushButton1_Action(); };

    Timer1.Action = [this] { Timer1_Action(); };
    Timer1.SetPeriod(1000);
    Timer1.SetMode(Timer::ModeKind::Multiple);

    for (Control* control : Controls()) control->SetTextSize(SystemTextSize);
}

void SupportWindow::CreateFields() {
    const Locks top_left{.Left = true, .Top = true};

    AddControl(StaticText3, {13, 16, 43, 20}, top_left, 5);
    StaticText3.SetText("Email:");
    StaticText3.SetLabelled(EditField1);
    AddControl(EditField1, {78, 14, 273, 22}, top_left, 1);

    AddControl(StaticText6, {13, 48, 43, 20}, top_left, 11);
    StaticText6.SetText("Name:");
    StaticText6.SetLabelled(EditField2);
    AddControl(EditField2, {78, 46, 273, 22}, top_left, 2);

    AddControl(StaticText1, {12, 80, 46, 20}, top_left, 7);
    StaticText1.SetText("Type:");
    StaticText1.SetLabelled(PopupMenu1);
    AddControl(PopupMenu1, {78, 80, 272, 20}, top_left, 3);
    for (const char* topic : {"N/A", "Cosmetic Issue", "Feature Request", "Crash/Freeze", "Documentation",
                              "Functionality", "Imports", "Website"})
        PopupMenu1.AddRow(topic);
    PopupMenu1.SetListIndex(0);

    AddControl(StaticText4, {12, 114, 53, 20}, top_left, 8);
    StaticText4.SetText("Details:");
    StaticText4.SetLabelled(EditField3);
    AddControl(EditField3, {12, 138, 338, 164}, top_left, 4);
    EditField3.SetMultiLine(true);
    EditField3.KeyDown = [this](const std::string& key) { return EditField3_KeyDown(key); };
}

void SupportWindow::Event_Open() {
    const Application& application = Application::Current();
    const auto add_line = [this](const std::string& line) { kDetails += line + "\r"; };
    CentreOnScreen();
    // The people who read the tickets know this block, so its form is fixed: no blank after "App Name:", and
    // two of the version's three numbers.
    add_line("App Name:Varnith");
    add_line("Version: " + Str(application.MajorVersion()) + "." + Str(application.MinorVersion()));
    add_line("OS Version: " + SystemInformationMBS::OSVersionString());
    add_line("Total RAM: " + InMegabytes(SystemInformationMBS::LogicalRAM()));
    add_line("Available RAM: " + InMegabytes(SystemInformationMBS::AvailableRAM()));
    add_line("Computer Number: " + SystemInformationMBS::MacSerialNumber());
    add_line("User Name: " + SystemInformationMBS::Username());
}

bool SupportWindow::Event_KeyDown(const std::string& key) {
    if (Keyboard::IsCloseShortcut(key)) Close();
    return false;
}

void SupportWindow::Timer1_Action() {
    PushButton1.SetEnabled(!EditField1.Text().empty() && !EditField2.Text().empty() &&
                           !EditField3.Text().empty());
}

void SupportWindow::PushButton1_Action() {
    const auto address = MakeRef<RegEx>();
    address->SearchPattern = AddressPattern;
    if (!address->Search(EditField1.Text())) {
        MsgBox(EditField1.Text() + " not valid email");
        return;
    }
    if (Network::LookupIPAddress(BuildSettings::ReachabilityHost).empty()) {
        MsgBox(
            "No internet connection. Please establish an internet connection and resubmit the form. Thank "
            "you.");
        return;
    }
    senddata("");
}

void SupportWindow::PushButton2_Action() {
    Close();
}

bool SupportWindow::EditField3_KeyDown(const std::string& key) {
    if (!SameText(key, "v") || !(Keyboard::AsyncCommandKey() || Keyboard::AsyncControlKey())) return false;
    Clipboard clipboard;
    EditField3.SetSelText(clipboard.Text());
    clipboard.Close();
    return true;
}

}  // namespace varnith
