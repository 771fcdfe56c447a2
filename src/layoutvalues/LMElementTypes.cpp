#include "layoutvalues/LMElementTypes.h"

#include <QCoreApplication>

LMElementKind LMElementTypes::kindForType(int type) {
    switch (type) {
    case CustomText:
        return LMElementKind::PlainText;
    case TotalAmounts:
        return LMElementKind::TotalsTable;
    case InvoiceNumber:
    case InvoiceDate:
    case DueDate:
    case YourInfo:
    case ClientInfo:
    case InvoiceComments:
    case PurchaseOrder:
        return LMElementKind::TaggedText;
    case YourLogo:
        return LMElementKind::Logo;
    case PageNumber:
        return LMElementKind::PageNumber;
    case Picture:
        return LMElementKind::Picture;
    case InvoiceItems:
        return LMElementKind::ItemsTable;
    case RoundedRectangle:
        return LMElementKind::RoundedRectangle;
    case RectangleShape:
        return LMElementKind::Rectangle;
    case Circle:
        return LMElementKind::Oval;
    case Line:
        return LMElementKind::Line;
    default:
        return LMElementKind::Stale;
    }
}

QString LMElementTypes::titleForType(int type) {
    const char *title = nullptr;
    switch (type) {
    case CustomText:
    case Picture:
        title = "Custom Text";
        break;
    case Shape:
        title = "Shape";
        break;
    case TotalAmounts:
        title = "Total Amounts";
        break;
    case InvoiceNumber:
        title = "Invoice Number";
        break;
    case InvoiceDate:
        title = "Invoice Date";
        break;
    case DueDate:
        title = "Due Date";
        break;
    case YourInfo:
        title = "Your Info";
        break;
    case YourAddress:
        title = "Your Address";
        break;
    case YourLogo:
        title = "Your Logo";
        break;
    case ClientInfo:
        title = "Client Info";
        break;
    case ClientAddress:
        title = "Client Address";
        break;
    case PageNumber:
        title = "Page Number";
        break;
    case InvoiceItems:
        title = "Invoice Items";
        break;
    case InvoiceComments:
        title = "Invoice Comments";
        break;
    case PurchaseOrder:
        title = "Purchase Order";
        break;
    default:
        return {};
    }
    return QCoreApplication::translate("LMElementTypes", title);
}

QList<int> LMElementTypes::paletteTypes() {
    return {InvoiceNumber, PurchaseOrder, InvoiceDate,  DueDate,    YourInfo,       YourLogo,
            ClientInfo,    InvoiceItems,  TotalAmounts, PageNumber, InvoiceComments};
}
