#pragma once

#include <QList>
#include <QString>

// How an element of a given `type` is drawn. Stale types (old ones the renderer no longer
// knows, and unknown numbers) paint as a red box so that they stay visible.
enum class LMElementKind {
    PlainText,
    TotalsTable,
    TaggedText,
    Logo,
    PageNumber,
    Picture,
    ItemsTable,
    RoundedRectangle,
    Rectangle,
    Oval,
    Line,
    Stale
};

// The element types: numbers, titles and how each is drawn.
class LMElementTypes {
public:
    enum Type {
        CustomText = 0,
        Shape = 1,
        TotalAmounts = 2,
        InvoiceNumber = 3,
        InvoiceDate = 4,
        DueDate = 5,
        YourInfo = 6,
        YourAddress = 7,
        YourLogo = 8,
        ClientInfo = 9,
        ClientAddress = 10,
        PageNumber = 11,
        Picture = 12,
        InvoiceItems = 13,
        InvoiceComments = 14,
        PurchaseOrder = 15,
        RoundedRectangle = 20,
        RectangleShape = 21,
        Circle = 22,
        Line = 23
    };

    static LMElementKind kindForType(int type);
    // The title in the palette and on the canvas; empty for types without one.
    static QString titleForType(int type);
    // The palette's entries in their order.
    static QList<int> paletteTypes();
    static bool isShape(int type) { return type >= RoundedRectangle && type <= Line; }

private:
    LMElementTypes() = delete;
};
