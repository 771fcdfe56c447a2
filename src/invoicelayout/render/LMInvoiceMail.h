#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class LMInvoiceTemplateClass;
class TAInvoice;

// Hands an invoice to the user's mail program as a new visible message with a subject, the
// client as recipient when known, and the PDF attached; and opens the PDF for a preview. A
// template can be mailed the same way, unfilled.
class LMInvoiceMail {
public:
    struct Alert {
        QString title;
        QString text;
        QString button;
        bool operator==(const Alert &) const = default;
    };

    // "Invoice", followed by the number when there is one.
    static QString subjectForNumber(const QString &identification);
    // The arguments of xdg-email. The recipient is added only when both name and address are
    // known, as a quoted display name before the address in angle brackets.
    static QStringList mailArguments(const QString &subject, const QString &attachment,
                                     const QString &recipientName, const QString &recipientAddress);
    static QStringList mailArgumentsForInvoice(TAInvoice *invoice, const QString &attachment);

    // Runs a program with arguments (no shell); an error unless it started and exited with
    // status 0.
    using Runner =
        std::function<Result<void>(const QString &program, const QStringList &arguments)>;
    static Result<void> runProcess(const QString &program, const QStringList &arguments);

    // Writes the temporary PDF and starts the mail program on it; an error when the file is
    // missing or the mail program failed.
    static Result<void> send(TAInvoice *invoice, const Runner &runner = runProcess);
    // The same for a template drawn for itself: no recipient, and the file's name less its
    // extension as subject.
    static Result<void> sendTemplate(LMInvoiceTemplateClass *invoiceTemplate,
                                     const Runner &runner = runProcess);

    // Opens the temporary PDF with the desktop's viewer; the alert to show when that fails.
    // The opener's reason goes to the log: the alert's text is the same whatever failed.
    using Opener = std::function<Result<void>(const QString &path)>;
    static Result<void> openWithDesktop(const QString &path);
    static std::optional<Alert> preview(TAInvoice *invoice, const Opener &opener = openWithDesktop);
    static Alert previewErrorAlert();

private:
    LMInvoiceMail() = delete;
};
