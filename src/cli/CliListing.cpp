#include "cli/CliListing.h"

#include "importsync/json/JsonDocumentExporter.h"
#include "objectstore/EntityDescription.h"
#include "store/entities/TACodes.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"

namespace {

using K = CliColumn::Kind;

CliColumn keyColumn() {
    return {QStringLiteral("key"), {}, K::Text, [](const ManagedObject &o) {
                return QVariant(JsonDocumentExporter::keyOf(&o));
            }};
}

CliColumn column(const char *name, K kind, const char *keyPath = nullptr) {
    return {QString::fromLatin1(name), QString::fromLatin1(keyPath ? keyPath : name), kind};
}

QVariant invoiceStatusWord(const ManagedObject &object) {
    const auto *invoice = dynamic_cast<const TAInvoice *>(&object);
    return invoice ? QVariant(TACodes::invoiceStatusWord(invoice->statusValue())) : QVariant();
}

QList<CliColumn> invoiceColumns() {
    return {keyColumn(),
            column("identification", K::Text),
            column("date", K::Date),
            column("dueDate", K::Date),
            column("status", K::Integer),
            {QStringLiteral("statusWord"), {}, K::Text, invoiceStatusWord},
            column("archived", K::Boolean),
            column("client", K::Text, "client.displayName"),
            column("project", K::Text, "project.name"),
            column("isOverdue", K::Boolean),
            column("isPaid", K::Boolean),
            column("subTotal", K::Money),
            column("totalTaxes", K::Money),
            column("totalDiscount", K::Money),
            column("total", K::Money),
            column("paid", K::Money),
            column("left", K::Money),
            column("currency", K::Text, "currency.code")};
}

CliListing invoices() {
    return {QStringLiteral("invoices"), TAEntity::Invoice, false, QStringLiteral("currency.code"),
            invoiceColumns()};
}

CliListing recurring() {
    QList<CliColumn> columns{keyColumn(),
                             column("identification", K::Text),
                             column("date", K::Date),
                             column("dueDate", K::Date),
                             column("repeatInterval", K::Integer),
                             {QStringLiteral("repeatWord"),
                              {},
                              K::Text,
                              [](const ManagedObject &o) {
                                  return QVariant(TACodes::repeatIntervalWord(
                                      int(o.integerForKey(TAKey::repeatInterval))));
                              }},
                             column("createAutomatically", K::Boolean),
                             column("client", K::Text, "client.displayName"),
                             column("total", K::Money),
                             column("currency", K::Text, "currency.code")};
    return {QStringLiteral("recurring"), TAEntity::RecurringInvoice, false,
            QStringLiteral("currency.code"), columns};
}

CliListing clients() {
    QList<CliColumn> columns{keyColumn(),
                             column("displayName", K::Text),
                             column("fullName", K::Text),
                             column("company", K::Text),
                             column("isCompany", K::Boolean),
                             column("email", K::Text),
                             column("phone", K::Text),
                             column("taxID", K::Text),
                             column("currency", K::Text, "currency.code"),
                             column("invoiced", K::Money),
                             column("paid", K::Money),
                             column("unpaid", K::Money),
                             column("overdue", K::Money),
                             column("balance", K::Money)};
    return {QStringLiteral("clients"), TAEntity::Client, false,
            QStringLiteral("currencyRelationship.code"), columns};
}

CliListing projects() {
    QList<CliColumn> columns{
        keyColumn(),
        column("name", K::Text),
        column("status", K::Integer),
        {QStringLiteral("statusWord"),
         {},
         K::Text,
         [](const ManagedObject &o) {
             return QVariant(TACodes::projectStatusWord(
                 TACodes::foldedProjectStatus(o.integerForKey(TAKey::status))));
         }},
        column("client", K::Text, "client.displayName"),
        column("dueDate", K::Date),
        column("projectTime", K::Integer),
        column("projectPrice", K::Money)};
    return {QStringLiteral("projects"), TAEntity::Project, false, QStringLiteral("currency.code"),
            columns};
}

CliListing items() {
    QList<CliColumn> columns{keyColumn(),
                             {QStringLiteral("type"),
                              {},
                              K::Text,
                              [](const ManagedObject &o) { return QVariant(o.entity()->name()); }},
                             column("name", K::Text),
                             column("sku", K::Text),
                             column("price", K::Decimal),
                             column("quantity", K::Decimal),
                             column("seconds", K::Integer),
                             column("discount", K::Decimal),
                             column("tax", K::Decimal),
                             column("taxName", K::Text),
                             column("project", K::Text, "project.name"),
                             column("invoice", K::Text, "invoice.identification"),
                             column("total", K::Decimal)};
    return {QStringLiteral("items"), TAEntity::Item, true, {}, columns};
}

CliListing payments() {
    QList<CliColumn> columns{keyColumn(),
                             column("date", K::Date),
                             column("amount", K::Money),
                             column("currencyCode", K::Text),
                             column("rate", K::Decimal),
                             column("invoice", K::Text, "invoice.identification"),
                             column("client", K::Text, "invoice.client.displayName")};
    return {QStringLiteral("payments"), TAEntity::Payment, false, QStringLiteral("currencyCode"),
            columns};
}

CliListing currencies() {
    QList<CliColumn> columns{keyColumn(),
                             column("code", K::Text),
                             column("title", K::Text),
                             column("isDefault", K::Boolean),
                             column("automaticallyDownload", K::Boolean),
                             column("rate", K::Decimal)};
    return {QStringLiteral("currencies"), TAEntity::Currency, false, {}, columns};
}

} // namespace

QStringList CliListing::kinds() {
    return {QStringLiteral("invoices"),  QStringLiteral("recurring"), QStringLiteral("clients"),
            QStringLiteral("projects"),  QStringLiteral("items"),     QStringLiteral("payments"),
            QStringLiteral("currencies")};
}

std::optional<CliListing> CliListing::forKind(const QString &kind) {
    using Maker = CliListing (*)();
    const std::pair<const char *, Maker> makers[]{
        {"invoices", invoices},    {"recurring", recurring}, {"clients", clients},
        {"projects", projects},    {"items", items},         {"payments", payments},
        {"currencies", currencies}};
    for (const auto &[name, make] : makers)
        if (kind == QLatin1String(name))
            return make();
    return std::nullopt;
}

QVariant CliListing::value(const CliColumn &column, const ManagedObject &object) const {
    if (column.compute)
        return column.compute(object);
    return object.valueForKeyPath(column.keyPath);
}

QString CliListing::currencyCode(const ManagedObject &object, const QString &fallback) const {
    const QString code =
        currencyKeyPath.isEmpty() ? QString() : object.valueForKeyPath(currencyKeyPath).toString();
    return code.isEmpty() ? fallback : code;
}
