#pragma once

#include <sqlite3.h>

#include <memory>

namespace ora {

struct ValueDeleter {
    void operator()(sqlite3_value* value) const { sqlite3_value_free(value); }
};

// A value kept past the call that brought it; may be empty.
class StoredValue : public std::unique_ptr<sqlite3_value, ValueDeleter> {
public:
    StoredValue() = default;
    explicit StoredValue(const sqlite3_value* value)
        : unique_ptr(sqlite3_value_dup(value)) {}
};

} // namespace ora
