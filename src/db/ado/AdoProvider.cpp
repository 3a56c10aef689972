#include "AdoProvider.h"

#include "AdoSession.h"

using namespace Qt::StringLiterals;

namespace {

class AdoProvider : public Provider {
public:
    QString name() const override { return u"ADO"_s; }

    // A server that was reached says so with a code of its own; without one the provider of the
    // string is missing or knows no such service, and another back-end may.
    std::unique_ptr<Session> open(const DataSource& source, QStringList& tried) override {
        try {
            return std::make_unique<AdoSession>(std::make_shared<AdoLink>(source.connectionString));
        } catch (const AdoFailure& failure) {
            if (failure.native != 0)
                throw errorOf(failure);
            tried << u"ADO: %1 (%2)"_s.arg(QString::fromStdWString(failure.description).trimmed(),
                                           QString::number(quint32(failure.result), 16));
            return nullptr;
        }
    }
};

} // namespace

std::unique_ptr<Provider> makeAdoProvider() {
    return std::make_unique<AdoProvider>();
}
