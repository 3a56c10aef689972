#pragma once

#include "FunctionCall.h"

#include <memory>
#include <new>
#include <utility>

namespace ora {

// Registers a State as an aggregate that also works over windows. A State has step(Call&),
// inverse(Call&), which takes away what step added for the same arguments, and result(Call&), whose
// call has no arguments and which may be asked several times.
template<class State>
class Aggregate {
public:
    static void registerAs(sqlite3* database, const char* name, int arguments) {
        sqlite3_create_window_function(database, name, arguments, SQLITE_UTF8 | SQLITE_INNOCUOUS,
                                       nullptr, step, finish, value, inverse, nullptr);
    }

private:
    static State& stateOf(sqlite3_context* context) {
        auto** slot = static_cast<State**>(sqlite3_aggregate_context(context, sizeof(State*)));
        if (!slot)
            throw std::bad_alloc();
        if (!*slot)
            *slot = std::make_unique<State>().release(); // finish() takes it back
        return **slot;
    }

    static void step(sqlite3_context* context, int count, sqlite3_value** values) {
        guarded(context, [&] {
            Call call(context, count, values);
            stateOf(context).step(call);
        });
    }

    static void inverse(sqlite3_context* context, int count, sqlite3_value** values) {
        guarded(context, [&] {
            Call call(context, count, values);
            stateOf(context).inverse(call);
        });
    }

    static void value(sqlite3_context* context) {
        guarded(context, [&] {
            Call call(context, 0, nullptr);
            auto** slot = static_cast<State**>(sqlite3_aggregate_context(context, 0));
            if (slot && *slot)
                return (*slot)->result(call);
            State().result(call);
        });
    }

    static void finish(sqlite3_context* context) {
        value(context);
        auto** slot = static_cast<State**>(sqlite3_aggregate_context(context, 0));
        if (slot && *slot)
            std::unique_ptr<State>(std::exchange(*slot, nullptr));
    }
};

} // namespace ora
