#pragma once

#include <QString>

// The texts of the output modes, stored in the options file and compared with it. The misspelling
// and the missing blank are the program's own.
namespace OutputMode {
inline const QString Grid = QStringLiteral("Grid");
inline const QString Text = QStringLiteral("Comma Seperated Values(CSV)");
inline const QString File = QStringLiteral("File");
} // namespace OutputMode

struct OptionsRecord {
    QString OutputResults = OutputMode::Grid;
    qint16 ShowResults = 1;      // 1 or 0
    qint16 ShowEP = 0;           // 1 or 0
    QString QueryTemplate;       // may hold line breaks, which shift the lines after it in the file
    qint32 RecordLimit = 0;      // 0: none
    qint16 ColourCodeScript = 1; // 1: colour, anything else: not
};

// The one record that new query windows read.
OptionsRecord& Options();

// Fills the record from the file by line number; the keys are not looked at. A file that cannot be
// read is created with the defaults first; when that fails too (a read-only folder) the record
// keeps its values and nothing is reported. Fields whose lines are missing keep their values.
// Throws Error (TypeMismatch, Overflow) for a bad value on lines 2 or 3, after all other lines were
// loaded; the bad fields then hold their defaults and the file is not touched.
void Load_Options(OptionsRecord& options, const QString& path);

// Replaces the file whole. Throws Error when it cannot be written.
void Save_Options(const OptionsRecord& options, const QString& path);
