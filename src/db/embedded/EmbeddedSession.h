#pragma once

#include "FileIdentity.h"
#include "Provider.h"
#include "SqliteDatabase.h"

// A connection to one database file.
class EmbeddedSession : public Session {
public:
    // db is ready for statements; file is what it was opened from.
    EmbeddedSession(SqliteDatabase db, FileIdentity file);

    std::unique_ptr<Cursor> execute(const QString& sql) override;
    void requestStop() noexcept override;
    bool isOpen() const override { return !m_lost; }

private:
    void requireFile();
    std::unique_ptr<Cursor> run(std::string sql);

    SqliteDatabase m_db;
    FileIdentity m_file;
    bool m_lost = false; // the file is gone
};
