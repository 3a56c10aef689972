// Asks the real ADO, or wine's, for its objects in the way the program does, without a server: that
// the interfaces have the right shape, that properties are taken and that failures come back as the
// program expects them.

#include "AdoConnection.h"

#include <objbase.h>

#include <cstdio>
#include <string>

namespace {

// ADO's "The connection cannot be used to perform this operation."
constexpr auto connectionIsClosed = HRESULT(0x800A0E7D);

int failures = 0;

void check(bool holds, const char* what) {
    std::printf("%s %s\n", holds ? "ok  " : "FAIL", what);
    failures += holds ? 0 : 1;
}

void anUnknownProviderFails() {
    AdoConnection connection;
    check(!connection.isOpen(), "a new connection is closed");
    try {
        connection.open(L"Provider=NoSuchProvider.1;Data Source=ORCL;Password=tiger;User ID=scott");
        check(false, "an unknown provider fails");
    } catch (const AdoFailure& failure) {
        check(FAILED(failure.result), "an unknown provider fails");
        check(!failure.description.empty(), "the failure says something");
        std::printf("     %08lx %ls\n", static_cast<unsigned long>(failure.result),
                    failure.description.c_str());
    }
    check(!connection.isOpen(), "the connection stays closed");
}

void aClosedConnectionRunsNothing() {
    AdoConnection connection;
    try {
        connection.execute(L"SELECT 1 FROM dual", 0);
        check(false, "a statement on a closed connection fails");
    } catch (const AdoFailure& failure) {
        check(failure.result == connectionIsClosed, "a statement on a closed connection fails");
        std::printf("     %08lx %ls\n", static_cast<unsigned long>(failure.result),
                    failure.description.c_str());
    }
}

} // namespace

int main() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    try {
        anUnknownProviderFails();
        aClosedConnectionRunsNothing();
    } catch (const AdoFailure& failure) {
        std::printf("FAIL no ADO here: %08lx %ls\n", static_cast<unsigned long>(failure.result),
                    failure.description.c_str());
        failures = 1;
    }
    CoUninitialize();
    return failures == 0 ? 0 : 1;
}
