#include "importsync/json/JsonKeyIndex.h"

#include "objectstore/EntityDescription.h"
#include "store/TADocModel.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string clientKey(qint64 number) {
    return "Client/" + std::to_string(number);
}

} // namespace

TEST(JsonKeyIndexTest, EveryNumberIsFoundOnceWhetherNearOrFar) {
    JsonKeyIndex index(TADocModel::model());
    const EntityDescription *client = index.entity("Client");
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(index.entity("Gizmo"), nullptr);
    // 5000 and the largest number arrive while the table is small; the table then grows past
    // 5000, which must still be found, once.
    const qint64 far = 999'999'999'999'999'999;
    ASSERT_TRUE(index.insert(client, 5000, 0));
    ASSERT_TRUE(index.insert(client, far, 1));
    for (qint64 n = 1; n <= 3000; ++n)
        ASSERT_TRUE(index.insert(client, n, 1 + n));
    ASSERT_TRUE(index.insert(client, 4500, 9000));
    EXPECT_FALSE(index.insert(client, 5000, 9001));
    EXPECT_FALSE(index.insert(client, far, 9002));
    EXPECT_FALSE(index.insert(client, 1, 9003));
    EXPECT_EQ(index.find(clientKey(5000)).at, 0);
    EXPECT_EQ(index.find(clientKey(far)).at, 1);
    EXPECT_EQ(index.find(clientKey(3000)).at, 3001);
    EXPECT_EQ(index.find(clientKey(4500)).entity, client);

    // Only a key in its one form names an object, and only of its own entity.
    for (const char *absent :
         {"Client/4000", "Client/03", "Client/0", "Client/", "/3", "Client3", "Client/1x",
          "Client/+1", "Clients/1", "Project/1", "client/1", "Client/1000000000000000000"})
        EXPECT_EQ(index.find(absent).at, -1) << absent;
}
