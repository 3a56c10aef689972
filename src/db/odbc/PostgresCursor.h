#pragma once

#include "OdbcRows.h"

#include <condition_variable>
#include <exception>
#include <future>
#include <limits>
#include <mutex>
#include <optional>

// The rows of a statement of PostgreSQL through a cursor in a transaction of its own, so that the
// driver never holds more than a few small parts of the result: one that is read and those that
// are fetched meanwhile on a thread of their own.
class PostgresCursor : public Cursor {
public:
    // Runs the statement; most: at most so many rows will be fetched, 0 for all. Null, with nothing
    // done, when it has to run without a cursor: it is none of the kinds that can be declared, the
    // user has begun a transaction, or the server refuses the declaration. Throws ProviderError.
    static std::unique_ptr<Cursor> open(const std::shared_ptr<OdbcLink>& link, const QString& sql,
                                        qsizetype most);
    ~PostgresCursor() override;

    const std::vector<Column>& columns() const override { return m_columns; }
    qsizetype fetch(CellStore& rows, qsizetype most) override;

    // Reads the rest into memory and ends the transaction, so that another statement can have the
    // connection. What fails is thrown by a later fetch.
    void keepRest();

private:
    PostgresCursor(std::shared_ptr<OdbcLink> link, qsizetype most);

    // A part of the result: what one FETCH brings.
    struct Part {
        OdbcRows rows;
        qsizetype asked = 0;
        bool isBound = false;
    };

    bool begin();
    bool declare(const QString& sql);
    void firstPart();
    void run(const OdbcHandle& statement, const QString& sql);
    void fetchPart(Part& part);
    bool isLast(const Part& part) const;
    void fetchAhead() noexcept;
    bool waitForRoom();
    void noteArrival(bool isLast);
    void endTransaction();
    void leaveServer();
    bool nextPart();
    qsizetype rowsOfNextPart();
    qsizetype fetchParts(CellStore& rows, qsizetype most);
    qsizetype fetchKept(CellStore& rows, qsizetype most);

    static constexpr int partCount = 4;

    std::shared_ptr<OdbcLink> m_link;
    OdbcHandle m_control; // what is no part of the rows runs on it
    Part m_parts[partCount];
    int m_current = 0; // the part that is read
    qsizetype m_left;  // rows that may still be asked for

    std::mutex m_mutex; // of all up to m_ahead
    std::condition_variable m_changed;
    int m_arrived = 0;            // parts behind the current one
    bool m_allArrived = false;    // or failed
    bool m_wanted = true;         // whether more is
    std::exception_ptr m_failure; // of the first part that did not arrive
    qsizetype m_bytesSoFar = 0;   // of texts read, to size the next part
    qsizetype m_rowsSoFar = 0;
    std::future<void> m_ahead;

    std::vector<Column> m_columns;
    bool m_inTransaction = false;
    bool m_atEnd = true;             // or never begun, or failed
    std::optional<CellStore> m_kept; // the rest, after keepRest
    qsizetype m_nextKept = 0;
    std::exception_ptr m_keptFailure;
};
