#include "DatabaseLogin.h"

#include <QMessageAuthenticationCode>
#include <QRandomGenerator>

#include <array>

namespace {

constexpr int saltWords = 4;
constexpr int rounds = 1000; // a few milliseconds at each connect

QByteArray newSalt() {
    std::array<quint32, saltWords> words;
    QRandomGenerator::system()->fillRange(words.data(), saltWords);
    return {reinterpret_cast<const char*>(words.data()), qsizetype(sizeof words)};
}

// The first block of PBKDF2 with HMAC-SHA-256 (RFC 8018, 5.2).
QByteArray passwordHash(const QString& password, const QByteArray& salt) {
    const QByteArray key = password.toUtf8();
    const QByteArray blockOne("\0\0\0\1", 4);
    QByteArray last =
        QMessageAuthenticationCode::hash(salt + blockOne, key, QCryptographicHash::Sha256);
    QByteArray sum = last;
    for (int round = 1; round < rounds; ++round) {
        last = QMessageAuthenticationCode::hash(last, key, QCryptographicHash::Sha256);
        for (qsizetype i = 0; i < sum.size(); ++i)
            sum[i] = char(sum[i] ^ last[i]);
    }
    return sum;
}

std::string folded(const QString& user) {
    return user.trimmed().toUpper().toStdString();
}

std::string_view view(const QByteArray& bytes) {
    return {bytes.constData(), size_t(bytes.size())};
}

QByteArray blob(const SqliteStatement& statement, int column) {
    return {static_cast<const char*>(sqlite3_column_blob(statement.get(), column)),
            sqlite3_column_bytes(statement.get(), column)};
}

bool knowsLogins(const SqliteDatabase& db) {
    SqliteStatement find = db.prepare("SELECT 1 FROM main.sqlite_schema WHERE name = ?1");
    return find.bind(1, loginTable).step();
}

} // namespace

void createLogin(const SqliteDatabase& db, const QString& user, const QString& password) {
    const std::string table = quotedName(loginTable);
    db.run("CREATE TABLE IF NOT EXISTS " + table +
           " (name TEXT PRIMARY KEY, salt BLOB, hash BLOB)");
    const QByteArray salt = newSalt();
    SqliteStatement insert = db.prepare("INSERT OR REPLACE INTO " + table + " VALUES (?1, ?2, ?3)");
    insert.bind(1, folded(user)).bindBlob(2, view(salt));
    insert.bindBlob(3, view(passwordHash(password, salt))).step();
}

bool mayLogIn(const SqliteDatabase& db, const QString& user, const QString& password) {
    if (!knowsLogins(db))
        return true;
    SqliteStatement find =
        db.prepare("SELECT salt, hash FROM " + quotedName(loginTable) + " WHERE name = ?1");
    if (!find.bind(1, folded(user)).step())
        return false;
    return passwordHash(password, blob(find, 0)) == blob(find, 1);
}
