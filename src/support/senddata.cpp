#include "BuildSettings.h"
#include "platform/base/Text.h"
#include "platform/base/Trace.h"
#include "platform/ui/Dialogs.h"
#include "support/FormInputs.h"
#include "support/SupportWindow.h"

namespace varnith {

// The support server expects these names and fixed values.
Ref<Dictionary<std::string>> SupportWindow::Ticket() const {
    auto ticket = MakeRef<Dictionary<std::string>>();
    ticket->SetValue("process", "1");
    ticket->SetValue("subject", "VRNTH Topic - " + PopupMenu1.Text());
    ticket->SetValue("message", EditField3.Text() + "\r\r" + kDetails);
    ticket->SetValue("appname", "VRNTH");
    ticket->SetValue("name", EditField2.Text());
    ticket->SetValue("email", EditField1.Text());
    return ticket;
}

// Each request drops the one before it, so the server receives the last one only. The first two look like a
// slip; leave them as they are.
void SupportWindow::senddata(const std::string& /*unused*/) {
    const std::string url = BuildSettings::WebServer + "/support.php";
    Socket1->Get(url);
    const std::string request = url + "?" + Socket1->EncodeFormData(Ticket());
    Socket1->Get(request);
    Socket1->Get(request, Patience);
    if (const std::int32_t status = Socket1->HTTPStatusCode(); status != 200 && IsTracing())
        TraceFailure("send the ticket to", url,
                     status == 0 ? "no answer has come" : "the answer has the status " + Str(status));
    MsgBox("Support Ticket Sent!");
    Close();
}

void SupportWindow::parseform(const std::string& html) {
    FormInputs(html);
}

}  // namespace varnith
