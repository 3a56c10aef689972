#include "OracleCases.h"

// What depends on languages, territories and time zones, and conversions that may fail.
class tst_oracle_locale : public OracleCases {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }

    void languages_data() {
        columns();
        row("names of another language in one call",
            "select to_char(date '2020-03-15', 'fmDay DD Month YYYY', 'NLS_DATE_LANGUAGE=German'), "
            "to_char(date '2020-08-15', 'DD-MON-RR', 'nls_date_language=''FRENCH''') from dual",
            "Sonntag 15 März 2020|15-AOÛT -20");
        row("names are filled up to the longest of the language",
            "select to_char(date '2020-03-15', 'Day') || '|', to_char(date '2020-03-15', 'MONTH', "
            "'NLS_DATE_LANGUAGE=Spanish') || '|' from dual",
            "Sunday   ||MARZO     |");
        row("a text in another language",
            "select to_date('15 février 2020', 'DD month YYYY', 'NLS_DATE_LANGUAGE=French'), "
            "to_date('01-DEZ-20', 'DD-MON-RR', 'NLS_DATE_LANGUAGE=German') from dual",
            "2020-02-15|2020-12-01");
        row("no such language",
            "select to_char(date '2020-03-15', 'DY', 'NLS_DATE_LANGUAGE=Martian') from dual;\n"
            "alter session set nls_date_language = 'Martian'",
            "ORA-12702: invalid NLS parameter string used in SQL function\n"
            "ORA-12705: Cannot access NLS data files or invalid environment specified");
        row("the session's language",
            "alter session set nls_date_language = french;\n"
            "select to_char(date '2020-12-24', 'DAY') from dual;\n"
            "select next_day(date '2020-12-24', 'lundi') from dual",
            "JEUDI   \n2020-12-28");
        row("a territory brings formats, marks and the first day of the week",
            "alter session set nls_territory = 'GERMANY';\n"
            "select to_char(date '2020-12-24'), to_char(date '2020-12-24', 'D'), to_char(1234.5, "
            "'9G999D9L') from dual;\n"
            "select value from nls_session_parameters where parameter = 'NLS_NUMERIC_CHARACTERS'",
            "24.12.20|4|        1.234,5€\n,.");
        row("decimal marks in conversions",
            "alter session set nls_numeric_characters = ',.';\n"
            "select to_char(1/4), '1,5' + 1, 'x' || 0.5 from dual;\n"
            "select to_number('1.5') from dual",
            ",25|2.5|x,5\nORA-01722: invalid number");
    }
    void languages() { check(); }

    void parameters_data() {
        columns();
        row("lengths in characters",
            "alter session set nls_length_semantics = char;\n"
            "create table c (a varchar2(2), b varchar2(2 byte), c char(1));\n"
            "insert into c values ('äö', 'ä', 'ß');\n"
            "insert into c (b) values ('äö');\n"
            "alter table c modify b varchar2(2);\n"
            "insert into c (b) values ('äö');\n"
            "select count(*) from c;\n"
            "alter session set nls_length_semantics = word",
            "ORA-12899: value too large for column \"DEMO\".\"C\".\"B\" (actual: 4, maximum: "
            "2)\n2\n"
            "ORA-12705: Cannot access NLS data files or invalid environment specified");
        row("what a session can be told, and what not",
            "alter session set events '10046 trace name context forever, level 12';\n"
            "alter session set optimizer_mode = all_rows sql_trace = true \"_secret\" = 1;\n"
            "alter session set row archival visibility = all;\n"
            "alter session set processes = 5;\n"
            "alter session set optimiser_mode = all_rows",
            "ORA-02096: specified initialization parameter is not modifiable with this option\n"
            "ORA-02248: invalid option for ALTER SESSION");
    }
    void parameters() { check(); }

    void zones_data() {
        columns();
        row("a zone of an offset and of a region",
            "select timestamp '2020-07-01 12:00:00 -08:00', timestamp '2020-07-01 12:00:00.5 "
            "Europe/Paris' from dual",
            "2020-07-01 12:00:00 -08:00|2020-07-01 12:00:00.5 EUROPE/PARIS");
        row("the same moment elsewhere",
            "select timestamp '2020-07-01 12:00:00 +02:00' at time zone 'America/New_York', "
            "sys_extract_utc(timestamp '2020-01-01 12:00:00 US/Pacific') from dual",
            "2020-07-01 06:00:00 AMERICA/NEW_YORK|2020-01-01 20:00:00");
        row("the zone does not count in comparisons",
            "select 1 from dual where timestamp '2020-07-01 12:00:00 -08:00' = timestamp "
            "'2020-07-01 13:00:00 -07:00'",
            "1");
        row("differences and sums",
            "select timestamp '2020-07-01 12:00:00 -08:00' - timestamp '2020-07-01 12:00:00 "
            "+02:00', timestamp '2020-07-01 12:00:00 -08:00' + interval '1' hour from dual",
            "+000000000 10:00:00.000000000|2020-07-01 13:00:00 -08:00");
        row("fields",
            "select extract(hour from t), extract(timezone_hour from t), "
            "extract(timezone_region from t), to_char(t, 'HH24 TZH:TZM') from (select "
            "timestamp '2020-07-01 12:00:00 -08:30' t from dual)",
            "20|-8|UNKNOWN|12 -08:30");
        row("zones that are none",
            "select timestamp '2020-07-01 12:00:00 Mars/Base' from dual;\n"
            "select from_tz(timestamp '2020-07-01 12:00:00', '17:00') from dual",
            "ORA-01882: timezone region not found\n"
            "ORA-01874: time zone hour must be between -15 and 15");
        row("columns keep the zone or the moment",
            "create table z (a timestamp with time zone, b timestamp with local time zone);\n"
            "alter session set time_zone = '+01:00';\n"
            "insert into z values (timestamp '2020-07-01 12:00:00 +05:00', timestamp '2020-07-01 "
            "12:00:00 +05:00');\n"
            "insert into z values (timestamp '2020-07-01 07:00:00', timestamp '2020-07-01 "
            "07:00:00');\n"
            "select sessiontimezone from dual;\n"
            "alter session set time_zone = 'America/New_York';\n"
            "select a, b, to_char(b, 'HH24 TZR') from z",
            "+01:00\n"
            "2020-07-01 12:00:00 +05:00|2020-07-01 03:00:00|03 AMERICA/NEW_YORK\n"
            "2020-07-01 07:00:00 +01:00|2020-07-01 02:00:00|02 AMERICA/NEW_YORK");
        row("a text without the fraction that the session's format has",
            "create table s (a timestamp, b timestamp with time zone);\n"
            "insert into s values ('01-JAN-20 10.00.00 PM', '01-JAN-20 10.00.00 AM +05:30');\n"
            "select a, b from s",
            "2020-01-01 22:00:00|2020-01-01 10:00:00 +05:30");
        row("texts with zones",
            "select to_timestamp_tz('2020-07-01 12:00 -3:30', 'YYYY-MM-DD HH24:MI TZH:TZM'), "
            "to_char(from_tz(timestamp '2020-01-01 12:00:00', 'Asia/Tokyo')) from dual",
            "2020-07-01 12:00:00 -03:30|01-JAN-20 12.00.00.000000000 PM ASIA/TOKYO");
        row("their names and abbreviations",
            "select tzabbrev from v$timezone_names where tzname = 'Asia/Tokyo';\nselect count(*) "
            "from v$timezone_names where tzname = 'Europe/Berlin' and tzabbrev in ('CET', 'CEST')",
            "JST\n2");
    }
    void zones() { check(); }

    void orders_data() {
        columns();
        const auto sorted = [](const char* fault, const QByteArray& sort, const QByteArray& values,
                               const char* expected) {
            row(fault,
                "alter session set nls_sort = '" + sort +
                    "';\nselect listagg(column_value, ' ') within group (order by column_value) "
                    "from sys.odcivarchar2list(" +
                    values + ")",
                expected);
        };
        sorted("letters first, then accents, lower case first", "German",
               "'Zug', 'apfel', 'Äpfel', 'Apfel', 'äpfel', 'zug', '_x', '9', 'straße', 'strasse'",
               "_x 9 apfel Apfel äpfel Äpfel strasse straße zug Zug");
        sorted("letters of their own", "SWEDISH", "'öl', 'zon', 'äl', 'al', 'ål'",
               "al zon ål äl öl");
        sorted("two letters that are one", "XSPANISH", "'dama', 'chico', 'cuna', 'llama', 'luz'",
               "cuna chico dama luz llama");
        sorted("the same two without the X", "SPANISH", "'dama', 'chico', 'cuna'",
               "chico cuna dama");
        sorted("accents from the end", "FRENCH_M", "'côté', 'coté', 'côte', 'cote'",
               "cote côte coté côté");
        sorted("without case", "BINARY_CI", "'b', 'A', 'C'", "A b C");
        row("a language brings its order",
            "alter session set nls_language = 'DANISH';\nselect value from "
            "nls_session_parameters where parameter = 'NLS_SORT'",
            "DANISH");
        row("no such order",
            "alter session set nls_sort = 'MARTIAN';\n"
            "select nlssort('a', 'NLS_SORT=MARTIAN') from dual;\n"
            "alter session set nls_comp = 'SOMEHOW'",
            "ORA-12705: Cannot access NLS data files or invalid environment specified\n"
            "ORA-12702: invalid NLS parameter string used in SQL function\n"
            "ORA-12705: Cannot access NLS data files or invalid environment specified");
        const QByteArray names = "create table names (n varchar2(15));\n"
                                 "insert into names values ('Gaardiner');\n"
                                 "insert into names values ('Gaberd');\n"
                                 "insert into names values ('Gaasten');\n";
        row("every ORDER BY follows the session",
            names +
                "alter session set nls_sort = 'XDanish';\n"
                "select n from names order by n;\n"
                "select distinct n from names order by 1 desc;\n"
                "select n from names union select 'Gaz' from dual order by n;\n"
                "select n, row_number() over (order by n) from names order by 2;\n"
                "select n from names start with n = 'Gaberd' connect by prior n = 'Gaberd' and n "
                "<> 'Gaberd' order siblings by n desc;\n"
                "select n from names order by n fetch first 1 row only;\n"
                "select n from names where n > 'Gaberd'",
            "Gaberd\nGaardiner\nGaasten\nGaasten\nGaardiner\nGaberd\nGaberd\nGaz\nGaardiner\n"
            "Gaasten\nGaberd|1\nGaardiner|2\nGaasten|3\nGaberd\nGaasten\nGaardiner\nGaberd");
        row("comparisons follow it when NLS_COMP says so",
            names +
                "alter session set nls_comp = linguistic nls_sort = 'XDanish';\n"
                "select n from names where n > 'Gaberd' order by n;\n"
                "alter session set nls_sort = binary_ci;\n"
                "select n from names where n = 'GABERD';\n"
                "select n from names where n in (select upper(n) from names) and n like 'GAA%' and "
                "n between 'gaas' and 'GAAT';\n"
                "select case n when 'gaberd' then 1 end from names order by 1;\n"
                "create table tight (n varchar2(1) check (n = 'x'));\n"
                "insert into tight values ('X');\n"
                "alter session set nls_comp = binary;\n"
                "select n from names where n = 'GABERD'",
            "Gaardiner\nGaasten\nGaberd\nGaasten\n1\n(null)\n(null)\n"
            "ORA-02290: check constraint (DEMO.SYS_C0001001) violated");
        row("what the database keeps does not depend on a session",
            "alter session set nls_comp = linguistic nls_sort = binary_ci;\n"
            "create table t (n varchar2(9) check (n in ('x', 'Q') or n like 'y%'), m number);\n"
            "create trigger tr after insert on t for each row begin update t set m = 1 where n = "
            "'q' or n like 'Y%'; end;\n"
            "insert into t (n) values ('X');\n"
            "insert into t (n) values ('YES');\n"
            "insert into t (n) values ('Q');\n"
            "insert into t (n) values ('yes');\n"
            "alter session set nls_comp = binary;\n"
            "select n, m from t order by n",
            "ORA-02290: check constraint (DEMO.SYS_C0001001) violated\n"
            "ORA-02290: check constraint (DEMO.SYS_C0001001) violated\nQ|(null)\nyes|(null)");
        row("an index of a language's order",
            names + "create index danish on names (nlssort(n, 'NLS_SORT = XDanish'));\n"
                    "create index ofsession on names (nlssort(n));\n"
                    "select n from names where nlssort(n, 'NLS_SORT = XDanish') > "
                    "nlssort('Gaberd', 'NLS_SORT = XDanish') order by n",
            "Gaardiner\nGaasten");
    }
    void orders() { check(); }

    void conversions_data() {
        columns();
        row("a value for what cannot be converted",
            "select to_number('12x' default -1 on conversion error), to_date('32-01-2020' default "
            "'01-01-2000' on conversion error, 'DD-MM-YYYY'), cast('abc' as number(5) default null "
            "on conversion error), to_number('7' default 0 on conversion error) from dual",
            "-1|2000-01-01|(null)|7");
        row("whether it can be converted",
            "select validate_conversion('12' as number), validate_conversion('1x' as number), "
            "validate_conversion('2020-02-30' as date, 'YYYY-MM-DD'), validate_conversion(null as "
            "date) from dual",
            "1|0|0|1");
        row("a list that is too long",
            "select length(s), substr(s, -20) from (select listagg(rpad('x', 900, 'x'), ',' on "
            "overflow truncate '...' with count) within group (order by level) s from dual connect "
            "by level <= 10);\n"
            "select listagg(rpad('x', 900, 'x'), ',' on overflow error) within group (order by "
            "level) from dual connect by level <= 10",
            "3610|xxxxxxxxxxxxx,...(6)\nORA-01489: result of string concatenation is too long");
        row("each value of a list once",
            "select listagg(distinct mod(level, 3), '-') within group (order by mod(level, 3)) "
            "from dual connect by level <= 9",
            "0-1-2");
        row("a FLOAT's digits are counted in bits",
            "create table f (a float(5), b float);\n"
            "insert into f values (123.45, 1/3);\n"
            "select * from f",
            "120|0.33333333333333333333333333333333333333");
        row("lists of values as tables",
            "select column_value c from table(sys.odcinumberlist(3, 1, 2)) order by 1;\n"
            "select count(*), max(t.column_value) from table(sys.odcivarchar2list('a', 'b')) t;\n"
            "select * from table(no_such_type(1))",
            "1\n2\n3\n2|b\nORA-03001: unimplemented feature: collections as tables cannot be used "
            "in the embedded database");
    }
    void conversions() { check(); }
};

QTEST_GUILESS_MAIN(tst_oracle_locale)
#include "tst_oracle_locale.moc"
