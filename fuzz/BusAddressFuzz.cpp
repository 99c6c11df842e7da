// Addresses of buses from the environment, and what answers there.

#include "Target.h"
#include "platform/BusGreeting.h"
#include "platform/BusProbe.h"

using namespace korvale;

namespace {

/// Whether asking that address could reach a program of this machine.
bool mayReachSomebody(const QByteArray& address) {
    return QByteArray::fromPercentEncoding(address).contains("dbus");
}

} // namespace

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::addresses;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input = QByteArrayView(data, static_cast<qsizetype>(size)).toByteArray();
    for (const QByteArray& entry : input.split(';')) {
        for (const char* key : {"path", "abstract", "guid", ""}) {
            const QByteArray value = busAddressValue(entry, key);
            fuzz::require(value.size() <= entry.size());
            fuzz::taken += value.isEmpty() ? 0U : 1U;
        }
    }
    // An answer that was taken for one stays one, whatever follows.
    for (qsizetype length = 0; length < input.size(); ++length) {
        fuzz::require(!isGreetingAnswered(input.first(length)) || isGreetingAnswered(input));
    }
    if (!mayReachSomebody(input)) {
        const BusProbe probe(input);
        // Nobody is there: what has no socket to ask is taken on trust, the rest is absent.
        fuzz::require(probe.state() != BusProbe::State::Asking);
    }
    return 0;
}
