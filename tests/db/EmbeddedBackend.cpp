#include "Backends.h"

using namespace Qt::StringLiterals;

const std::vector<Backend>& backends() {
    static const std::vector<Backend> list{
        {"embedded",
         u"Data Source=DEMO;User ID=demo;Password=demo"_s,
         {u"NUMBER(10)"_s, u"NUMBER(38,10)"_s, u"VARCHAR2(40)"_s, u"TIMESTAMP"_s, u"RAW(20)"_s},
         u"TIMESTAMP '%1'"_s,
         u"HEXTORAW('%1')"_s,
         {}},
    };
    return list;
}

void stopBackends() {}
