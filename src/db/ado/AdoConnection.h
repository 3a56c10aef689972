#pragma once

#include "ComTypes.h"

#include <string>
#include <vector>

// ADO as the program uses it, without the toolkit. Every member belongs to one thread with
// a COM apartment of its own; cancel may be called from another.

// A call that failed. native: the provider's own code, 0 for none.
struct AdoFailure {
    HRESULT result = S_OK;
    LONG native = 0;
    std::wstring source;
    std::wstring description;
};

struct AdoField {
    std::wstring name;
    LONG type = 0; // DataTypeEnum
};

// The rows of one statement, in a client-side, forward-only recordset.
class AdoRecordset {
public:
    explicit AdoRecordset(ComPtr<ado::Recordset> recordset);
    AdoRecordset(AdoRecordset&&) = default;
    ~AdoRecordset();

    // Empty for a statement without rows. Throws AdoFailure.
    std::vector<AdoField> fields() const;
    bool atEnd() const;
    // A two-dimensional array of variants, [field][row], of at most so many rows; the walk goes on
    // behind them. Throws AdoFailure.
    void getRows(LONG most, Variant& array);

private:
    bool isOpen() const;

    ComPtr<ado::Recordset> m_recordset;
};

class AdoConnection {
public:
    // Creates the object. Throws AdoFailure when ADO is not installed.
    AdoConnection();
    ~AdoConnection();

    // The text as it stands, provider included. Throws AdoFailure with the provider's own error.
    void open(const std::wstring& connectionString);
    bool isOpen() const;
    // Runs a statement. mostRows: more than 0 limits the recordset. Throws AdoFailure.
    AdoRecordset execute(const std::wstring& sql, LONG mostRows);
    void cancel() noexcept;

private:
    void require(HRESULT result);

    ComPtr<ado::Connection> m_connection;
};

// Throws AdoFailure with what COM knows of the failed call.
void requireSuccess(HRESULT result);
