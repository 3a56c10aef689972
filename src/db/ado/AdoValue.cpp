#include "AdoValue.h"

#include "PlainText.h"

#include <QByteArray>
#include <QLocale>
#include <QString>

#include <cmath>
#include <cstdio>

#include <oleauto.h>

namespace {

// DataTypeEnum, as far as it is not text.
struct TypeRow {
    LONG dataType;
    ColumnType type;
};

constexpr TypeRow types[] = {
    {2, ColumnType::Number},   // adSmallInt
    {3, ColumnType::Number},   // adInteger
    {4, ColumnType::Number},   // adSingle
    {5, ColumnType::Number},   // adDouble
    {6, ColumnType::Number},   // adCurrency
    {7, ColumnType::Date},     // adDate
    {14, ColumnType::Number},  // adDecimal
    {16, ColumnType::Number},  // adTinyInt
    {17, ColumnType::Number},  // adUnsignedTinyInt
    {18, ColumnType::Number},  // adUnsignedSmallInt
    {19, ColumnType::Number},  // adUnsignedInt
    {20, ColumnType::Number},  // adBigInt
    {21, ColumnType::Number},  // adUnsignedBigInt
    {128, ColumnType::Binary}, // adBinary
    {131, ColumnType::Number}, // adNumeric
    {133, ColumnType::Date},   // adDBDate
    {135, ColumnType::Date},   // adDBTimeStamp
    {139, ColumnType::Number}, // adVarNumeric
    {204, ColumnType::Binary}, // adVarBinary
    {205, ColumnType::Binary}, // adLongVarBinary
};

constexpr LCID invariantLocale = 0x007F;

QByteArray utf8(BSTR text) {
    return QString::fromWCharArray(text, qsizetype(SysStringLen(text))).toUtf8();
}

QByteArray dateText(DATE date) {
    SYSTEMTIME time;
    // Days since 1899; rounding to the second first keeps 23:59:59.9999 from becoming a minute of
    // 60 seconds.
    constexpr double secondsOfDay = 86400;
    const double rounded = std::round(date * secondsOfDay) / secondsOfDay;
    if (!VariantTimeToSystemTime(rounded, &time))
        return {};
    char text[32];
    const int length =
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth,
                      time.wDay, time.wHour, time.wMinute, time.wSecond);
    return plainDate(QByteArrayView(text, length)).toByteArray();
}

QByteArray binaryText(const VARIANT& value) {
    void* bytes = nullptr;
    LONG last = -1;
    if (FAILED(SafeArrayGetUBound(value.parray, 1, &last)) ||
        FAILED(SafeArrayAccessData(value.parray, &bytes)))
        return {};
    const QByteArray text =
        QByteArray(static_cast<const char*>(bytes), qsizetype(last) + 1).toHex().toUpper();
    SafeArrayUnaccessData(value.parray);
    return text;
}

// Every other type has a text of its own in OLE Automation; a number's is made plain.
QByteArray automationText(const VARIANT& value) {
    Variant text;
    // Some headers take the source for something to write to.
    auto* source = const_cast<VARIANT*>(&value);
    if (FAILED(VariantChangeTypeEx(text.out(), source, invariantLocale, 0, VT_BSTR)))
        return {};
    return plainNumber(utf8(text.get().bstrVal));
}

QByteArray textOf(const VARIANT& value) {
    switch (value.vt) {
    case VT_BSTR: return utf8(value.bstrVal);
    case VT_DATE: return dateText(value.date);
    case VT_BOOL: return value.boolVal == VARIANT_FALSE ? "0" : "1";
    case VT_R8:
        return plainNumber(QByteArray::number(value.dblVal, 'g', QLocale::FloatingPointShortest));
    case VT_R4:
        return plainNumber(
            QByteArray::number(double(value.fltVal), 'g', QLocale::FloatingPointShortest));
    case VT_ARRAY | VT_UI1: return binaryText(value);
    default: return automationText(value);
    }
}

} // namespace

ColumnType columnTypeOf(LONG dataType) {
    for (const TypeRow& row : types) {
        if (row.dataType == dataType)
            return row.type;
    }
    return ColumnType::Text;
}

void appendValue(CellStore& rows, const VARIANT& value) {
    if (value.vt == VT_NULL || value.vt == VT_EMPTY) {
        rows.appendNull();
        return;
    }
    const QByteArray text = textOf(value);
    rows.append(text.constData(), text.size());
}
