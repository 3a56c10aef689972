#include "NumberFormat.h"
#include "NumberMath.h"
#include "OraError.h"
#include "OracleNumber.h"

#include <QtTest>

#include <gmp.h>

#include <random>

using ora::OracleNumber;

namespace {

OracleNumber number(const char* text) {
    return *OracleNumber::parse(text);
}

// The independent reference: whole numbers of any size, scaled by powers of ten.
class Whole {
public:
    Whole() { mpz_init(m_value); }
    explicit Whole(const std::string& digits) { mpz_init_set_str(m_value, digits.c_str(), 10); }
    Whole(const Whole& other) { mpz_init_set(m_value, other.m_value); }
    Whole& operator=(const Whole& other) {
        mpz_set(m_value, other.m_value);
        return *this;
    }
    ~Whole() { mpz_clear(m_value); }

    mpz_ptr get() { return m_value; }
    mpz_srcptr get() const { return m_value; }
    std::string digits() const {
        constexpr std::size_t SignAndEnd = 2;
        std::string text(mpz_sizeinbase(m_value, 10) + SignAndEnd, '\0');
        mpz_get_str(text.data(), 10, m_value);
        return text.c_str();
    }
    static Whole powerOfTen(unsigned exponent) {
        Whole result;
        mpz_ui_pow_ui(result.m_value, 10, exponent);
        return result;
    }

private:
    mpz_t m_value;
};

// mantissa x 10^exponent
struct Reference {
    Whole mantissa;
    int exponent = 0;
};

Reference reference(const OracleNumber& value) {
    std::string text = value.cellText();
    const auto point = text.find('.');
    int exponent = 0;
    if (point != std::string::npos) {
        exponent = -static_cast<int>(text.size() - point - 1);
        text.erase(point, 1);
    }
    return {Whole(text), exponent};
}

// Rounded to twenty base-100 digits, half away from zero, written as a cell.
std::string rounded(const Whole& mantissa, int exponent) {
    std::string text = mantissa.digits();
    if (text == "0")
        return text;
    const bool negative = text.front() == '-';
    text.erase(0, negative ? 1 : 0);
    // An odd number of digits before a place of even weight leaves the first pair half empty.
    const int top = static_cast<int>(text.size()) + exponent; // digits before the point
    const std::size_t keep = (top & 1) != 0 ? 39 : 40;
    bool up = false;
    if (text.size() > keep) {
        up = text[keep] >= '5';
        exponent += static_cast<int>(text.size() - keep);
        text.resize(keep);
    }
    Whole result(text);
    if (up)
        mpz_add_ui(result.get(), result.get(), 1);
    const std::string written =
        (negative ? "-" : "") + result.digits() + "E" + std::to_string(exponent);
    return number(written.c_str()).cellText();
}

std::string referenceSum(const OracleNumber& a, const OracleNumber& b, int sign) {
    Reference x = reference(a);
    Reference y = reference(b);
    const int exponent = std::min(x.exponent, y.exponent);
    mpz_mul(x.mantissa.get(), x.mantissa.get(), Whole::powerOfTen(x.exponent - exponent).get());
    mpz_mul(y.mantissa.get(), y.mantissa.get(), Whole::powerOfTen(y.exponent - exponent).get());
    Whole sum;
    if (sign > 0)
        mpz_add(sum.get(), x.mantissa.get(), y.mantissa.get());
    else
        mpz_sub(sum.get(), x.mantissa.get(), y.mantissa.get());
    return rounded(sum, exponent);
}

std::string referenceProduct(const OracleNumber& a, const OracleNumber& b) {
    const Reference x = reference(a);
    const Reference y = reference(b);
    Whole product;
    mpz_mul(product.get(), x.mantissa.get(), y.mantissa.get());
    return rounded(product, x.exponent + y.exponent);
}

std::string referenceQuotient(const OracleNumber& a, const OracleNumber& b) {
    constexpr unsigned Guard = 130; // digits past what is kept; cutting there cannot change a tie
    Reference x = reference(a);
    const Reference y = reference(b);
    mpz_mul(x.mantissa.get(), x.mantissa.get(), Whole::powerOfTen(Guard).get());
    Whole quotient;
    mpz_tdiv_q(quotient.get(), x.mantissa.get(), y.mantissa.get());
    return rounded(quotient, x.exponent - y.exponent - static_cast<int>(Guard));
}

// The mantissa of a value that has `places` decimal digits; half is added before the cut to round.
Whole referenceCut(const OracleNumber& a, int places, bool rounds) {
    Reference x = reference(a);
    const int surplus = -x.exponent - places;
    if (surplus <= 0) {
        const Whole scale = Whole::powerOfTen(unsigned(-surplus));
        mpz_mul(x.mantissa.get(), x.mantissa.get(), scale.get());
        return x.mantissa;
    }
    const Whole scale = Whole::powerOfTen(unsigned(surplus));
    Whole half;
    mpz_tdiv_q_ui(half.get(), scale.get(), 2);
    const auto addHalf = a.isNegative() ? mpz_sub : mpz_add;
    if (rounds)
        addHalf(x.mantissa.get(), x.mantissa.get(), half.get());
    mpz_tdiv_q(x.mantissa.get(), x.mantissa.get(), scale.get());
    return x.mantissa;
}

std::string referenceModulo(const OracleNumber& a, const OracleNumber& b) {
    Reference x = reference(a);
    Reference y = reference(b);
    const int exponent = std::min(x.exponent, y.exponent);
    mpz_mul(x.mantissa.get(), x.mantissa.get(), Whole::powerOfTen(x.exponent - exponent).get());
    mpz_mul(y.mantissa.get(), y.mantissa.get(), Whole::powerOfTen(y.exponent - exponent).get());
    Whole rest;
    mpz_tdiv_r(rest.get(), x.mantissa.get(), y.mantissa.get());
    return rounded(rest, exponent);
}

std::string referenceRoot(const OracleNumber& a) {
    constexpr int Guard = 100; // digits past what is kept
    Reference x = reference(a);
    const int odd = x.exponent & 1;
    const Whole scale = Whole::powerOfTen(unsigned(2 * Guard + odd));
    mpz_mul(x.mantissa.get(), x.mantissa.get(), scale.get());
    mpz_sqrt(x.mantissa.get(), x.mantissa.get());
    return rounded(x.mantissa, (x.exponent - odd) / 2 - Guard);
}

std::string referencePower(const OracleNumber& base, unsigned exponent) {
    const Reference x = reference(base);
    Whole power;
    mpz_pow_ui(power.get(), x.mantissa.get(), exponent);
    return rounded(power, x.exponent * static_cast<int>(exponent));
}

// The mantissa as digits with a point before the last `places` ones.
std::string withPoint(const Whole& mantissa, int places) {
    std::string digits = mantissa.digits();
    const bool negative = digits.front() == '-';
    digits.erase(0, negative ? 1 : 0);
    const std::size_t least = static_cast<std::size_t>(places) + 1;
    if (digits.size() < least)
        digits.insert(0, least - digits.size(), '0');
    if (places > 0)
        digits.insert(digits.size() - static_cast<std::size_t>(places), 1, '.');
    return (negative ? "-" : "") + digits;
}

// Numbers of all lengths, with runs of 0 and 9 that make carries, near each other and far apart.
class Randoms {
public:
    OracleNumber next() {
        const int length = std::uniform_int_distribution(1, 40)(m_engine);
        std::string text = m_engine() % 2 == 0 ? "" : "-";
        for (int i = 0; i < length; ++i)
            text += digit();
        const bool far = m_engine() % 4 == 0; // products stay below 1E126
        const int exponent =
            std::uniform_int_distribution(far ? -60 : -12, far ? 20 : 12)(m_engine);
        return number((text + "E" + std::to_string(exponent)).c_str());
    }

private:
    char digit() {
        switch (m_engine() % 4) {
        case 0: return '0';
        case 1: return '9';
        case 2: return '5';
        default: return static_cast<char>('0' + m_engine() % 10);
        }
    }
    std::mt19937 m_engine{20261121};
};

std::string failure(OracleNumber (*action)()) {
    try {
        return action().cellText();
    } catch (const ora::OraError& error) {
        return error.message();
    }
}

} // namespace

class TestOracleNumber : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void arithmetic_agrees_with_gmp();
    void whole_numbers_agree_with_gmp();
    void rounding_agrees_with_gmp();
    void functions_agree_with_gmp();
    void formats_agree_with_gmp();
    void bytes_keep_the_order();
    void stored_form_data();
    void stored_form();
    void text_data();
    void text();
    void texts_that_are_no_numbers_data();
    void texts_that_are_no_numbers();
    void rounding_data();
    void rounding();
    void columns_data();
    void columns();
    void integers();
    void functions_data();
    void functions();
    void failures();
};

void TestOracleNumber::arithmetic_agrees_with_gmp() {
    constexpr int Operations = 20000;
    Randoms randoms;
    for (int i = 0; i < Operations; ++i) {
        const OracleNumber a = randoms.next();
        const OracleNumber b = randoms.next();
        const std::string what = a.cellText() + " and " + b.cellText();
        QVERIFY2((a + b).cellText() == referenceSum(a, b, 1), what.c_str());
        QVERIFY2((a - b).cellText() == referenceSum(a, b, -1), what.c_str());
        QVERIFY2((a * b).cellText() == referenceProduct(a, b), what.c_str());
        if (!b.isZero())
            QVERIFY2((a / b).cellText() == referenceQuotient(a, b), what.c_str());
    }
}

// The 64-bit way through small values and its edges.
void TestOracleNumber::whole_numbers_agree_with_gmp() {
    constexpr int Operations = 50000;
    std::mt19937_64 engine(1);
    for (int i = 0; i < Operations; ++i) {
        const auto x = static_cast<std::int64_t>(engine()) >> engine() % 64;
        const auto y = static_cast<std::int64_t>(engine()) >> engine() % 64;
        const OracleNumber a(x);
        const OracleNumber b(y);
        const std::string what = std::to_string(x) + " and " + std::to_string(y);
        QVERIFY2(a.cellText() == std::to_string(x) && a.exactInteger() == x, what.c_str());
        QVERIFY2((a + b).cellText() == referenceSum(a, b, 1), what.c_str());
        QVERIFY2((a - b).cellText() == referenceSum(a, b, -1), what.c_str());
        QVERIFY2((a * b).cellText() == referenceProduct(a, b), what.c_str());
        QCOMPARE(a < b, x < y);
        QCOMPARE(a == b, x == y);
        if (y != 0 && x != INT64_MIN)
            QCOMPARE(ora::math::modulo(a, b).toInteger(), x % y);
    }
}

void TestOracleNumber::rounding_agrees_with_gmp() {
    constexpr int Operations = 20000;
    Randoms randoms;
    std::mt19937 engine(2);
    for (int i = 0; i < Operations; ++i) {
        const OracleNumber a = randoms.next();
        const int places = std::uniform_int_distribution(-30, 30)(engine);
        const std::string what = a.cellText() + " to " + std::to_string(places);
        const auto cut = [&](bool rounds) {
            return rounded(referenceCut(a, places, rounds), -places);
        };
        QVERIFY2(a.rounded(places).cellText() == cut(true), what.c_str());
        QVERIFY2(a.truncated(places).cellText() == cut(false), what.c_str());
    }
}

void TestOracleNumber::functions_agree_with_gmp() {
    constexpr int Operations = 3000;
    constexpr int HighestPower = 12;
    Randoms randoms;
    std::mt19937 engine(3);
    for (int i = 0; i < Operations; ++i) {
        const OracleNumber a = randoms.next();
        const OracleNumber b = randoms.next();
        const std::string what = a.cellText() + " and " + b.cellText();
        if (!b.isZero())
            QVERIFY2(ora::math::modulo(a, b).cellText() == referenceModulo(a, b), what.c_str());
        QVERIFY2(ora::math::squareRoot(a.absolute()).cellText() == referenceRoot(a.absolute()),
                 what.c_str());
        const auto exponent = engine() % HighestPower;
        const OracleNumber base = number((std::to_string(int(engine() % 2000000) - 1000000) + "E-" +
                                          std::to_string(engine() % 9))
                                             .c_str());
        const std::string powered = base.cellText() + " to the power " + std::to_string(exponent);
        if (!base.isZero())
            QVERIFY2(ora::math::power(base, OracleNumber(exponent)).cellText() ==
                         referencePower(base, unsigned(exponent)),
                     powered.c_str());
    }
}

// TO_CHAR and TO_NUMBER with as many decimal digits as the model says.
void TestOracleNumber::formats_agree_with_gmp() {
    constexpr int Operations = 5000;
    constexpr int MostPlaces = 12;
    const OracleNumber limit = number("1E19");
    Randoms randoms;
    std::mt19937 engine(4);
    for (int i = 0; i < Operations; ++i) {
        const OracleNumber a = randoms.next();
        const int places = static_cast<int>(engine() % MostPlaces);
        const Whole mantissa = referenceCut(a, places, true);
        if (a.absolute() > limit || mantissa.digits() == "0")
            continue;
        const std::string model = "FM99999999999999999990" + (places > 0 ? "." : std::string()) +
                                  std::string(static_cast<std::size_t>(places), '0');
        const auto format = ora::NumberFormat::parse(model);
        const std::string text = withPoint(mantissa, places);
        QCOMPARE(format.toText(a), text);
        QCOMPARE(format.toNumber(text).cellText(), a.rounded(places).cellText());
    }
}

void TestOracleNumber::bytes_keep_the_order() {
    constexpr int Pairs = 20000;
    Randoms randoms;
    for (int i = 0; i < Pairs; ++i) {
        const OracleNumber a = randoms.next();
        const OracleNumber b = randoms.next();
        const int order = (a - b).sign();
        const int bytes = a.bytes().compare(b.bytes());
        QCOMPARE(order < 0, bytes < 0);
        QCOMPARE(order == 0, bytes == 0);
        QVERIFY(*OracleNumber::parse(a.cellText()) == a);
        QVERIFY(a.negated().negated() == a);
    }
}

void TestOracleNumber::stored_form_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("zero") << QByteArray("0") << QByteArray("80");
    QTest::newRow("one") << QByteArray("1") << QByteArray("c102");
    QTest::newRow("minus one ends with 102") << QByteArray("-1") << QByteArray("3e6466");
    QTest::newRow("trailing zeros vanish") << QByteArray("100") << QByteArray("c202");
    QTest::newRow("half a pair") << QByteArray("0.5") << QByteArray("c033");
    QTest::newRow("123.45") << QByteArray("123.45") << QByteArray("c202182e");
    QTest::newRow("a full negative has no end")
        << QByteArray("-1234567890123456789012345678901234567890")
        << QByteArray("2b59432d170b59432d170b59432d170b59432d170b");
}

void TestOracleNumber::stored_form() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, bytes);
    const OracleNumber value = number(text.constData());
    const QByteArray stored(reinterpret_cast<const char*>(value.data()),
                            static_cast<qsizetype>(value.size()));
    QCOMPARE(stored.toHex(), bytes);
    QVERIFY(OracleNumber::fromBytes(stored.constData(), value.size()) == value);
}

void TestOracleNumber::text_data() {
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("cell");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char* input, const char* cell, const char* text) {
        QTest::newRow(input) << QByteArray(input) << QByteArray(cell) << QByteArray(text);
    };
    row("0", "0", "0");
    row("-0.0", "0", "0");
    row(" +007.50 ", "7.5", "7.5");
    row(".5", "0.5", ".5");
    row("-.05", "-0.05", "-.05");
    row("5.", "5", "5");
    row("1e3", "1000", "1000");
    row("12E-3", "0.012", ".012");
    row("1234567890.123456789", "1234567890.123456789", "1234567890.123456789");
    row("1e39", "1000000000000000000000000000000000000000",
        "1000000000000000000000000000000000000000");
    row("1e40", "10000000000000000000000000000000000000000",
        "1.0000000000000000000000000000000000E+40");
    row("99999999999999999999999999999999999999999", "100000000000000000000000000000000000000000",
        "1.0000000000000000000000000000000000E+41");
    row("1e-131", "0", "0");
}

void TestOracleNumber::text() {
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, cell);
    QFETCH(QByteArray, text);
    QCOMPARE(QByteArray::fromStdString(number(input.constData()).cellText()), cell);
    QCOMPARE(QByteArray::fromStdString(number(input.constData()).text()), text);
}

void TestOracleNumber::texts_that_are_no_numbers_data() {
    QTest::addColumn<QByteArray>("text");
    for (const char* text : {"", " ", "-", ".", "1.2.3", "1e", "e5", "1e+", "12a", "0x1F", "1,5",
                             "--1", "1 2", "inf", "nan"})
        QTest::newRow(text) << QByteArray(text);
}

void TestOracleNumber::texts_that_are_no_numbers() {
    QFETCH(QByteArray, text);
    QVERIFY(!OracleNumber::parse(text.toStdString()));
}

void TestOracleNumber::rounding_data() {
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("places");
    QTest::addColumn<QByteArray>("rounded");
    QTest::addColumn<QByteArray>("truncated");
    const auto row = [](const char* input, int places, const char* rounded, const char* truncated) {
        QTest::addRow("%s at %d", input, places)
            << QByteArray(input) << places << QByteArray(rounded) << QByteArray(truncated);
    };
    row("45.926", 2, "45.93", "45.92");
    row("45.923", 1, "45.9", "45.9");
    row("45.923", -1, "50", "40");
    row("45.923", -2, "0", "0");
    row("55", -2, "100", "0");
    row("99.95", 1, "100", "99.9");
    row("995", -1, "1000", "990");
    row("0.5", 0, "1", "0");
    row("-0.5", 0, "-1", "0");
    row("0.05", 1, "0.1", "0");
    row("0.0049", 2, "0", "0");
    row("-2.5", 0, "-3", "-2");
    row("5", 300, "5", "5");
    row("5", -300, "0", "0");
}

void TestOracleNumber::rounding() {
    QFETCH(QByteArray, input);
    QFETCH(int, places);
    QFETCH(QByteArray, rounded);
    QFETCH(QByteArray, truncated);
    const OracleNumber value = number(input.constData());
    QCOMPARE(QByteArray::fromStdString(value.rounded(places).cellText()), rounded);
    QCOMPARE(QByteArray::fromStdString(value.truncated(places).cellText()), truncated);
}

void TestOracleNumber::columns_data() {
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("precision");
    QTest::addColumn<int>("scale");
    QTest::addColumn<QByteArray>("stored");
    const auto row = [](const char* name, const char* input, int precision, int scale,
                        const char* stored) {
        QTest::newRow(name) << QByteArray(input) << precision << scale << QByteArray(stored);
    };
    const char* tooLarge =
        "ORA-01438: value larger than specified precision allowed for this column";
    row("fits after rounding", "99999.994", 7, 2, "99999.99");
    row("rounding makes it too long", "99999.995", 7, 2, tooLarge);
    row("negative scale", "123456", 4, -2, "123500");
    row("scale above precision", "0.00012", 2, 5, "0.00012");
    row("too few zeros after the point", "0.0012", 2, 5, tooLarge);
    row("no precision", "1e125", 0, 0, "1e125");
}

void TestOracleNumber::columns() {
    QFETCH(QByteArray, input);
    QFETCH(int, precision);
    QFETCH(int, scale);
    QFETCH(QByteArray, stored);
    std::string result;
    try {
        const OracleNumber value = number(input.constData()).fitted(precision, scale);
        result = value == number("1e125") ? "1e125" : value.cellText();
    } catch (const ora::OraError& error) {
        result = error.message();
    }
    QCOMPARE(QByteArray::fromStdString(result), stored);
}

void TestOracleNumber::integers() {
    QCOMPARE(number("9223372036854775807").exactInteger(), INT64_MAX);
    QCOMPARE(number("-9223372036854775808").exactInteger(), INT64_MIN);
    QVERIFY(!number("9223372036854775808").exactInteger());
    QVERIFY(!number("1.5").exactInteger());
    QCOMPARE(number("-1.9").toInteger(), -1);
    QCOMPARE(number("1e30").toInteger(), INT64_MAX);
    QVERIFY(OracleNumber::fromDouble(0.1) == number("0.1"));
    QCOMPARE(number("-0.1").toDouble(), -0.1);
}

// Digits of well-known values, from tables.
void TestOracleNumber::functions_data() {
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("expected");
    using namespace ora::math;
    const auto row = [](const char* name, const OracleNumber& value, const char* expected) {
        QTest::newRow(name) << QByteArray::fromStdString(value.cellText()) << QByteArray(expected);
    };
    const OracleNumber one(1);
    row("e", exp(one), "2.71828182845904523536028747135266249776");
    row("ln 10", ln(number("10")), "2.3025850929940456840179914546843642076");
    row("root of 2", squareRoot(number("2")), "1.41421356237309504880168872420969807857");
    row("root of a square", squareRoot(number("15241578750190521")), "123456789");
    row("pi", atan(one) * number("4"), "3.1415926535897932384626433832795028842");
    row("pi by acos", acos(number("-1")), "3.1415926535897932384626433832795028842");
    row("sin 1", sin(one), "0.8414709848078965066525023216302989996226");
    row("cos 1", cos(one), "0.5403023058681397174009366074429766037323");
    row("sin of many turns", sin(number("1000")), "0.8268795405320025602558874291092181412127");
    row("tan 1", tan(one), "1.55740772465490223050697480745836017309");
    row("sinh 1", sinh(one), "1.17520119364380145688238185059560081516");
    row("log of a power", log(number("2"), number("1024")), "10");
    row("power with a fraction", power(number("2"), number("0.5")),
        "1.41421356237309504880168872420969807857");
    row("power of a negative", power(number("-2"), number("-3")), "-0.125");
    row("power too small", power(number("10"), number("-140")), "0");
    row("mod keeps the dividend's sign", modulo(number("-11.5"), number("4")), "-3.5");
    row("mod by zero", modulo(number("11"), number("0")), "11");
    row("mod of a long quotient", modulo(number("1e60"), number("7")), "1");
    row("remainder rounds the quotient", remainder(number("11"), number("4")), "-1");
    row("remainder takes the even half", remainder(number("14"), number("4")), "-2");
    row("a third", one / number("3"), "0.3333333333333333333333333333333333333333");
    row("two thirds", number("2") / number("3"), "0.6666666666666666666666666666666666666667");
    row("ten thirds", number("10") / number("3"), "3.33333333333333333333333333333333333333");
}

void TestOracleNumber::functions() {
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, expected);
    QCOMPARE(value, expected);
}

void TestOracleNumber::failures() {
    QCOMPARE(failure([] { return number("1") / number("0"); }),
             std::string("ORA-01476: divisor is equal to zero"));
    QCOMPARE(failure([] { return number("9e125") + number("9e125"); }),
             std::string("ORA-01426: numeric overflow"));
    QCOMPARE(failure([] { return number("1e100") * number("1e26"); }),
             std::string("ORA-01426: numeric overflow"));
    QCOMPARE(failure([] { return number("1e-100") * number("1e-31"); }), std::string("0"));
    QCOMPARE(failure([] { return ora::math::squareRoot(number("-1")); }),
             std::string("ORA-01428: argument '-1' is out of range"));
    QCOMPARE(failure([] { return ora::math::ln(number("0")); }),
             std::string("ORA-01428: argument '0' is out of range"));
    QCOMPARE(failure([] { return ora::math::exp(number("1000")); }),
             std::string("ORA-01426: numeric overflow"));
    QCOMPARE(
        failure([] { return ora::math::sin(number("1e100")); }), // never ends by its series
        std::string("ORA-01428: argument '1.0000000000000000000000000000000000E+100' is out of "
                    "range"));
    QCOMPARE(failure([] { return number("1") / OracleNumber::fromBytes("\xC1\x01", 2); }),
             std::string("ORA-01476: divisor is equal to zero")); // damaged: no first digit
    QCOMPARE(failure([] { return number("1e126"); }), std::string("ORA-01426: numeric overflow"));
}

QTEST_APPLESS_MAIN(TestOracleNumber)
#include "tst_oracle_number.moc"
