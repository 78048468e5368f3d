#include <fuzzer/FuzzedDataProvider.h>

#include "Exchange.h"

// In whatever pieces an answer comes and however its connection ends, the client tells all of it: the head,
// the body, and once the end. Part of a head has no end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool is_reset = input.ConsumeBool();
    varnith::Exchange exchange([&input] { return input.ConsumeBool(); });
    do {
        exchange.Send(input.ConsumeRandomLengthString());
        if (input.ConsumeIntegralInRange(0, 15) == 15) exchange.Begin();
    } while (input.remaining_bytes() > 0 || !exchange.HasBegun());
    exchange.End(is_reset);

    bool has_gap = false, is_told = false;
    for (const std::string gap : {"\r\n\r\n", "\n\n", "\r\r"}) {
        has_gap = has_gap || exchange.sent.find(gap) != std::string::npos;
        is_told = is_told || ("<" + exchange.sent == exchange.head + gap + exchange.body &&
                              exchange.pages == "<" + exchange.body);
    }
    assert(has_gap ? is_told : exchange.head.empty() && exchange.pages == (exchange.sent.empty() ? "<" : ""));
    return 0;
}
