#pragma once

#include "FrameRows.h"
#include "FunctionCall.h"

#include <memory>
#include <new>
#include <string>
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

// Makes of a State one over the frame that each row brings along in its last arguments.
template<class State>
class FramedState {
public:
    void step(Call& call) { m_rows.add(call); }
    void inverse(Call&) { m_rows.leave(); }
    void result(Call& call) {
        const FrameRows::Range frame = m_rows.frame();
        if (frame.first < m_reached.first || frame.end < m_reached.end ||
            frame.first >= m_reached.end)
            startAt(frame.first);
        for (; m_reached.end < frame.end; ++m_reached.end) {
            Call row = call.with(m_rows.arguments(m_reached.end));
            m_state->step(row);
        }
        for (; m_reached.first < frame.first; ++m_reached.first) {
            Call row = call.with(m_rows.arguments(m_reached.first));
            m_state->inverse(row);
        }
        m_state->result(call);
    }

private:
    void startAt(std::size_t row) {
        m_state = std::make_unique<State>();
        m_reached = {row, row};
    }

    FrameRows m_rows;
    FrameRows::Range m_reached{0, 0}; // what m_state was made of
    std::unique_ptr<State> m_state = std::make_unique<State>();
};

// Registers name, and name_frame for windows that FrameRows finds.
template<class State>
void registerAggregate(sqlite3* database, const char* name, int arguments) {
    Aggregate<State>::registerAs(database, name, arguments);
    Aggregate<FramedState<State>>::registerAs(database, (std::string(name) + "_frame").c_str(),
                                              arguments + FrameRows::Bounds);
}

} // namespace ora
