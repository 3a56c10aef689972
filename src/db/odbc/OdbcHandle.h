#pragma once

#include "OdbcApi.h"

#include <utility>

// Owns one handle of the driver manager; null when none was given.
class OdbcHandle {
public:
    OdbcHandle() = default;
    // A handle of the type below its parent (SQL_NULL_HANDLE for an environment). Null after a
    // failure: the parent's diagnostics tell why.
    OdbcHandle(SQLSMALLINT type, SQLHANDLE parent)
        : m_type(type) {
        if (!SQL_SUCCEEDED(SQLAllocHandle(type, parent, &m_handle)))
            m_handle = SQL_NULL_HANDLE;
    }
    OdbcHandle(OdbcHandle&& other) noexcept
        : m_type(other.m_type)
        , m_handle(std::exchange(other.m_handle, SQLHANDLE(SQL_NULL_HANDLE))) {}
    OdbcHandle& operator=(OdbcHandle&& other) noexcept {
        std::swap(m_type, other.m_type);
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~OdbcHandle() {
        if (m_handle != SQL_NULL_HANDLE)
            SQLFreeHandle(m_type, m_handle);
    }

    SQLSMALLINT type() const { return m_type; }
    SQLHANDLE get() const { return m_handle; }
    explicit operator bool() const { return m_handle != SQL_NULL_HANDLE; }

private:
    SQLSMALLINT m_type = SQL_HANDLE_ENV;
    SQLHANDLE m_handle = SQL_NULL_HANDLE;
};
