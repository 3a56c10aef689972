#include "OracleScript.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What single expressions of the server's dialect give, through the whole front end.
class tst_oracle_value : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    std::unique_ptr<OracleScript> m_database;

    static void columns() {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<QString>("outcome");
    }
    static void row(const char* expression, const char* outcome) {
        QTest::newRow(expression) << QString::fromUtf8(expression) << QString::fromUtf8(outcome);
    }
    void checkValue() {
        QFETCH(QString, expression);
        QFETCH(QString, outcome);
        QCOMPARE(m_database->run(u"select "_s + expression + u" from dual"_s), outcome);
    }

private Q_SLOTS:
    void initTestCase() {
        qputenv("QUILLMATE_HOME", m_home.path().toUtf8());
        m_database = std::make_unique<OracleScript>();
    }
    void cleanupTestCase() { m_database.reset(); }

    // Which type an argument must have, and when it is converted.
    void arguments_data() {
        columns();
        row("nvl(1, 'x')", "ORA-01722: invalid number");
        row("nvl('x', 1)", "x");
        row("coalesce(1, 'a')", "ORA-00932: inconsistent datatypes: expected NUMBER got CHAR");
        row("coalesce(null, 2, 1/0)", "2");
        row("nullif(1, '1')", "ORA-00932: inconsistent datatypes: expected NUMBER got CHAR");
        row("nullif(null, 1)", "ORA-00932: inconsistent datatypes: expected - got NUMBER");
        row("regexp_like('a', 'a')", "ORA-00904: \"REGEXP_LIKE\": invalid identifier");
        row("case when upper('a') then 1 end", "ORA-00920: invalid relational operator");
        row("rpad('x', 4000, 'x') || 'y'", "ORA-01489: result of string concatenation is too long");
        row("concat(rpad('x', 4000, 'x'), 'y')",
            "ORA-01489: result of string concatenation is too long");
        row("length(concat(to_clob(rpad('x', 4000, 'x')), 'y'))", "4001");
        row("2**3", "ORA-00936: missing expression");
        row("10 % 3", "ORA-00911: invalid character");
        row("cast(123 as varchar2(2))", "ORA-25137: Data value out of range");
        row("cast('123' as varchar2(2))", "12");
        row("chr(196 using nchar_cs) || translate('b' using char_cs)", "Äb");
        row("utl_raw.bit_and('0fff', 'f0'), utl_raw.bit_xor('0f', 'ff')", "00FF|F0");
        row("utl_raw.concat('ab', 'cd'), utl_raw.reverse('abcd')", "ABCD|CDAB");
        row("utl_raw.substr('abcdef', -2, 1)", "CD");
        row("utl_raw.substr('abcdef', 3, 2)", "ORA-06502: PL/SQL: numeric or value error");
        row("utl_raw.cast_to_number(utl_raw.cast_from_number(-123))", "-123");
        row("nls_upper('große', 'NLS_SORT = XGerman'), upper('große')", "GROSSE|GROßE");
        row("nls_initcap('ijs ij', 'NLS_SORT = XDutch'), nls_initcap('ijs')", "IJs IJ|Ijs");
        row("nls_lower('A', 'foo')",
            "ORA-12702: invalid NLS parameter string used in SQL function");
        row("to_lob(1), to_nclob('y'), rawtonhex('7D'), rawtonhex(hextoraw('7D'))", "1|y|3744|7D");
        row("utl_raw.cast_to_varchar2(utl_encode.base64_encode(utl_raw.cast_to_raw('abcd')))",
            "YWJjZA==");
        row("utl_encode.base64_decode(utl_raw.cast_to_raw('YWJjZA=='))", "61626364");
        row("utl_match.edit_distance('shackleford', 'shackelford')", "2");
        row("length2('€'), substr4('€u', 2, 1), instrc('€b', 'b')", "1|u|2");
        row("regexp_substr('a', 'a{2,1}')",
            "ORA-12732: invalid interval value in regular expression");
    }
    void arguments() { checkValue(); }

    // What is no number, infinite, of single precision, and what binary arguments give.
    void binaries_data() {
        columns();
        row("binary_double_infinity, -binary_double_infinity, binary_float_nan", "Inf|-Inf|Nan");
        row("case when binary_double_nan is nan then 'nan' end, case when 1d/0 is infinite then "
            "'inf' end, case when 1d is not nan then 'number' end",
            "nan|inf|number");
        row("case when binary_double_nan = binary_double_nan and binary_double_nan > 1e300d then "
            "'last' end",
            "last");
        row("nanvl(binary_double_nan, 7), nanvl(2d, 7)", "7|2");
        row("to_char(binary_double_nan), to_char(1.1d)", "Nan|1.1000000000000001E+000");
        row("sqrt(2d), to_binary_float(3.14) + 0, 3.14f + 0d",
            "1.4142135623730951|3.14|3.140000104904175");
        row("1f / 3, round(1f / 3, 2), to_char(1.1f), 'x' || 0.5f, coalesce(null, 1f / 3, 1d)",
            "0.33333334|0.33|1.10000002E+000|x5.0E-001|0.3333333432674408");
        row("convert('Ä Ê Í Õ Ø A B', 'US7ASCII', 'WE8ISO8859P1'), convert('Ä', 'AL32UTF8')",
            "A E I ? ? A B|Ä");
        row("dump(0.1f), dump(-2d), vsize(1f)",
            "Typ=100 Len=4: 189,204,204,205|Typ=101 Len=8: 63,255,255,255,255,255,255,255|4");
        row("sum(0.1f), avg(0.1d), max(0.1f)", "0.1|0.1|0.1");
    }
    void binaries() { checkValue(); }

    void words_data() {
        columns();
        row("sysdate()", "ORA-00923: FROM keyword not found where expected");
        row("length(dbms_random.string('X', 5)), sign(dbms_utility.get_time)", "5|1");
        row("compose('o' || unistr('\\0308')), length(decompose('ö'))", "ö|2");
        row("nlssort('Abc', 'NLS_SORT=BINARY_CI')", "61626300");
        row("case when nlssort('Äa', 'NLS_SORT=GERMAN') < nlssort('B', 'NLS_SORT=GERMAN') then 1 "
            "end",
            "1");
        row("to_char(numtodsinterval(90, 'minute')), 'x' || interval '1' day",
            "+000000000 01:30:00.000000000|x+01 00:00:00");
        row("to_char(timestamp '2020-01-01 12:00:00')", "01-JAN-20 12.00.00.000000000 PM");
        row("interval '30.12345' second(2,4)", "+00 00:00:30.1235");
    }
    void words() { checkValue(); }

    void dates_data() {
        columns();
        row("to_char(date '2024-02-29', 'FF')", "ORA-01821: date format not recognized");
        row("to_char(timestamp '2024-02-29 13:14:15.1234', 'FF FF2')", "123400000 12");
        row("to_char(cast(timestamp '2024-02-29 13:14:15.1234' as timestamp(3)), 'FF')", "123");
        row("extract(hour from date '2024-02-29')",
            "ORA-30076: invalid extract field for extract source");
        row("extract(hour from timestamp '2024-02-29 13:14:15')", "13");
        row("timestamp '2024-01-02 00:00:00' - timestamp '2024-01-01 12:00:00'",
            "+000000000 12:00:00.000000000");
        row("cast(date '2024-01-02' as timestamp(3)) - timestamp '2024-01-01 12:00:00'",
            "+000000000 12:00:00.000000000");
        row("interval '5' day", "+05 00:00:00");
        row("interval '90:30.5' minute to second", "+00 01:30:30.500000");
        row("trunc(date '2024-03-05', 'mm/yyyy')", "ORA-01898: too many precision specifiers");
        row("trunc(date '2024-03-05', 'fooo')", "ORA-01821: date format not recognized");
        row("interval '1' day + interval '12' hour", "+000000001 12:00:00.000000000");
        row("(date '2024-01-04' - date '2024-01-01') day(3) to second(0)", "+003 00:00:00");
        row("to_date('abc', 'YYYY')",
            "ORA-01841: (full) year must be between -4713 and +9999, and not be 0");
        row("to_date('2024-2-9', 'FXYYYY-MM-DD')",
            "ORA-01862: the numeric value does not match the length of the format item");
    }
    void dates() { checkValue(); }
};

QTEST_GUILESS_MAIN(tst_oracle_value)
#include "tst_oracle_value.moc"
