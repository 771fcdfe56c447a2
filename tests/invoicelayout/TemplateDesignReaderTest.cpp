#include "invoicelayout/LMTemplateDesignReader.h"
#include "store/entities/TAKeys.h"

#include <gtest/gtest.h>

namespace {
LMTemplateDesignReader reader() {
    return LMTemplateDesignReader([](const QString &) { return QByteArray(); });
}
} // namespace

TEST(TemplateDesignReaderTest, BadTextSaysWhereOrWhatIsWrong) {
    const auto broken = reader().read(R"({"name": "Sky", "size": [595, 842)");
    ASSERT_FALSE(broken);
    EXPECT_TRUE(broken.error().message.startsWith(
        QStringLiteral("The template design is not valid JSON: ")))
        << broken.error().message.toStdString();
    EXPECT_TRUE(broken.error().message.endsWith(QStringLiteral(" at character 34.")))
        << broken.error().message.toStdString();

    const auto list = reader().read(R"([{"name": "Sky"}])");
    ASSERT_FALSE(list);
    EXPECT_TRUE(list.error().message.contains(QStringLiteral("must be a JSON object")));

    const auto design = reader().read(R"({"name": "Sky", "pages": [{"elements": [{"type": 2}]}]})");
    ASSERT_TRUE(design) << design.error().message.toStdString();
    EXPECT_EQ(design->value(TAKey::name).toString(), QStringLiteral("Sky"));
    EXPECT_EQ(design->value(TAKey::pages).toList().size(), 1);
}
