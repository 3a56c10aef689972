#include "FunctionCall.h"

#include "AsciiText.h"
#include "NamedRow.h"
#include "OraError.h"
#include "SortKey.h"
#include "Types.h"

#include <QByteArray>
#include <QCryptographicHash>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace ora {

namespace {

template<int sign>
void extreme(Call& call) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < call.count(); ++i) {
        if (sign * compareValues(call.value(i), call.value(best)) > 0)
            best = i;
    }
    call.resultValue(call.value(best));
}

// Letters of the first argument: a and d ascending and descending, A and D with the nulls at the
// other end than the server puts them.
void sortKey(Call& call) {
    const std::string_view flags = call.text(0);
    std::string key;
    for (std::size_t i = 1; i < call.count(); ++i) {
        const char flag = i <= flags.size() ? flags[i - 1] : 'a';
        const bool descending = flag == 'd' || flag == 'D';
        const bool nullsFirst = flag == 'd' || flag == 'A';
        appendSortKey(key, call.value(i), descending, nullsFirst);
    }
    call.resultBytes(key);
}

// Each argument of the functions below stands behind its type.
constexpr std::size_t written(std::size_t index) {
    return 2 * index + 1;
}

SqlType typeArgument(Call& call) {
    return static_cast<SqlType>(sqlite3_value_int64(call.value(0)));
}

// The bits of a real number with the sign turned, so that bytes sort as the numbers do.
template<class Bits, class Real>
std::string sortableBytes(Real value) {
    Bits bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    constexpr Bits signBit = Bits{1} << (8 * sizeof(Bits) - 1);
    bits = (bits & signBit) != 0 ? Bits(~bits) : Bits(bits | signBit);
    std::string bytes;
    for (int shift = 8 * sizeof(Bits); (shift -= 8) >= 0;)
        bytes += static_cast<char>(bits >> shift & 0xFF);
    return bytes;
}

// The bytes that the server would keep of the first argument.
std::string storedBytes(Call& call) {
    sqlite3_value* const value = call.value(written(0));
    if (sqlite3_value_type(value) != SQLITE_FLOAT)
        return std::string(call.bytes(written(0)));
    const double real = sqlite3_value_double(value);
    return typeArgument(call) == SqlType::BinaryFloat
               ? sortableBytes<std::uint32_t>(static_cast<float>(real))
               : sortableBytes<std::uint64_t>(real);
}

int typeCode(SqlType type) {
    switch (type) {
    case SqlType::Number: return 2;
    case SqlType::Char:
    case SqlType::Nchar: return 96;
    case SqlType::Long: return 8;
    case SqlType::Date: return 12;
    case SqlType::Timestamp: return 180;
    case SqlType::TimestampTz: return 181;
    case SqlType::TimestampLocalTz: return 231;
    case SqlType::IntervalYearToMonth: return 182;
    case SqlType::IntervalDayToSecond: return 183;
    case SqlType::Raw: return 23;
    case SqlType::LongRaw: return 24;
    case SqlType::BinaryFloat: return 100;
    case SqlType::BinaryDouble: return 101;
    case SqlType::Rowid: return 69;
    case SqlType::Clob:
    case SqlType::Nclob: return 112;
    case SqlType::Blob: return 113;
    default: return 1;
    }
}

std::string dumpedByte(unsigned char byte, std::int64_t base) {
    constexpr std::int64_t Octal = 8;
    constexpr std::int64_t Hexadecimal = 16;
    constexpr std::int64_t Characters = 17;
    char text[8];
    if (base == Characters && byte >= ' ' && byte < 0x7F)
        return std::string(1, static_cast<char>(byte));
    const char* form = base == Octal                               ? "%o"
                       : base == Hexadecimal || base == Characters ? "%x"
                                                                   : "%d";
    std::snprintf(text, sizeof text, form, byte);
    return text;
}

// DUMP(value [, form [, first byte [, how many]]])
void dump(Call& call) {
    constexpr std::int64_t WithCharacterSet = 1000;
    if (call.isNull(written(0)))
        return call.resultText("NULL");
    const SqlType type = typeArgument(call);
    const std::string bytes = storedBytes(call);
    std::int64_t form = call.has(written(1)) ? call.integer(written(1)) : 10;
    std::string text =
        "Typ=" + std::to_string(typeCode(type)) + " Len=" + std::to_string(bytes.size());
    if (form >= WithCharacterSet) {
        form -= WithCharacterSet;
        if (familyOf(type) == TypeFamily::Text)
            text += " CharacterSet=AL32UTF8";
    }
    const auto size = static_cast<std::int64_t>(bytes.size());
    std::int64_t first = call.has(written(2)) ? call.integer(written(2)) : 1;
    first = std::clamp<std::int64_t>(first < 0 ? size + first : first - 1, 0, size);
    const std::int64_t count = std::clamp<std::int64_t>(
        call.has(written(3)) ? call.integer(written(3)) : size, 0, size - first);
    text += ": ";
    for (std::int64_t i = 0; i < count; ++i) {
        text += i == 0 ? "" : ",";
        text += dumpedByte(static_cast<unsigned char>(bytes[static_cast<std::size_t>(first + i)]),
                           form);
    }
    call.resultText(text);
}

void vsize(Call& call) {
    call.result(OracleNumber(static_cast<std::int64_t>(storedBytes(call).size())));
}

// Stable and evenly spread; the server does not publish its own function.
std::uint32_t hashOf(std::string_view bytes, std::int64_t seed) {
    constexpr std::uint64_t Prime = 1099511628211ULL;
    std::uint64_t hash = 14695981039346656037ULL ^ static_cast<std::uint64_t>(seed);
    for (const char c : bytes)
        hash = (hash ^ static_cast<unsigned char>(c)) * Prime;
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

// ORA_HASH(value [, highest bucket [, seed]])
void oraHash(Call& call) {
    constexpr std::int64_t MostBuckets = 4294967295;
    const std::int64_t highest = call.has(written(1)) ? call.integer(written(1)) : MostBuckets;
    const std::int64_t seed = call.has(written(2)) ? call.integer(written(2)) : 0;
    for (const std::int64_t argument : {highest, seed}) {
        if (argument < 0 || argument > MostBuckets)
            throw OraError(1428, "argument '" + std::to_string(argument) + "' is out of range");
    }
    const std::uint64_t hash = call.isNull(written(0)) ? 0 : hashOf(storedBytes(call), seed);
    call.result(OracleNumber(static_cast<std::int64_t>(hash % (highest + std::uint64_t{1}))));
}

struct HashMethod {
    std::string_view name;
    QCryptographicHash::Algorithm algorithm;
};

constexpr HashMethod hashMethods[] = {{"SHA1", QCryptographicHash::Sha1},
                                      {"SHA256", QCryptographicHash::Sha256},
                                      {"SHA384", QCryptographicHash::Sha384},
                                      {"SHA512", QCryptographicHash::Sha512},
                                      {"MD5", QCryptographicHash::Md5}};

void standardHash(Call& call) {
    const std::string name = call.has(written(1)) ? upperAscii(call.text(written(1))) : "SHA1";
    const std::string bytes = call.isNull(written(0)) ? std::string() : storedBytes(call);
    const HashMethod* const method = findNamed(hashMethods, name);
    if (!method)
        throw OraError(1760, "illegal argument for function");
    const QByteArray hash = QCryptographicHash::hash(
        QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())), method->algorithm);
    call.resultBytes(std::string_view(hash.constData(), static_cast<std::size_t>(hash.size())));
}

constexpr ScalarRow rows[] = {
    {"ora_greatest", -1, extreme<1>},
    {"ora_least", -1, extreme<-1>},
    {"ora_nvl", 2, [](Call& c) { c.resultValue(c.value(c.isNull(0) ? 1 : 0)); }, Nulls::Handled},
    {"sort_key", -1, sortKey, Nulls::Handled},
    {"ora_dump", -1, dump, Nulls::Handled},
    {"ora_vsize", 2, vsize},
    {"ora_hash", -1, oraHash, Nulls::Handled},
    {"ora_standard_hash", -1, standardHash, Nulls::Handled},
};

} // namespace

void registerValueFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
