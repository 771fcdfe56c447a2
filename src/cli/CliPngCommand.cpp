#include "cli/CliPngCommand.h"

#include "cli/CliArguments.h"
#include "cli/CliDocument.h"
#include "cli/CliPdfCommand.h"
#include "invoicelayout/render/LMInvoiceOutput.h"
#include "store/entities/TAInvoice.h"

QString CliPngCommand::usage() const {
    return QStringLiteral(
        "Usage: billfold-cli png FILE --invoice NUMBER [--page N] -o OUT.png [--scale S]\n"
        "                        [--template NAME]\n\n"
        "Draws one page of an invoice (the first by default) as a PNG picture.\n"
        "  --scale     pixels per point, 1 by default (72 dots per inch)\n"
        "  --template  draw with the document's template of that name instead\n");
}

int CliPngCommand::run(const QStringList &arguments, QTextStream &out, QTextStream &err) {
    auto parsed = CliArguments::parse(
        arguments, {QStringLiteral("--invoice"), QStringLiteral("--page"), QStringLiteral("-o"),
                    QStringLiteral("--scale"), QStringLiteral("--template")});
    if (!parsed)
        return usageError(err, parsed.error().message);
    if (parsed->positional().size() != 1 || !parsed->has(QStringLiteral("--invoice")) ||
        !parsed->has(QStringLiteral("-o")))
        return usageError(err, QStringLiteral("expected a document file, --invoice and -o"));
    bool pageOk = true;
    const int page = parsed->has(QStringLiteral("--page"))
                         ? parsed->value(QStringLiteral("--page")).toInt(&pageOk)
                         : 1;
    bool scaleOk = true;
    const double scale = parsed->has(QStringLiteral("--scale"))
                             ? parsed->value(QStringLiteral("--scale")).toDouble(&scaleOk)
                             : 1;
    if (!pageOk || page < 1)
        return usageError(err, QStringLiteral("--page needs a page number from 1"));
    if (!scaleOk || scale <= 0 || scale > 16)
        return usageError(err, QStringLiteral("--scale needs a number above 0, at most 16"));

    const QString path = parsed->positional()[0];
    auto opened = CliDocument::read(path, CliDocument::View::Opened);
    if (!opened)
        return fail(err, path, opened.error().message, CliExit::FileUnusable);
    (*opened)->refreshCachedTotals();
    const QString number = parsed->value(QStringLiteral("--invoice"));
    TAInvoice *invoice = CliPdfCommand::findInvoice(**opened, number);
    if (!invoice)
        return fail(err, path, QStringLiteral("no invoice numbered '%1'").arg(number),
                    CliExit::Usage);
    const QString templateName = parsed->value(QStringLiteral("--template"));
    if (auto chosen = CliPdfCommand::chooseTemplate(**opened, invoice, templateName); !chosen)
        return usageError(err, chosen.error().message);
    const int pages = LMInvoiceOutput::pageCount(invoice);
    if (page > pages)
        return usageError(err, QStringLiteral("the invoice has %1 page(s)").arg(pages));
    const QString target = parsed->value(QStringLiteral("-o"));
    const QImage image = LMInvoiceOutput::renderPage(invoice, page, scale);
    if (image.isNull() || !image.save(target, "PNG"))
        return fail(err, target, QStringLiteral("cannot write the picture"), CliExit::FileUnusable);
    out << target << ": page " << page << " of " << pages << '\n';
    return CliExit::Ok;
}
