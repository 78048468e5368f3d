#pragma once

#include <cstdint>
#include <string>

#include "http/HTTPSocket.h"
#include "platform/ui/EditField.h"
#include "platform/ui/PopupMenu.h"
#include "platform/ui/PushButton.h"
#include "platform/ui/StaticText.h"
#include "platform/ui/Timer.h"
#include "platform/ui/Window.h"

namespace varnith {

// The form for messages to the program's maker: e-mail address, name, topic and text. It sends them to the
// support server as a ticket, together with a block of details about the system. Closing the window discards
// what was entered.
class SupportWindow : public SingleWindow<SupportWindow> {
  public:
    SupportWindow();

    // The details about the program and the system, in lines that end with a carriage return. Event_Open
    // collects them. They are sent with the ticket and never shown.
    std::string kDetails;

    // How long the window waits for a server that sends nothing, in seconds. Below 1 there is no limit.
    std::int32_t Patience = 30;

    StaticText StaticText3;
    EditField EditField1;
    StaticText StaticText6;
    EditField EditField2;
    StaticText StaticText1;
    PopupMenu PopupMenu1;
    StaticText StaticText4;
    EditField EditField3;
    PushButton PushButton2;
    PushButton PushButton1;
    Ref<HTTPSocket> Socket1 = MakeRef<HTTPSocket>();
    Timer Timer1{*this};

    void Event_Open() override;
    bool Event_KeyDown(const std::string& key) override;
    // Enables "Send" if the three fields hold text, else disables it. It runs once a second and nothing else
    // does this, so "Send" stays enabled for up to a second after a field has been emptied.
    void Timer1_Action();
    // "Send": tells the user if the address field holds no e-mail address or if there is no network, else
    // sends the ticket. It looks up the name of a public host to test the network; that does not involve the
    // support server.
    void PushButton1_Action();
    // "Close".
    void PushButton2_Action();
    // Pastes the clipboard's text for Command-V or Control-V. Returns whether it has handled the key.
    bool EditField3_KeyDown(const std::string& key);

    // Sends the ticket, waits for the answer, at most as long as Patience says, and closes the window. The
    // user is told that the ticket was sent even if that failed. The argument is not used.
    void senddata(const std::string& unused);

    // Calls FormInputs and discards the result. Nothing in the program calls it; it is part of the window's
    // interface.
    void parseform(const std::string& html);

  private:
    void CreateControls();
    void CreateFields();
    Ref<Dictionary<std::string>> Ticket() const;
};

}  // namespace varnith
