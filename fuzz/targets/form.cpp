#include <cassert>

#include <fuzzer/FuzzedDataProvider.h>

#include "http/HTTPSocket.h"

// What a server reads where "&" and "=" can't be part of a name or a value. Throws for an incomplete escape.
static std::string Field(const std::string& encoded, std::size_t& place) {
    std::string field;
    for (; place < encoded.size() && encoded[place] != '&' && encoded[place] != '='; ++place) {
        const bool is_escape = encoded[place] == '%';
        const char plain = encoded[place] == '+' ? ' ' : encoded[place];
        field += is_escape ? static_cast<char>(std::stoi(encoded.substr(place + 1, 2), nullptr, 16)) : plain;
        if (is_escape) place += 2;
    }
    ++place;
    return field;
}

// A server reads the same names and values from an encoded form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const auto form = varnith::MakeRef<varnith::Dictionary<std::string>>();
    while (input.remaining_bytes() > 0) {
        const std::string name = input.ConsumeRandomLengthString();
        form->SetValue(name, input.ConsumeRandomLengthString());
    }
    const std::string encoded = varnith::MakeRef<varnith::HTTPSocket>()->EncodeFormData(form);
    std::size_t place = 0;
    for (std::int32_t i = 0; i < form->Count(); ++i) {
        assert(Field(encoded, place) == form->Key(i));
        assert(Field(encoded, place) == form->Value(form->Key(i)));
    }
    assert(form->Count() == 0 || place == encoded.size() + 1);
    return 0;
}
