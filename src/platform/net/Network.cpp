#include "platform/net/Network.h"

#include "platform/net/NameLookup.h"
#include "platform/threads/Scheduler.h"
#include "platform/threads/Waiting.h"

namespace varnith {

std::string Network::LookupIPAddress(const std::string& name) {
    const NameLookup lookup(name);
    while (!lookup.Done()) {
        WaitBriefly(lookup.Descriptor(), false);
        Yield();
    }
    return lookup.Addresses().empty() ? "" : lookup.Addresses().front();
}

}  // namespace varnith
