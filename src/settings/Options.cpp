#include "Options.h"

#include "AtomicFile.h"
#include "Error.h"
#include "Text.h"
#include "modFunctions.h"

#include <QStringList>

#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

OptionsRecord& Options() {
    static OptionsRecord options;
    return options;
}

namespace {

QString fileText(const OptionsRecord& options) {
    const QString limit =
        options.RecordLimit == 0 ? QString() : QString::number(options.RecordLimit);
    const QString crlf = u"\r\n"_s;
    return u"OutputResults|"_s + options.OutputResults + crlf + u"ShowResults|"_s +
           QString::number(options.ShowResults) + crlf + u"ShowEP|"_s +
           QString::number(options.ShowEP) + crlf + u"QueryTemplate|"_s + options.QueryTemplate +
           crlf + u"RecordLimit|"_s + limit + crlf + u"ColourCodeScript|"_s +
           QString::number(options.ColourCodeScript) + crlf;
}

// Lines end at CR LF; a lone LF or CR ends one too, for files that another editor has saved.
QStringList linesOf(QString content) {
    content.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n');
    QStringList lines = content.split(u'\n');
    if (lines.last().isEmpty())
        lines.removeLast(); // what follows the last line end is no line
    return lines;
}

QString valueOf(const QString& line) {
    return line.mid(line.indexOf(u'|') + 1);
}

qint16 toInt16(double number) {
    const qint32 rounded = roundHalfEven(number);
    if (rounded < std::numeric_limits<qint16>::min() ||
        rounded > std::numeric_limits<qint16>::max())
        throw Error(Error::Overflow, QString(), u"Overflow"_s);
    return qint16(rounded);
}

// The strict conversion: a whole decimal number and nothing else but blanks around it.
qint16 strictInteger(const QString& value, const QString& key) {
    bool isNumber = false;
    const double number = trimBlanks(value).toDouble(&isNumber);
    if (!isNumber)
        throw Error(Error::TypeMismatch, QString(),
                    u"Type mismatch: the value '%1' of %2 in Options.DAT is not a number."_s.arg(
                        value, key));
    return toInt16(number);
}

void loadLine(OptionsRecord& options, int number, const QString& value) {
    switch (number) {
    case 1: options.OutputResults = value; break;
    case 2:
        options.ShowResults = OptionsRecord().ShowResults;
        options.ShowResults = strictInteger(value, u"ShowResults"_s);
        break;
    case 3:
        options.ShowEP = OptionsRecord().ShowEP;
        options.ShowEP = strictInteger(value, u"ShowEP"_s);
        break;
    case 4: options.QueryTemplate = value; break;
    case 5: options.RecordLimit = roundHalfEven(leadingNumber(value)); break;
    case 6: options.ColourCodeScript = toInt16(leadingNumber(value)); break;
    default: break; // lines beyond the sixth are ignored
    }
}

void createDefaults(const QString& path) {
    try {
        Save_Options(OptionsRecord(), path);
    } catch (const Error&) {
        // A folder that cannot be written: the defaults hold for this run.
    }
}

} // namespace

void Load_Options(OptionsRecord& options, const QString& path) {
    QByteArray content = Read_Whole_File(path);
    if (isUnreadable(content)) {
        createDefaults(path);
        content = Read_Whole_File(path);
        if (isUnreadable(content))
            return;
    }
    std::optional<Error> firstError;
    int number = 0;
    for (const QString& line : linesOf(QString::fromUtf8(content))) {
        try {
            loadLine(options, ++number, valueOf(line));
        } catch (const Error& error) {
            if (!firstError)
                firstError = error;
        }
    }
    if (firstError)
        throw *firstError;
}

void Save_Options(const OptionsRecord& options, const QString& path) {
    Write_Whole_File(path, fileText(options).toUtf8());
}
