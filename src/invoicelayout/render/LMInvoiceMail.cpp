#include "invoicelayout/render/LMInvoiceMail.h"

#include "invoicelayout/render/LMInvoiceOutput.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace {
QString tr(const char *text) {
    return QCoreApplication::translate("LMInvoiceMail", text);
}

// A display name in double quotes, with backslashes and quotes escaped, so that commas and
// quotation marks in a name cannot split the recipient.
QString quotedName(const QString &name) {
    QString escaped = name;
    escaped.replace(u'\\', QLatin1String("\\\\")).replace(u'"', QLatin1String("\\\""));
    return u'"' + escaped + u'"';
}

Error pdfMissing(const QString &what, const QString &path) {
    return Error{ErrorCode::WriteFailed,
                 tr("The %1 could not be written to \"%2\" for mailing. Check that the "
                    "temporary folder exists and has room, then try again.")
                     .arg(what, path)};
}
} // namespace

QString LMInvoiceMail::subjectForNumber(const QString &identification) {
    const QString word = tr("Invoice");
    if (identification.isEmpty())
        return word;
    return QStringLiteral("%1 %2").arg(word, identification);
}

QStringList LMInvoiceMail::mailArguments(const QString &subject, const QString &attachment,
                                         const QString &recipientName,
                                         const QString &recipientAddress) {
    QStringList arguments{QStringLiteral("--subject"), subject, QStringLiteral("--attach"),
                          attachment};
    if (!recipientName.isEmpty() && !recipientAddress.isEmpty())
        arguments.append(
            QStringLiteral("%1 <%2>").arg(quotedName(recipientName), recipientAddress));
    return arguments;
}

QStringList LMInvoiceMail::mailArgumentsForInvoice(TAInvoice *invoice, const QString &attachment) {
    QString name;
    QString address;
    if (const TAClient *client = invoice ? invoice->client() : nullptr) {
        name = client->displayName();
        address = client->emailValue();
    }
    return mailArguments(subjectForNumber(invoice ? invoice->identification() : QString()),
                         attachment, name, address);
}

Result<void> LMInvoiceMail::runProcess(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted())
        return Error{ErrorCode::Generic,
                     tr("Could not start %1: %2. Check that a mail program is installed "
                        "(%1 comes with xdg-utils).")
                         .arg(program, process.errorString())};
    process.waitForFinished(-1);
    if (process.exitStatus() != QProcess::NormalExit)
        return Error{
            ErrorCode::Generic,
            tr("%1 stopped before it finished; the message was not handed over.").arg(program)};
    if (process.exitCode() != 0)
        return Error{ErrorCode::Generic,
                     tr("%1 failed with exit status %2; the message was not handed over.")
                         .arg(program)
                         .arg(process.exitCode())};
    return {};
}

Result<void> LMInvoiceMail::send(TAInvoice *invoice, const Runner &runner) {
    const QString path = LMInvoiceOutput::generateTemporaryPdf(invoice);
    if (path.isEmpty() || !QFileInfo::exists(path))
        return pdfMissing(tr("invoice"), path);
    return runner(QStringLiteral("xdg-email"), mailArgumentsForInvoice(invoice, path));
}

Result<void> LMInvoiceMail::sendTemplate(LMInvoiceTemplateClass *invoiceTemplate,
                                         const Runner &runner) {
    if (!invoiceTemplate)
        return Error{ErrorCode::Generic, tr("Choose a template to mail.")};
    const QString path = LMInvoiceOutput::generateTemporaryTemplatePdf(invoiceTemplate);
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return pdfMissing(tr("template"), path);
    return runner(QStringLiteral("xdg-email"),
                  mailArguments(QFileInfo(path).completeBaseName(), path, QString(), QString()));
}

Result<void> LMInvoiceMail::openWithDesktop(const QString &path) {
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        return {};
    return Error{ErrorCode::Generic,
                 tr("No program opened \"%1\". Choose a default application for PDF files in "
                    "the desktop's settings, then try again.")
                     .arg(path)};
}

LMInvoiceMail::Alert LMInvoiceMail::previewErrorAlert() {
    return Alert{tr("Preview error"), tr("Unable to open invoice preview."), tr("OK")};
}

std::optional<LMInvoiceMail::Alert> LMInvoiceMail::preview(TAInvoice *invoice,
                                                           const Opener &opener) {
    const QString path = LMInvoiceOutput::generateTemporaryPdf(invoice);
    // A file that could not be written has had its reason logged already.
    if (path.isEmpty() || !QFileInfo::exists(path))
        return previewErrorAlert();
    if (auto opened = opener(path); !opened) {
        qWarning("%s", qUtf8Printable(opened.error().message));
        return previewErrorAlert();
    }
    return std::nullopt;
}
