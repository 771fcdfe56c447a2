#include "cli/CliPdfCommand.h"

#include "cli/CliArguments.h"
#include "cli/CliDocument.h"
#include "invoicelayout/render/LMInvoiceOutput.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAInvoice.h"

#include <QDir>
#include <QSet>

QString CliPdfCommand::usage() const {
    return QStringLiteral(
        "Usage: billfold-cli pdf FILE --invoice NUMBER -o OUT.pdf [--template NAME]\n"
        "       billfold-cli pdf FILE --all DIR [--template NAME]\n\n"
        "Draws invoices through their templates into PDF files, one page per sheet,\n"
        "with selectable text. An invoice without a template gets the document's first.\n"
        "  --invoice  the invoice number; -o names the file to write\n"
        "  --all      every invoice into DIR (created when missing), named by number\n"
        "  --template draw with the document's template of that name instead; the\n"
        "             document is not changed\n");
}

TAInvoice *CliPdfCommand::findInvoice(CliDocument &document, const QString &number) {
    for (TAInvoice *invoice :
         TAContextDatabase::getInvoicesInContext(document.database().context()))
        if (invoice->identification() == number)
            return invoice;
    return nullptr;
}

Result<void> CliPdfCommand::chooseTemplate(CliDocument &document, TAInvoice *invoice,
                                           const QString &name) {
    if (name.isEmpty()) {
        LMInvoiceOutput::assignFirstTemplateIfNone(invoice);
        return {};
    }
    for (LMInvoiceTemplateClass *invoiceTemplate :
         TAContextDatabase::getTemplatesInContext(document.database().context())) {
        if (invoiceTemplate->name() == name) {
            invoice->setInvoiceTemplate(invoiceTemplate);
            return {};
        }
    }
    return Error{ErrorCode::Generic, QStringLiteral("no template named '%1'").arg(name)};
}

QString CliPdfCommand::fileNameFor(TAInvoice *invoice, int position) {
    QString name = invoice->identification().trimmed();
    if (name.isEmpty())
        name = QStringLiteral("invoice-%1").arg(position);
    name.replace(u'/', u'_').replace(u':', u'_').replace(u'\\', u'_');
    return name + QStringLiteral(".pdf");
}

int CliPdfCommand::run(const QStringList &arguments, QTextStream &out, QTextStream &err) {
    auto parsed =
        CliArguments::parse(arguments, {QStringLiteral("--invoice"), QStringLiteral("-o"),
                                        QStringLiteral("--all"), QStringLiteral("--template")});
    if (!parsed)
        return usageError(err, parsed.error().message);
    if (parsed->positional().size() != 1)
        return usageError(err, QStringLiteral("expected one document file"));
    const bool all = parsed->has(QStringLiteral("--all"));
    const bool one = parsed->has(QStringLiteral("--invoice")) && parsed->has(QStringLiteral("-o"));
    if (all == one)
        return usageError(err, QStringLiteral("give either --invoice and -o, or --all"));

    const QString path = parsed->positional()[0];
    auto opened = CliDocument::read(path, CliDocument::View::Opened);
    if (!opened)
        return fail(err, path, opened.error().message, CliExit::FileUnusable);
    (*opened)->refreshCachedTotals();
    CliDocument &document = **opened;
    const QString templateName = parsed->value(QStringLiteral("--template"));
    if (all)
        return writeAll(document, parsed->value(QStringLiteral("--all")), templateName, out, err);

    const QString number = parsed->value(QStringLiteral("--invoice"));
    TAInvoice *invoice = findInvoice(document, number);
    if (!invoice)
        return fail(err, path, QStringLiteral("no invoice numbered '%1'").arg(number),
                    CliExit::Usage);
    if (auto chosen = chooseTemplate(document, invoice, templateName); !chosen)
        return usageError(err, chosen.error().message);
    const QString target = parsed->value(QStringLiteral("-o"));
    const Result<int> pages = LMInvoiceOutput::writePdf(invoice, target);
    if (!pages)
        return fail(err, target, pages.error().message, CliExit::FileUnusable);
    out << target << ": " << pages.value() << (pages.value() == 1 ? " page\n" : " pages\n");
    return CliExit::Ok;
}

int CliPdfCommand::writeAll(CliDocument &document, const QString &folder,
                            const QString &templateName, QTextStream &out, QTextStream &err) {
    if (!QDir().mkpath(folder))
        return fail(err, folder, QStringLiteral("cannot create the folder"), CliExit::FileUnusable);
    const QDir dir(folder);
    int position = 0;
    QSet<QString> used;
    for (TAInvoice *invoice :
         TAContextDatabase::getInvoicesInContext(document.database().context())) {
        ++position;
        if (auto chosen = chooseTemplate(document, invoice, templateName); !chosen)
            return usageError(err, chosen.error().message);
        QString name = fileNameFor(invoice, position);
        // Two invoices of one number must not overwrite each other.
        if (used.contains(name))
            name.insert(name.size() - 4, QStringLiteral("-%1").arg(position));
        used.insert(name);
        const QString target = dir.filePath(name);
        const Result<int> pages = LMInvoiceOutput::writePdf(invoice, target);
        if (!pages)
            return fail(err, target, pages.error().message, CliExit::FileUnusable);
        out << target << ": " << pages.value() << (pages.value() == 1 ? " page\n" : " pages\n");
    }
    return CliExit::Ok;
}
