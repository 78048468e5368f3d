#include <QByteArray>
#include <cassert>
#include <sstream>

#include <fuzzer/FuzzedDataProvider.h>

#include "http/HTTPSocket.h"

static std::string Decoded(const std::string& field) {
    return QByteArray::fromPercentEncoding(QByteArray::fromStdString(field).replace('+', ' ')).toStdString();
}

// A server reads the same names and values from an encoded form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const auto form = varnith::MakeRef<varnith::Dictionary<std::string>>();
    while (input.remaining_bytes() > 0) {
        const std::string name = input.ConsumeRandomLengthString();
        form->SetValue(name, input.ConsumeRandomLengthString());
    }
    std::istringstream encoded(varnith::MakeRef<varnith::HTTPSocket>()->EncodeFormData(form));
    std::string name, value, rest;
    for (std::int32_t i = 0; i < form->Count(); ++i) {
        std::getline(std::getline(encoded, name, '='), value, '&');
        assert(Decoded(name) == form->Key(i) && Decoded(value) == form->Value(form->Key(i)));
    }
    assert(!std::getline(encoded, rest));
    return 0;
}
