#pragma once

#include "Error.h"
#include "Host.h"

#include <new>

// The handler at the top of an event: runs the body, and hands an error to the error report with
// the procedure's name ("..MDIMain.New_Query") behind its source. False when it did.
template<typename Body>
bool trapErrors(Host& host, QStringView procedure, Body&& body) {
    const auto report = [&](Error error) {
        error.trailed(procedure);
        host.showError(QString::number(error.number()), error.source(), error.description());
        return false;
    };
    try {
        body();
        return true;
    } catch (const Error& error) {
        return report(error);
    } catch (const std::bad_alloc&) {
        return report(Error(Error::OutOfMemory, QString(), QStringLiteral("Out of memory")));
    }
}
