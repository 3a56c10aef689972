#include "DemoScript.h"

#include <QFile>

using namespace Qt::StringLiterals;

// The resource of a static library is not found unless somebody asks for it; the macro must stand
// outside any namespace.
static void useDemoResource() {
    Q_INIT_RESOURCE(demo);
}

std::vector<std::string> demoScript() {
    useDemoResource();
    QFile file(u":/quillmate/demo.sql"_s);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the sample schema is missing from the program");
    std::vector<std::string> statements(1);
    // A statement ends at a line that holds "/" alone: triggers have semicolons of their own.
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line.trimmed() == "/")
            statements.emplace_back();
        else if (!line.startsWith("--"))
            statements.back() += line.toStdString();
    }
    statements.pop_back(); // what follows the last one
    return statements;
}
