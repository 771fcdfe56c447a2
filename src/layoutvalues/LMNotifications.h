#pragma once

#include <QString>

// Names of the template notifications; the strings are what observers listen for.
namespace LMNotification {
inline const QString pagesTableViewNeedsReload =
    QStringLiteral("LM_INVOICE_PAGES_TABLEVIEW_NEEDS_RELOAD");
inline const QString previewAllImagesNeedsUpdate =
    QStringLiteral("LM_INVOICE_PREVIEW_ALL_IMAGES_NEEDS_UPDATE");
inline const QString templateTableViewNeedsReload =
    QStringLiteral("LM_INVOICE_TEMPLATE_TABLEVIEW_NEEDS_RELOAD");
inline const QString previewImageChange =
    QStringLiteral("LM_INVOICE_PREVIEW_IMAGE_CHANGE_NOTIFICATION");
inline const QString needsReloadInvoiceStylesMenu =
    QStringLiteral("LMNotification_Needs_Reload_Invoice_Styles_menu");
} // namespace LMNotification
