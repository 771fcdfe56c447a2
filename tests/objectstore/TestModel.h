#pragma once

#include "objectstore/ManagedObjectModel.h"

#include <QTemporaryDir>

// A small model with every attribute type, inheritance, both link kinds and a cascade.
// Without `withExtra` it is the older model: no "Extra" entity, no SpecialOwner.level.
inline std::unique_ptr<ManagedObjectModel>
makeTestModel(const QString &version = QStringLiteral("Test_2"), bool withExtra = true) {
    auto model = std::make_unique<ManagedObjectModel>(version);
    model->addEntity(QStringLiteral("Base"), {}, true)
        .addAttribute(QStringLiteral("properties"), AttributeType::Binary);
    model->addEntity(QStringLiteral("Owner"), QStringLiteral("Base"))
        .addAttribute(QStringLiteral("name"), AttributeType::String)
        .addAttribute(QStringLiteral("count"), AttributeType::Integer)
        .addAttribute(QStringLiteral("flag"), AttributeType::Boolean)
        .addAttribute(QStringLiteral("amount"), AttributeType::Decimal)
        .addAttribute(QStringLiteral("when"), AttributeType::Date)
        .addAttribute(QStringLiteral("ratio"), AttributeType::Float)
        .addAttribute(QStringLiteral("status"), AttributeType::Integer, 1)
        .addToMany(QStringLiteral("things"), QStringLiteral("Thing"), QStringLiteral("owner"))
        .addToMany(QStringLiteral("notes"), QStringLiteral("Note"), QStringLiteral("owner"),
                   DeleteRule::Cascade);
    auto &special = model->addEntity(QStringLiteral("SpecialOwner"), QStringLiteral("Owner"));
    if (withExtra)
        special.addAttribute(QStringLiteral("level"), AttributeType::Integer);
    model->addEntity(QStringLiteral("Thing"), QStringLiteral("Base"), true)
        .addAttribute(QStringLiteral("title"), AttributeType::String)
        .addAttribute(QStringLiteral("price"), AttributeType::Decimal)
        .addToOne(QStringLiteral("owner"), QStringLiteral("Owner"), QStringLiteral("things"))
        .addToOne(QStringLiteral("buddy"), QStringLiteral("Owner"));
    model->addEntity(QStringLiteral("Widget"), QStringLiteral("Thing"))
        .addAttribute(QStringLiteral("size"), AttributeType::Integer);
    model->addEntity(QStringLiteral("Gadget"), QStringLiteral("Thing"));
    model->addEntity(QStringLiteral("Note"), QStringLiteral("Base"))
        .addAttribute(QStringLiteral("text"), AttributeType::String)
        .addToOne(QStringLiteral("owner"), QStringLiteral("Owner"), QStringLiteral("notes"));
    if (withExtra)
        model->addEntity(QStringLiteral("Extra"), QStringLiteral("Base"))
            .addAttribute(QStringLiteral("memo"), AttributeType::String);
    model->addFetchRequestTemplate(QStringLiteral("ownersNamed"),
                                   {QStringLiteral("Owner"), QStringLiteral("name == $param1")});
    model->addFetchRequestTemplate(QStringLiteral("allThings"), {QStringLiteral("Thing"), {}});
    const auto finished = model->finish();
    if (!finished)
        qFatal("%s", qPrintable(finished.error().message));
    return model;
}
