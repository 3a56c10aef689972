#include "FunctionDatabase.h"
#include "FunctionTable.h"
#include "FunctionTableRows.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

void addRow(const char* expression, const char* result) {
    QTest::newRow(expression) << QString::fromUtf8(expression) << QString::fromUtf8(result);
}

QString chosen(std::string_view name, std::initializer_list<ora::SqlType> arguments) {
    try {
        const std::vector<ora::SqlType> types(arguments);
        const auto* entry = ora::findFunction(name, types);
        return entry ? QString::fromLatin1(entry->sqliteName) : u"unknown"_s;
    } catch (const ora::OraError& error) {
        return QString::fromStdString(error.message());
    }
}

QString operation(char symbol, ora::SqlType left, ora::SqlType right) {
    try {
        const auto choice = ora::findOperator(symbol, left, right);
        return QString::fromLatin1(choice.sqliteName) + (choice.swapped ? u" swapped"_s : u""_s);
    } catch (const ora::OraError& error) {
        return QString::fromStdString(error.message());
    }
}

} // namespace

class TestFunctions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void scalars_data();
    void scalars();
    void patterns_data();
    void patterns();
    void aggregates_data();
    void aggregates();
    void sums_forget_what_leaves();
    void windows();
    void sort_keys_order();
    void table_is_registered();
    void overloads();
    void operators();
    void errors_come_back();

private:
    FunctionDatabase m_database;
};

void TestFunctions::scalars_data() {
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("result");
    // Numbers
    addRow("sn(num_add(n('.1'), n('.2')))", "0.3");
    addRow("sn(num_div(n('7'), n('2')))", "3.5");
    addRow("num_div(n('1'), n('0'))", "ORA-01476: divisor is equal to zero");
    addRow("num_add(NULL, n('1'))", "(null)");
    addRow("sn(ora_width_bucket(n('35'), n('0'), n('100'), n('10')))", "4");
    addRow("sn(ora_width_bucket(n('100'), n('100'), n('0'), n('10')))", "1");
    addRow("sn(ora_bitand(n('6'), n('3')))", "2");
    addRow("num_int(n('-1.9'))", "-1");
    addRow("double_div(1.0, 0.0) > 1e300", "1");
    // Finding and cutting
    addRow("ora_substr('TechOnTheNet', n('-8'), n('2'))", "On");
    addRow("ora_substr('abc', n('0'), n('2'))", "ab");
    addRow("ora_substr('abc', n('4'))", "(null)");
    addRow("ora_substr('abc', n('-4'))", "(null)");
    addRow("ora_substr('abc', n('2'), n('0'))", "(null)");
    addRow("ora_substr('1234567', n('3.6'), n('2.6'))", "34");
    addRow("ora_substr('Grüße', n('3'), n('2'))", "üß");
    addRow("ora_substrb('ABC', n('2'), n('1'))", "B");
    addRow("sn(ora_instr('Tech on the net', 'e', n('-3'), n('2')))", "2");
    addRow("sn(ora_instr('abcabcabc', 'abca', n('1'), n('2')))", "4");
    addRow("sn(ora_instr('abcabcabc', 'abca', n('-9')))", "1");
    addRow("sn(ora_instr('abcabcabc', 'abca', n('-10')))", "0");
    addRow("sn(ora_instr('ab', 'b', n('0')))", "0");
    addRow("sn(ora_instr('Grüße', 'e'))", "5");
    addRow("ora_instr('abc', 'b', n('1'), n('0'))", "ORA-01428: argument '0' is out of range");
    addRow("sn(ora_length('Grüße')), sn(ora_lengthb('Grüße'))", "5,7");
    addRow("ora_length(NULL)", "(null)");
    addRow("text_concat('a', NULL, 'b')", "ab");
    addRow("text_concat(NULL, NULL)", "(null)");
    addRow("sn(ora_ascii('A')), sn(ora_ascii('é'))", "65,50089");
    addRow("ora_chr(n('65')), ora_chr(n('50089')), ora_nchr(n('233'))", "A,é,é");
    addRow("ora_unistr('\\00e9\\\\'), ora_asciistr('é€x')", "é\\,\\00E9\\20ACx");
    // Shape
    addRow("ora_upper('straße é'), ora_lower('ÀB')", "STRAßE É,àb");
    addRow("ora_initcap('hello WORLD o''neil 3rd')", "Hello World O'Neil 3rd");
    addRow("ora_lpad('7', n('3'), '0'), ora_rpad('ab', n('5'), '*-'), ora_lpad('abc', n('2'))",
           "007,ab*-*,ab");
    addRow("ora_lpad('x', n('0')), ora_lpad('x', n('3'), NULL)", "(null),(null)");
    addRow("ora_ltrim('xyxabcxy', 'xy'), ora_rtrim('abc  ')", "abcxy,abc");
    addRow("ora_ltrim('xx', 'x')", "(null)");
    addRow("ora_trim('0012300', '0', 'L'), ora_trim('0012300', '0', 'T'), ora_trim(' a ')",
           "12300,00123,a");
    addRow("ora_trim('a', 'ab', 'B')", "ORA-30001: trim set should have only one character");
    addRow(
        "ora_replace('abcabc', 'b'), ora_replace('abc', NULL, 'x'), ora_replace('aXa', 'a', 'é')",
        "acac,abc,éXé");
    addRow("ora_translate('2KRW229', '0123456789ABCKRW', '9999999999XXXXXX')", "9XXX999");
    addRow("ora_translate('a-b-c', 'ab-', 'AB')", "ABc");
    addRow("ora_soundex('Robert'), ora_soundex('Ashcraft'), ora_soundex('12')", "R163,A261,(null)");
    addRow("ora_reverse('abé')", "éba");
    // Nulls and comparison
    addRow("sn(ora_greatest(n('9'), n('10'), n('-3'))), ora_least('b', 'a', 'B')", "10,B");
    addRow("ora_greatest('a', NULL)", "(null)");
    // Dates
    addRow("sd(ora_sysdate()), sd(ora_systimestamp(n('2')))",
           "2026-11-21 14:05:09,2026-11-21 14:05:09.12");
    addRow("sd(date_add(d('2026-11-21'), n('1.5')))", "2026-11-22 12:00:00");
    addRow("sn(date_sub(d('2026-11-22 12:00:00'), d('2026-11-21')))", "1.5");
    addRow("sd(ora_next_day(d('2026-11-21'), 'saturday'))", "2026-11-28");
    addRow("ora_next_day(d('2026-11-21'), 'someday')", "ORA-01846: not a valid day of the week");
    addRow("sn(ora_extract(d('2026-11-21 14:05:09.5'), 'SECOND'))", "9.5");
    addRow("ora_extract(d('2026-11-21'), 'WEEK')",
           "ORA-30076: invalid extract field for extract source");
    addRow("sd(ora_new_time(d('2026-11-21 12:00:00'), 'EST', 'GMT'))", "2026-11-21 17:00:00");
    addRow("ss(ts_sub(d('2026-11-21 12:00:00.5'), d('2026-11-21')))", "+00 12:00:00.500000");
    addRow("sd(date_add_ds(d('2026-11-21'), ora_numtodsinterval(n('90'), 'minute')))",
           "2026-11-21 01:30:00");
    addRow("sd(date_add_ym(d('2026-11-21'), ora_to_yminterval('1-2')))", "2028-01-21");
    addRow("sy(ym_mul(ora_to_yminterval('1-6'), n('1.5')))", "+02-03");
    // Conversion
    addRow("num_text(n('-0.5')), cell_text(n('-0.5'))", "-.5,-0.5");
    addRow("text_num('1x')", "ORA-01722: invalid number");
    addRow("ora_to_char_number(n('1234.5'), '9,999.99')", " 1,234.50");
    addRow("ora_to_char_number(n('1'), NULL)", "(null)");
    addRow("date_text(d('2026-11-21'))", "21-NOV-26");
    addRow("ts_text(d('2026-11-21 14:05:09.5'))", "21-NOV-26 02.05.09.500000 PM");
    addRow("sd(text_date('21-NOV-26'))", "2026-11-21");
    addRow("sd(ora_to_date('12/2026', 'MM/YYYY'))", "2026-12-01");
    addRow("sd(ora_to_timestamp('10:11:12.25', 'HH24:MI:SS.FF'))", "2026-11-01 10:11:12.25");
    addRow("double_text(0.1), double_text(-1500.0)", "1.0000000000000001E-001,-1.5E+003");
    addRow("ora_rawtohex(ora_hextoraw('abc')), ora_rawtohex('AZ')", "0ABC,415A");
    addRow("ora_hextoraw('xy')", "ORA-01465: invalid hex number");
    // Columns
    addRow("sn(num_fit(n('12.345'), 4, 2))", "12.35");
    addRow("text_fit('abcdef', 5, 'B', 0, '\"S\".\"T\".\"C\"')",
           "ORA-12899: value too large for column \"S\".\"T\".\"C\" (actual: 6, maximum: 5)");
    addRow("text_fit('ü', 3, 'B', 1, '') || '|', text_fit('ü', 3, 'C', 1, '') || '|'", "ü |,ü  |");
    addRow("text_cast('abcdef', 3, 0), text_cast('a', 3, 1) || '|'", "abc,a  |");
    // Session and values
    addRow("ora_user(), ora_sys_context('userenv', 'session_user')", "SCOTT,SCOTT");
    addRow("ora_sys_context('USERENV', 'NONSENSE')", "ORA-02003: invalid USERENV parameter");
    addRow("length(ora_sys_guid()), ora_sys_guid() <> ora_sys_guid()", "16,1");
    addRow("ora_dump(1, n('1')), ora_dump(4, 'abc', 1, n('16'))",
           "Typ=2 Len=2: 193,2,Typ=1 Len=3: 61,62,63");
    addRow("ora_dump(4, 'abc', 1, n('17'), 1, n('2'), 1, n('1')), ora_dump(1, NULL)",
           "Typ=1 Len=3: b,NULL");
    addRow("ora_hash(1, n('5'), 1, n('3'), 1, n('1')) = ora_hash(1, n('5'), 1, n('3'), 1, n('1'))",
           "1");
    addRow("ora_rawtohex(ora_standard_hash(4, 'abc', 4, 'MD5'))",
           "900150983CD24FB0D6963F7D28E17F72");
    addRow("ora_raw_to_text(ora_text_to_raw('Jürgen')), sn(ora_raw_length(ora_text_to_raw('ü')))",
           "Jürgen,2");
    addRow("ora_lob_substr('abcdef', n('2'), n('3')), sn(ora_bin_to_num(n('1'), n('0'), n('1')))",
           "cd,5");
    addRow("length(ora_random_string('x', n('9'))), typeof(ora_random_value(n('2'), n('3')))",
           "9,blob");
    addRow("ora_random_value(n('2'), n('3')) BETWEEN n('2') AND n('3')", "1");
    addRow("seq_next('S.Q')", "ORA-02289: sequence does not exist");
}

void TestFunctions::scalars() {
    QFETCH(QString, expression);
    QFETCH(QString, result);
    QCOMPARE(m_database.value(expression), result);
}

void TestFunctions::patterns_data() {
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("result");
    addRow("text_like('Smith', 'S%h'), text_like('smith', 'S%h'), text_like('Smith', 'S__th')",
           "1,0,1");
    addRow("text_like('a%c', 'a\\%c', '\\'), text_like('abc', 'a\\%c', '\\')", "1,0");
    addRow("text_like('xaxbxc', '%a%b%c'), text_like('xaxb', '%a%b%c'), text_like('é', '_')",
           "1,0,1");
    addRow("text_like('a', 'a', 'ab')",
           "ORA-01425: escape character must be character string of length 1");
    addRow("text_like('a', 'a\\b', '\\')",
           "ORA-01424: missing or illegal character following the escape character");
    addRow("ora_regexp_like('Steven', '^Ste(v|ph)en$'), ora_regexp_like('STEVEN', 'steven', 'i')",
           "1,1");
    addRow("ora_regexp_like('a' || char(10) || 'd', 'a.d'), "
           "ora_regexp_like('a' || char(10) || 'd', 'a.d', 'n')",
           "0,1");
    addRow("ora_regexp_like('a' || char(10), 'a$')", "0"); // $ is the very end
    addRow("ora_regexp_like('b\\', '[\\]')", "1");
    addRow("ora_regexp_like('x', 'x', 'q')", "ORA-01760: illegal argument for function");
    addRow("ora_regexp_like('x', '(x')", "ORA-12725: unmatched parentheses in regular expression");
    addRow("ora_regexp_like('x', '[x')", "ORA-12726: unmatched bracket in regular expression");
    addRow("sn(ora_regexp_count('123123123123', '123', n('3'), 'i'))", "3");
    addRow("sn(ora_regexp_instr('1234567890', '(123)(4(56)(78))', n('1'), n('1'), n('0'), 'i', "
           "n('4')))",
           "7");
    addRow("sn(ora_regexp_instr('500 Oracle Parkway', '[^ ]+', n('1'), n('2'), n('1')))", "11");
    addRow("ora_regexp_substr('a,b,,d', '[^,]+', n('1'), n('3'))", "d");
    addRow("ora_regexp_substr('1234567890', '(123)(4(56)(78))', n('1'), n('1'), 'i', n('3'))",
           "56");
    addRow("ora_regexp_substr('abc', 'x')", "(null)");
    addRow("ora_regexp_substr('abc', 'b', n('0'))", "ORA-01428: argument '0' is out of range");
    addRow("ora_regexp_replace('512.123.4567', '([[:digit:]]{3})\\.([[:digit:]]{3})\\.([[:digit:]]"
           "{4})', '(\\1) \\2-\\3')",
           "(512) 123-4567");
    addRow("ora_regexp_replace('aaa', 'a', 'b', n('1'), n('2'))", "aba");
    addRow("ora_regexp_replace('a b  c', '( ){2,}', ' '), ora_regexp_replace('abc', NULL, 'x')",
           "a b c,abc");
    addRow("ora_regexp_replace('😀x😀', 'x', 'y', n('2')), sn(ora_regexp_instr('😀x', 'x'))", "😀y😀,2");
}

void TestFunctions::patterns() {
    scalars();
}

void TestFunctions::aggregates_data() {
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("result");
    addRow("sn(num_sum(x)), sn(num_avg(x)), sn(num_sum(DISTINCT x))", "16,4,13");
    addRow("sn(num_sum(x)) FROM (SELECT NULL x)", "(null)");
    addRow("sn(ora_median(x)), sn(ora_percentile_cont(x, n('.25'), 0)), "
           "sn(ora_percentile_disc(x, n('.5'), 1))",
           "3,2.5,3");
    addRow("sn(ora_variance(x)), sn(ora_var_pop(x)), sn(ora_stddev_pop(x)), sn(ora_stddev(x))",
           "12,9,3,3.46410161513775458705489268301174473389");
    addRow("sn(ora_stddev(x)), ora_stddev_samp(x) FROM (SELECT n('5') x)", "0,(null)");
    addRow("sn(ora_corr(x, y)), sn(ora_regr_slope(y, x)), sn(ora_regr_intercept(y, x)), "
           "sn(ora_regr_r2(y, x)), sn(ora_covar_pop(x, y))",
           "1,2,1,1,18");
    addRow("ora_corr(x, x) FROM (SELECT n('5') x)", "(null)");
    addRow("ora_listagg(t, '-', sort_key('d', x))", "d-b-c-a");
    addRow("ora_listagg_distinct(ora_substr(t, n('2')), '-'), ora_wm_concat(t)", "(null),a,b,c,d");
    addRow("sn(keep_sum(y, sort_key('a', x))), sn(keep_count(y, sort_key('D', x))), "
           "keep_max(t, sort_key('a', ora_mod(x, n('3'))))",
           "3,1,d");
    addRow("sn(ora_stats_mode(x))", "3");
    addRow("sn(ora_rank_within(sort_key('a', x), sort_key('a', n('3')))), "
           "sn(ora_dense_rank_within(sort_key('a', x), sort_key('a', n('5')))), "
           "sn(ora_percent_rank_within(sort_key('a', x), sort_key('a', n('3')))), "
           "sn(ora_cume_dist_within(sort_key('a', x), sort_key('a', n('3'))))",
           "2,3,0.2,0.6666666666666666666666666666666666666667");
    addRow("ora_listagg(ora_rpad('x', n('3000')), ',')",
           "ORA-01489: result of string concatenation is too long");
    addRow("sd(ora_median_date(ora_to_date(sn(x), 'DD')))", "2026-11-03");
}

void TestFunctions::aggregates() {
    QFETCH(QString, expression);
    QFETCH(QString, result);
    m_database.run(u"CREATE TABLE IF NOT EXISTS g(x, y, t)"_s);
    m_database.run(u"DELETE FROM g"_s);
    m_database.run(u"INSERT INTO g VALUES (n('1'), n('3'), 'a'), (n('3'), n('7'), 'b'), "
                   "(n('3'), n('7'), 'c'), (n('9'), n('19'), 'd'), (NULL, NULL, NULL)"_s);
    const bool from = expression.contains(" FROM "_L1);
    QCOMPARE(m_database.value(from ? expression : expression + u" FROM g"_s), result);
}

// A window that moves over 1E100 must not lose the small values beside it.
void TestFunctions::sums_forget_what_leaves() {
    QCOMPARE(
        m_database.run(u"WITH v(i, x) AS (VALUES (1, n('1E100')), (2, n('.3')), (3, n('-1E-100')), "
                       "(4, n('-1E100')), (5, n('1'))) SELECT sn(num_sum(x) OVER (ORDER BY i ROWS "
                       "BETWEEN 1 PRECEDING AND CURRENT ROW)) = "
                       "sn(num_add(coalesce(lag(x) OVER (ORDER BY i), n('0')), x)) FROM v"_s),
        u"1|1|1|1|1"_s);
    QCOMPARE(m_database.run(u"SELECT sn(num_sum(n(column1))) FROM (VALUES ('1E125'), ('-1'), "
                            "('-1E125'), ('9999999999'), ('1E-130'))"_s),
             u"9999999998"_s);
    QCOMPARE(m_database.run(u"SELECT num_sum(n(column1)) FROM (VALUES ('9E125'), ('9E125'))"_s),
             u"ORA-01426: numeric overflow"_s);
}

void TestFunctions::windows() {
    m_database.run(u"CREATE TABLE w(i INTEGER, x)"_s);
    m_database.run(u"INSERT INTO w VALUES (1, 'a'), (2, NULL), (3, 'c'), (4, NULL), (5, 'e')"_s);
    QCOMPARE(m_database.run(u"SELECT nth_last_not_null(x, 1) OVER (ORDER BY i ROWS BETWEEN "
                            "UNBOUNDED PRECEDING AND 1 PRECEDING), nth_not_null(x, 1) OVER "
                            "(ORDER BY i ROWS BETWEEN 1 FOLLOWING AND UNBOUNDED FOLLOWING), "
                            "nth_last(x, 2) OVER (ORDER BY i) FROM w ORDER BY i"_s),
             u"(null),c,(null)|a,c,a|a,e,(null)|c,e,c|c,(null),(null)"_s);
    QCOMPARE(m_database.run(u"SELECT ora_listagg(x, '', sort_key('d', i)) OVER (), "
                            "sn(ora_median(num_from_int(i)) OVER (ORDER BY i ROWS BETWEEN 1 "
                            "PRECEDING AND 1 FOLLOWING)) FROM w ORDER BY i"_s),
             u"eca,1.5|eca,2|eca,3|eca,4|eca,4.5"_s);
}

void TestFunctions::sort_keys_order() {
    const auto keys = [&](const char* flags, const char* low, const char* high) {
        return m_database.value(QStringLiteral("sort_key('%1', %2) < sort_key('%1', %3)")
                                    .arg(QString::fromLatin1(flags), QString::fromLatin1(low),
                                         QString::fromLatin1(high)));
    };
    QCOMPARE(keys("a", "n('0')", "n('1E-130')"), u"1"_s);
    QCOMPARE(keys("d", "n('1E-130')", "n('0')"), u"1"_s);
    QCOMPARE(keys("a", "'a'", "'a '"), u"1"_s);
    QCOMPARE(keys("d", "'ab'", "'a'"), u"1"_s);
    QCOMPARE(keys("a", "'z'", "NULL"), u"1"_s);
    QCOMPARE(keys("d", "NULL", "'z'"), u"1"_s);
    QCOMPARE(keys("A", "NULL", "'a'"), u"1"_s);
    QCOMPARE(keys("D", "'a'", "NULL"), u"1"_s);
    QCOMPARE(keys("ad", "'a', 'x'", "'ab', 'y'"), u"1"_s);
    QCOMPARE(keys("a", "x'00'", "x'0000'"), u"1"_s);
    QCOMPARE(keys("aa", "x'00', x'01'", "x'0001', x'00'"), u"1"_s);
}

// Every function that the binder may emit is there with the counts of arguments it allows.
void TestFunctions::table_is_registered() {
    const std::string_view native[] = {"coalesce", "nullif",     "ifnull",     "count",
                                       "max",      "min",        "dense_rank", "first_value",
                                       "lag",      "last_value", "lead",       "nth_value",
                                       "ntile",    "rank",       "row_number"};
    std::size_t checked = 0;
    for (const char* name : {"SUBSTR", "TO_CHAR", "ROUND", "SUM", "MEDIAN", "REGEXP_REPLACE",
                             "DUMP", "LISTAGG", "CORR", "USER", "TO_DSINTERVAL", "UNISTR"})
        QVERIFY2(!ora::functionsNamed(name).empty(), name);
    for (const ora::FunctionEntry& entry : ora::functionRows()) {
        const QString sqliteName = QString::fromLatin1(entry.sqliteName);
        const bool isNative = std::find(std::begin(native), std::end(native),
                                        std::string_view(entry.sqliteName)) != std::end(native);
        if (sqliteName.isEmpty() || isNative)
            continue;
        const QString counts = m_database.run(
            QStringLiteral("SELECT group_concat(narg) FROM pragma_function_list WHERE name = '%1'")
                .arg(sqliteName));
        const int extra =
            entry.form == ora::SpecialForm::TypedCall || entry.form == ora::SpecialForm::RankWithin
                ? 1
                : 0;
        const bool any = counts.contains("-1"_L1);
        const bool exact = counts.contains(QString::number(entry.minArguments + extra)) ||
                           entry.form != ora::SpecialForm::None;
        QVERIFY2(any || (exact && counts != "(null)"_L1), entry.name);
        ++checked;
    }
    QVERIFY(checked > 100);
}

void TestFunctions::overloads() {
    using T = ora::SqlType;
    QCOMPARE(chosen("TO_CHAR", {T::Number}), u"ora_to_char_number"_s);
    QCOMPARE(chosen("TO_CHAR", {T::Date}), u"date_text"_s);
    QCOMPARE(chosen("TO_CHAR", {T::TimestampTz}), u"tz_text"_s);
    QCOMPARE(chosen("TO_CHAR", {T::Timestamp, T::Char}), u"ora_to_char_ts"_s);
    QCOMPARE(chosen("TO_CHAR", {T::Varchar2}), u"ora_identity"_s);
    QCOMPARE(chosen("TO_CHAR", {T::Char, T::Char}), u"ora_to_char_number"_s);
    QCOMPARE(chosen("ROUND", {T::Date, T::Char}), u"ora_round_date"_s);
    QCOMPARE(chosen("ROUND", {T::Varchar2}), u"ora_round"_s);
    QCOMPARE(chosen("NO_SUCH", {}), u"unknown"_s);
    QCOMPARE(chosen("SUM", {T::Date}),
             u"ORA-00932: inconsistent datatypes: expected NUMBER got DATE"_s);
    QCOMPARE(chosen("NVL", {T::Number}), u"ORA-00909: invalid number of arguments"_s);
    QCOMPARE(chosen("SUBSTR", {T::Char}), u"ORA-00938: not enough arguments for function"_s);
    QCOMPARE(chosen("SUBSTR", {T::Char, T::Number, T::Number, T::Number}),
             u"ORA-00939: too many arguments for function"_s);
}

void TestFunctions::operators() {
    using T = ora::SqlType;
    QCOMPARE(operation('+', T::Number, T::Varchar2), u"num_add"_s);
    QCOMPARE(operation('+', T::Number, T::Date), u"date_add swapped"_s);
    QCOMPARE(operation('-', T::Date, T::Timestamp), u"ts_sub"_s);
    QCOMPARE(operation('-', T::Date, T::Null), u"date_less"_s);
    QCOMPARE(operation('*', T::Number, T::IntervalDayToSecond), u"ds_mul swapped"_s);
    QCOMPARE(operation('/', T::BinaryDouble, T::Number), u"double_div"_s);
    QCOMPARE(operation('+', T::Date, T::Date), u"ORA-00975: date + date not allowed"_s);
    QCOMPARE(operation('*', T::Date, T::Number),
             u"ORA-00932: inconsistent datatypes: expected NUMBER got DATE"_s);
    QCOMPARE(operation('+', T::IntervalDayToSecond, T::IntervalYearToMonth),
             u"ORA-30081: invalid data type for datetime/interval arithmetic"_s);
}

void TestFunctions::errors_come_back() {
    const auto error = ora::errorFrom("ORA-01476: divisor is equal to zero");
    QVERIFY(error.has_value());
    QCOMPARE(error->code(), 1476);
    QCOMPARE(error->message(), std::string("ORA-01476: divisor is equal to zero"));
    QVERIFY(!ora::errorFrom("no such table: x"));
    QVERIFY(!ora::errorFrom("ORA-x1476: divisor"));
}

QTEST_APPLESS_MAIN(TestFunctions)
#include "tst_functions.moc"
