#include "invoicelayout/render/LMTableRules.h"

QList<LMTableRules::Rule> LMTableRules::headerRules(int style, const QRectF &r) {
    switch (style) {
    case 1:
        return {{QRectF(r.x(), r.y() + r.height(), r.width(), 1), Qt::black}};
    case 3:
        return {{QRectF(r.x(), r.y() + r.height() - 1, r.width(), 1), lightGray()}};
    case 4:
        return {{QRectF(r.x(), r.y(), r.width(), 1), lightGray()},
                {QRectF(r.x(), r.y() + r.height() - 1, r.width(), 1), lightGray()}};
    default:
        return {};
    }
}

QList<LMTableRules::Rule> LMTableRules::rowRules(int style, const QRectF &r, bool last) {
    switch (style) {
    case 1:
        if (last)
            return {{QRectF(r.x(), r.y() + r.height() - 2, r.width(), 2), Qt::black}};
        return {{QRectF(r.x(), r.y() + r.height(), r.width(), 1), lightGray()}};
    case 2:
        if (last)
            return {{QRectF(r.x(), r.y() + r.height() - 1, r.width(), 1), Qt::black}};
        return {};
    case 3:
        return {{QRectF(r.x(), r.y() + r.height() - 1, r.width(), 1), lightGray()}};
    default:
        return {};
    }
}
