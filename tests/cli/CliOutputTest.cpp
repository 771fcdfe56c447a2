#include "invoicelayout/LMBuiltInTemplates.h"
#include "store/TAApplicationHooks.h"
#include "support/CliRun.h"
#include "support/OffscreenGuiApplication.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace {

CliRun cli(const QStringList &arguments) {
    return CliRun::of(arguments);
}

// As in the program: drawing pages needs a GUI application, and new documents start with the
// built-in designs.
class CliOutput : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_app = std::make_unique<OffscreenGuiApplication>("test_cli"); }
    static void TearDownTestSuite() { s_app.reset(); }

    TAApplicationHooks::ScopedTemplateSeeder seeder{&LMBuiltInTemplates::seedBuiltInTemplates};

private:
    static inline std::unique_ptr<OffscreenGuiApplication> s_app;
};

TEST_F(CliOutput, PdfAndPngOfTheSampleInvoices) {
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("s.tadb"));
    ASSERT_EQ(cli({QStringLiteral("new"), file, QStringLiteral("--sample")}).status, 0);

    const QString pdf = dir.filePath(QStringLiteral("one.pdf"));
    const CliRun one = cli({QStringLiteral("pdf"), file, QStringLiteral("--invoice"),
                            QStringLiteral("2001"), QStringLiteral("-o"), pdf});
    EXPECT_EQ(one.status, 0) << one.err.toStdString();
    QFile written(pdf);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_TRUE(written.read(5).startsWith("%PDF-"));

    const CliRun all = cli({QStringLiteral("pdf"), file, QStringLiteral("--all"),
                            dir.filePath(QStringLiteral("all"))});
    EXPECT_EQ(all.status, 0) << all.err.toStdString();
    EXPECT_EQ(all.out.count(QStringLiteral(".pdf:")), 5);

    const QString png = dir.filePath(QStringLiteral("p.png"));
    const CliRun picture =
        cli({QStringLiteral("png"), file, QStringLiteral("--invoice"), QStringLiteral("2001"),
             QStringLiteral("--page"), QStringLiteral("1"), QStringLiteral("-o"), png});
    EXPECT_EQ(picture.status, 0) << picture.err.toStdString();
    EXPECT_EQ(QImage(png).size(), QSize(595, 842)) << "Blue Simple is A4";
    const CliRun other =
        cli({QStringLiteral("png"), file, QStringLiteral("--invoice"), QStringLiteral("2001"),
             QStringLiteral("--template"), QStringLiteral("Sky"), QStringLiteral("--scale"),
             QStringLiteral("0.5"), QStringLiteral("-o"), png});
    EXPECT_EQ(other.status, 0) << other.err.toStdString();
    EXPECT_EQ(QImage(png).size(), QSize(306, 396)) << "Sky is US Letter, at half scale";
    // An unknown template is named back, for each command that draws through one.
    const CliRun noTemplate = cli({QStringLiteral("pdf"), file, QStringLiteral("--all"),
                                   dir.filePath(QStringLiteral("none")),
                                   QStringLiteral("--template"), QStringLiteral("Nope")});
    EXPECT_EQ(noTemplate.status, 1);
    EXPECT_TRUE(noTemplate.err.contains(QStringLiteral("no template named 'Nope'")))
        << noTemplate.err.toStdString();
    const CliRun noTemplatePicture =
        cli({QStringLiteral("png"), file, QStringLiteral("--invoice"), QStringLiteral("2001"),
             QStringLiteral("--template"), QStringLiteral("Nope"), QStringLiteral("-o"), png});
    EXPECT_EQ(noTemplatePicture.status, 1);
    EXPECT_TRUE(noTemplatePicture.err.contains(QStringLiteral("no template named 'Nope'")))
        << noTemplatePicture.err.toStdString();

    EXPECT_EQ(cli({QStringLiteral("png"), file, QStringLiteral("--invoice"), QStringLiteral("2001"),
                   QStringLiteral("--page"), QStringLiteral("9"), QStringLiteral("-o"), png})
                  .status,
              1);
    // No such invoice is a slip of the command line, not a file that cannot be used.
    EXPECT_EQ(cli({QStringLiteral("pdf"), file, QStringLiteral("--invoice"), QStringLiteral("9999"),
                   QStringLiteral("-o"), pdf})
                  .status,
              1);
    EXPECT_EQ(cli({QStringLiteral("pdf"), file}).status, 1);
}

} // namespace
