// SPDX-License-Identifier: MIT
// What every call keeps to, over all calls of the check.
#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

template <Breach breach>
void neverHappened(CCheck& check) {
    for (const std::string& what : check.breaches().of(breach)) {
        check.expect(false, what);
    }
}

constexpr Claim textTable[] = {
    {"messages keep to 256 bytes", neverHappened<Breach::Message>},
    {"values keep to 256 bytes", neverHappened<Breach::Value>},
    {"names keep to 256 bytes", neverHappened<Breach::Name>},
    {"choices keep to 256 bytes", neverHappened<Breach::Choice>},
    {"attributes keep to 256 bytes", neverHappened<Breach::Attribute>},
    {"texts are UTF-8", neverHappened<Breach::NotUtf8>},
    {"a value comes without a message", neverHappened<Breach::NeedlessMessage>},
    {"every result is 0 or 1", neverHappened<Breach::Result>},
};

// For a check of these alone: most texts there are.
void readAll(CCheck& check) {
    if (check.isClosed()) {
        return;
    }
    CHostCalls& host = check.host();
    const std::string longKey(400, 'x');
    host.get(longKey);
    host.set(longKey, longKey);
    host.execute(longKey);
    for (const std::string& key : check.keys()) {
        host.get(key);
        host.type(key);
        host.choice(key, 0);
        host.attribute(key, 1);
    }
    for (std::int32_t i = 0; i < longestList && host.name(i).isDone(); ++i) {
    }
}

}  // namespace

ClaimGroup textClaims() {
    return {"All calls", textTable, readAll};
}

}  // namespace camhost
