#include "DateLanguage.h"

#include "AsciiText.h"
#include "NamedRow.h"
#include "UnicodeText.h"
#include "Utf8.h"

namespace ora {

namespace {

constexpr DateLanguage languages[] = {
    {"AMERICAN",
     "US",
     "BINARY",
     {"JANUARY", "FEBRUARY", "MARCH", "APRIL", "MAY", "JUNE", "JULY", "AUGUST", "SEPTEMBER",
      "OCTOBER", "NOVEMBER", "DECEMBER"},
     {"JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"},
     {"SUNDAY", "MONDAY", "TUESDAY", "WEDNESDAY", "THURSDAY", "FRIDAY", "SATURDAY"},
     {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"}},
    {"FRENCH",
     "F",
     "FRENCH",
     {"JANVIER", "FÉVRIER", "MARS", "AVRIL", "MAI", "JUIN", "JUILLET", "AOÛT", "SEPTEMBRE",
      "OCTOBRE", "NOVEMBRE", "DÉCEMBRE"},
     {"JANV.", "FÉVR.", "MARS", "AVR.", "MAI", "JUIN", "JUIL.", "AOÛT", "SEPT.", "OCT.", "NOV.",
      "DÉC."},
     {"DIMANCHE", "LUNDI", "MARDI", "MERCREDI", "JEUDI", "VENDREDI", "SAMEDI"},
     {"DIM.", "LUN.", "MAR.", "MER.", "JEU.", "VEN.", "SAM."}},
    {"GERMAN",
     "D",
     "GERMAN",
     {"JANUAR", "FEBRUAR", "MÄRZ", "APRIL", "MAI", "JUNI", "JULI", "AUGUST", "SEPTEMBER", "OKTOBER",
      "NOVEMBER", "DEZEMBER"},
     {"JAN", "FEB", "MRZ", "APR", "MAI", "JUN", "JUL", "AUG", "SEP", "OKT", "NOV", "DEZ"},
     {"SONNTAG", "MONTAG", "DIENSTAG", "MITTWOCH", "DONNERSTAG", "FREITAG", "SAMSTAG"},
     {"SO", "MO", "DI", "MI", "DO", "FR", "SA"}},
    {"SPANISH",
     "E",
     "SPANISH",
     {"ENERO", "FEBRERO", "MARZO", "ABRIL", "MAYO", "JUNIO", "JULIO", "AGOSTO", "SEPTIEMBRE",
      "OCTUBRE", "NOVIEMBRE", "DICIEMBRE"},
     {"ENE", "FEB", "MAR", "ABR", "MAY", "JUN", "JUL", "AGO", "SEP", "OCT", "NOV", "DIC"},
     {"DOMINGO", "LUNES", "MARTES", "MIÉRCOLES", "JUEVES", "VIERNES", "SÁBADO"},
     {"DOM", "LUN", "MAR", "MIÉ", "JUE", "VIE", "SÁB"}},
    {"ITALIAN",
     "I",
     "WEST_EUROPEAN",
     {"GENNAIO", "FEBBRAIO", "MARZO", "APRILE", "MAGGIO", "GIUGNO", "LUGLIO", "AGOSTO", "SETTEMBRE",
      "OTTOBRE", "NOVEMBRE", "DICEMBRE"},
     {"GEN", "FEB", "MAR", "APR", "MAG", "GIU", "LUG", "AGO", "SET", "OTT", "NOV", "DIC"},
     {"DOMENICA", "LUNEDÌ", "MARTEDÌ", "MERCOLEDÌ", "GIOVEDÌ", "VENERDÌ", "SABATO"},
     {"DOM", "LUN", "MAR", "MER", "GIO", "VEN", "SAB"}},
    {"DUTCH",
     "NL",
     "DUTCH",
     {"JANUARI", "FEBRUARI", "MAART", "APRIL", "MEI", "JUNI", "JULI", "AUGUSTUS", "SEPTEMBER",
      "OKTOBER", "NOVEMBER", "DECEMBER"},
     {"JAN", "FEB", "MRT", "APR", "MEI", "JUN", "JUL", "AUG", "SEP", "OKT", "NOV", "DEC"},
     {"ZONDAG", "MAANDAG", "DINSDAG", "WOENSDAG", "DONDERDAG", "VRIJDAG", "ZATERDAG"},
     {"ZO", "MA", "DI", "WO", "DO", "VR", "ZA"}},
    {"PORTUGUESE",
     "PT",
     "WEST_EUROPEAN",
     {"JANEIRO", "FEVEREIRO", "MARÇO", "ABRIL", "MAIO", "JUNHO", "JULHO", "AGOSTO", "SETEMBRO",
      "OUTUBRO", "NOVEMBRO", "DEZEMBRO"},
     {"JAN", "FEV", "MAR", "ABR", "MAI", "JUN", "JUL", "AGO", "SET", "OUT", "NOV", "DEZ"},
     {"DOMINGO", "SEGUNDA-FEIRA", "TERÇA-FEIRA", "QUARTA-FEIRA", "QUINTA-FEIRA", "SEXTA-FEIRA",
      "SÁBADO"},
     {"DOM", "SEG", "TER", "QUA", "QUI", "SEX", "SÁB"}},
    {"SWEDISH",
     "S",
     "SWEDISH",
     {"JANUARI", "FEBRUARI", "MARS", "APRIL", "MAJ", "JUNI", "JULI", "AUGUSTI", "SEPTEMBER",
      "OKTOBER", "NOVEMBER", "DECEMBER"},
     {"JAN", "FEB", "MAR", "APR", "MAJ", "JUN", "JUL", "AUG", "SEP", "OKT", "NOV", "DEC"},
     {"SÖNDAG", "MÅNDAG", "TISDAG", "ONSDAG", "TORSDAG", "FREDAG", "LÖRDAG"},
     {"SÖ", "MÅ", "TI", "ON", "TO", "FR", "LÖ"}},
    {"DANISH",
     "DK",
     "DANISH",
     {"JANUAR", "FEBRUAR", "MARTS", "APRIL", "MAJ", "JUNI", "JULI", "AUGUST", "SEPTEMBER",
      "OKTOBER", "NOVEMBER", "DECEMBER"},
     {"JAN", "FEB", "MAR", "APR", "MAJ", "JUN", "JUL", "AUG", "SEP", "OKT", "NOV", "DEC"},
     {"SØNDAG", "MANDAG", "TIRSDAG", "ONSDAG", "TORSDAG", "FREDAG", "LØRDAG"},
     {"SØ", "MA", "TI", "ON", "TO", "FR", "LØ"}},
};

struct Synonym {
    std::string_view name;
    std::string_view language;
};
constexpr Synonym synonyms[] = {{"ENGLISH", "AMERICAN"},
                                {"CANADIAN FRENCH", "FRENCH"},
                                {"GERMAN DIN", "GERMAN"},
                                {"LATIN AMERICAN SPANISH", "SPANISH"},
                                {"MEXICAN SPANISH", "SPANISH"},
                                {"BRAZILIAN PORTUGUESE", "PORTUGUESE"},
                                {"NUMERIC DATE LANGUAGE", "AMERICAN"}};

} // namespace

const DateLanguage& englishDates() {
    return languages[0];
}

const DateLanguage* findDateLanguage(std::string_view name) {
    const std::string upper = upperAscii(trimmedAscii(name));
    const Synonym* const synonym = findNamed(synonyms, upper);
    return findNamed(languages, synonym ? synonym->language : upper);
}

std::size_t matchedName(std::string_view text, std::string_view upperName) {
    if (isAsciiText(upperName))
        return startsWithWord(text, upperName) ? upperName.size() : 0;
    const std::size_t size = utf8::offsetOf(text, utf8::length(upperName));
    return upperText(text.substr(0, size)) == upperName ? size : 0;
}

} // namespace ora
