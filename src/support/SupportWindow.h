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

// The form in which the user writes to the maker: address, name, topic and text. It goes out as a ticket,
// with a block of details about the system. Closing the window drops all that it holds.
class SupportWindow : public SingleWindow<SupportWindow> {
  public:
    SupportWindow();

    // What is told of the program and the system, a line each with a carriage return at its end. Composed
    // when the window opens, never shown, sent with the ticket.
    std::string kDetails;

    // How long the server may stay silent before the window waits for it no more, in seconds.
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
    // Enables "Send" while the three fields hold text. As nothing else does, the button may be a second late:
    // whoever presses it within that second sends a ticket without what was just deleted.
    void Timer1_Action();
    // "Send": refuses a text without an e-mail address in it, then tests the network by a look-up of a name,
    // which asks nothing of the support server, then sends.
    void PushButton1_Action();
    // "Close".
    void PushButton2_Action();
    // Pastes, and has then taken the key.
    bool EditField3_KeyDown(const std::string& key);

    // Sends the ticket, waits until the server has answered or the patience is at its end, and closes the
    // window. The user is told that it was sent whatever came of it. The argument is not used.
    void senddata(const std::string& unused);

    // Reads the inputs of a form into a map of its own, which it keeps to itself; see FormInputs. Nothing in
    // the program calls it: it is part of the window's interface.
    void parseform(const std::string& html);

  private:
    void CreateControls();
    void CreateFields();
    Ref<Dictionary<std::string>> Ticket() const;
};

}  // namespace varnith
