#include "AdoProvider.h"

#include "AdoSession.h"

#include <climits>

using namespace Qt::StringLiterals;

namespace {

constexpr LONG unknownService = 12154; // the connect identifier cannot be resolved

class AdoProvider : public Provider {
public:
    QString name() const override { return u"ADO"_s; }

    // A server that was reached says so with a code of its own; without one, or with the one for an
    // unknown name, another back-end may know the service.
    std::unique_ptr<Session> open(const DataSource& source, QStringList& tried) override {
        try {
            return std::make_unique<AdoSession>(std::make_shared<AdoLink>(source.connectionString));
        } catch (const AdoFailure& failure) {
            if (failure.native != 0 && failure.native != unknownService)
                throw errorOf(failure);
            tried << u"ADO, %1-bit: %2 (%3)"_s.arg(
                QString::number(QT_POINTER_SIZE * CHAR_BIT),
                QString::fromStdWString(failure.description).trimmed(),
                QString::number(quint32(failure.result), 16));
            return nullptr;
        }
    }
};

} // namespace

std::unique_ptr<Provider> makeAdoProvider() {
    return std::make_unique<AdoProvider>();
}
