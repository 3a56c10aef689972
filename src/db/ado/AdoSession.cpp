#include "AdoSession.h"

#include "AdoValue.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>

#include <objbase.h>
#include <oleauto.h>

using namespace Qt::StringLiterals;

namespace {

// The server is gone; Oracle's own codes and the provider's "connection failure".
constexpr LONG lostCodes[] = {28, 1012, 3113, 3114, 3135, 12571};
constexpr HRESULT connectionFailure = HRESULT(0x80004004);

bool isLost(const AdoFailure& failure) {
    return failure.result == connectionFailure ||
           std::find(std::begin(lostCodes), std::end(lostCodes), failure.native) !=
               std::end(lostCodes);
}

class ArrayAccess {
public:
    explicit ArrayAccess(SAFEARRAY* array)
        : m_array(array) {
        requireSuccess(SafeArrayAccessData(array, reinterpret_cast<void**>(&values)));
    }
    ~ArrayAccess() { SafeArrayUnaccessData(m_array); }

    VARIANT* values = nullptr;

private:
    SAFEARRAY* m_array;
};

// The rows of a recordset, drawn in blocks as arrays of variants.
class AdoCursor : public Cursor {
public:
    AdoCursor(std::shared_ptr<AdoLink> link, AdoRecordset recordset)
        : m_link(std::move(link))
        , m_recordset(std::move(recordset)) {
        for (const AdoField& field : m_recordset->fields())
            m_columns.push_back({QString::fromStdWString(field.name), columnTypeOf(field.type)});
    }
    ~AdoCursor() override {
        m_link->thread.run([this] { m_recordset.reset(); });
    }

    const std::vector<Column>& columns() const override { return m_columns; }

    qsizetype fetch(CellStore& rows, qsizetype most) override {
        qsizetype fetched = 0;
        m_link->run([&] { fetched = take(rows, most); });
        return fetched;
    }

private:
    qsizetype take(CellStore& rows, qsizetype most) {
        if (m_columns.empty() || m_recordset->atEnd())
            return 0;
        Variant array;
        m_recordset->getRows(LONG(std::min<qsizetype>(most, blockRows)), array);
        LONG last = -1;
        requireSuccess(SafeArrayGetUBound(array.get().parray, 2, &last));
        const ArrayAccess access(array.get().parray);
        const VARIANT* value = access.values;
        for (LONG row = 0; row <= last; ++row) {
            for (size_t column = 0; column < m_columns.size(); ++column)
                appendValue(rows, *value++); // the fields of a row lie beside each other
            rows.endRow();
        }
        return qsizetype(last) + 1;
    }

    static constexpr qsizetype blockRows = 1000;

    std::shared_ptr<AdoLink> m_link;
    std::optional<AdoRecordset> m_recordset;
    std::vector<Column> m_columns;
};

} // namespace

ProviderError errorOf(const AdoFailure& failure) {
    static const QRegularExpression oracleCode(u"\\bORA-\\d{5}\\b"_s);
    const QString text = QString::fromStdWString(failure.description).trimmed();
    return ProviderError(failure.result, oracleCode.match(text).captured(),
                         QString::fromStdWString(failure.source), text);
}

AdoLink::AdoLink(const QString& connectionString) {
    const std::wstring text = connectionString.toStdWString();
    try {
        thread.run([&] {
            connection.emplace();
            connection->open(text);
        });
    } catch (...) {
        thread.run([this] { connection.reset(); });
        throw;
    }
}

AdoLink::~AdoLink() {
    thread.run([this] { connection.reset(); });
}

void AdoLink::run(const std::function<void()>& work) {
    try {
        thread.run(work);
    } catch (const AdoFailure& failure) {
        lost = lost || isLost(failure);
        throw errorOf(failure);
    }
}

std::unique_ptr<Cursor> AdoSession::execute(const QString& sql) {
    const auto most = LONG(std::min<qsizetype>(m_mostRows, std::numeric_limits<LONG>::max()));
    std::unique_ptr<Cursor> cursor;
    m_link->run([&] {
        cursor = std::make_unique<AdoCursor>(m_link,
                                             m_link->connection->execute(sql.toStdWString(), most));
    });
    return cursor;
}

// On a thread of its own: a provider may take its time to answer. Not on the connection's thread,
// which is busy with the statement; ADO's objects take this one call from everywhere.
void AdoSession::requestStop() noexcept {
    try {
        std::thread([link = m_link] {
            CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            link->connection->cancel();
            CoUninitialize();
        }).detach();
    } catch (const std::system_error&) {
        // The statement then ends by itself, or is given up.
    }
}
