#include "ProviderTable.h"

#include "embedded/EmbeddedProvider.h"
#include "odbc/OdbcProvider.h"
#ifdef _WIN32
#include "ado/AdoProvider.h"
#endif

using namespace Qt::StringLiterals;

const std::vector<std::unique_ptr<Provider>>& providerTable() {
    static const auto table = [] {
        std::vector<std::unique_ptr<Provider>> providers;
        providers.push_back(makeEmbeddedProvider());
#ifdef _WIN32
        providers.push_back(makeAdoProvider());
#endif
        providers.push_back(makeOdbcProvider());
        return providers;
    }();
    return table;
}

std::unique_ptr<Session> openSession(const DataSource& source,
                                     const std::vector<std::unique_ptr<Provider>>& providers) {
    QStringList tried;
    for (const auto& provider : providers) {
        if (auto session = provider->open(source, tried))
            return session;
    }
    const QString code = u"ORA-12154"_s;
    throw ProviderError(DbErrorNumber::GeneralFailure, code, u"Quillmate"_s,
                        code + u": TNS:could not resolve the connect identifier specified\n"_s +
                            tried.join(u'\n'));
}
