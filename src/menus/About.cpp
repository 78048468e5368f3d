#include "menus/About.h"

#include "BuildSettings.h"
#include "menus/Pictures.h"
#include "platform/base/Text.h"
#include "platform/system/SystemInformationMBS.h"
#include "platform/ui/Application.h"
#include "platform/ui/Dialogs.h"
#include "platform/ui/Keyboard.h"

namespace varnith {

namespace {

// The date of the first release. Later builds keep it.
constexpr const char* BuildDate = "2008-06-24";

constexpr std::uint32_t Blue = 0x0000FF;

// The web site's host without "www.".
std::string ShortHost() {
    constexpr std::string_view Prefix = "www.";
    const std::string& host = BuildSettings::WebServer;
    return host.starts_with(Prefix) ? host.substr(Prefix.size()) : host;
}

}  // namespace

About::About() {
    SetDesignSize(305, 288);
    SetStyle({.Resizeable = false, .MaximizeButton = false, .MinimizeButton = false, .EscapeCloses = true});
    CreateControls();
}

void About::CreateControls() {
    const Locks top_left{.Left = true, .Top = true};

    AddControl(StaticText1, {9, 116, 287, 20}, top_left, 1);
    StaticText1.SetText("App Name goes here");
    StaticText1.SetBold(true);
    AddControl(StaticText2, {9, 167, 287, 20}, top_left, 2);
    StaticText2.SetText("Version info goes here");
    AddControl(StaticText3, {9, 194, 287, 20}, top_left, 3);
    StaticText3.SetText("Build Date");
    // Has the same tab index as the date. That has no effect, since only links take the focus.
    AddControl(StaticText4, {9, 226, 287, 20}, top_left, 3);
    StaticText4.SetText("© The Varnith developers");
    StaticText4.MouseDown = [this](std::int32_t x, std::int32_t y) { return StaticText4_MouseDown(x, y); };
    AddControl(StaticText5, {9, 258, 287, 20}, top_left, 4);
    StaticText5.SetText(ShortHost());
    StaticText5.SetTextColor(Blue);
    StaticText5.SetUnderline(true);
    StaticText5.MouseDown = [this](std::int32_t x, std::int32_t y) { return StaticText5_MouseDown(x, y); };
    for (StaticText* text : {&StaticText1, &StaticText2, &StaticText3, &StaticText4, &StaticText5}) {
        text->SetTextAlign(TextAlign::Centre);
        text->SetTextSize(SystemTextSize);
    }

    AddControl(Canvas3, {15, 10, 94, 93}, top_left, 7);
    Canvas3.SetBackdrop(Pictures::file128());
    Canvas3.SetAccessibleName("A stack of pages");
    AddControl(Canvas2, {139, 47, 25, 27}, top_left, 6);
    Canvas2.SetBackdrop(Pictures::tooo());
    Canvas2.SetAccessibleName("An arrow");
    AddControl(Canvas1, {189, 9, 100, 95}, top_left, 5);
    Canvas1.SetBackdrop(Pictures::numbers());
    Canvas1.SetAccessibleName("A list of files with their page counts");
}

void About::Event_Open() {
    const Application& application = Application::Current();
    CentreOnScreen();
    SetTitle("About: Varnith - " + SystemInformationMBS::OSName());
    StaticText1.SetText("Varnith");
    StaticText2.SetText("Version: " + Str(application.MajorVersion()) + "." +
                        Str(application.MinorVersion()) + "." + Str(application.BugVersion()));
    StaticText3.SetText(std::string("Build Date: ") + BuildDate);
}

bool About::Event_KeyDown(const std::string& key) {
    if (Keyboard::IsCloseShortcut(key)) Close();
    return false;
}

bool About::StaticText4_MouseDown(std::int32_t /*x*/, std::int32_t /*y*/) {
    ShowURL("http://" + BuildSettings::WebServer);
    return false;
}

bool About::StaticText5_MouseDown(std::int32_t /*x*/, std::int32_t /*y*/) {
    ShowURL("http://" + ShortHost());
    return false;
}

}  // namespace varnith
