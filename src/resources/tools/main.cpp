// billfold-resgen: builds the compiled-in resources from their text sources at build time.
#include "invoicelayout/LMBuiltInTemplates.h"
#include "resources/tools/SampleResourceBuilder.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

int main(int argc, char *argv[]) {
    QCoreApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments.size() != 3 || arguments[0] != QLatin1String("sample")) {
        err << "Usage: billfold-resgen sample SOURCE.json OUTPUT-FOLDER" << Qt::endl;
        return 2;
    }
    LMBuiltInTemplates::install();
    QFile source(arguments[1]);
    if (!source.open(QIODevice::ReadOnly)) {
        err << arguments[1] << ": " << source.errorString() << Qt::endl;
        return 1;
    }
    SampleResourceBuilder builder;
    auto result = builder.read(source.readAll());
    if (result)
        result = builder.write(arguments[2]);
    if (!result) {
        err << arguments[1] << ": " << result.error().message << Qt::endl;
        return 1;
    }
    return 0;
}
