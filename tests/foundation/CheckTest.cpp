#include "foundation/Check.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

// What the check category said while a test ran; other categories pass through untouched.
QStringList g_reports;
QtMessageHandler g_previous = nullptr;

void recordReports(QtMsgType type, const QMessageLogContext &context, const QString &message) {
    if (context.category && qstrcmp(context.category, "billfold.check") == 0 &&
        type == QtWarningMsg)
        g_reports.append(message);
    else if (g_previous)
        g_previous(type, context, message);
}

class CheckTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_reports.clear();
        g_previous = qInstallMessageHandler(recordReports);
    }
    void TearDown() override { qInstallMessageHandler(g_previous); }
};

// Returns -1 through the check's action, else the value.
int valueOrMinusOne(const int *value) {
    BF_CHECK(value != nullptr, return -1);
    return *value;
}

int failingCheckLine = 0;
int sumSkippingNegatives(const QList<int> &values) {
    int sum = 0;
    for (int value : values) {
        // clang-format off
        failingCheckLine = __LINE__; BF_CHECK(value >= 0, continue);
        // clang-format on
        sum += value;
    }
    return sum;
}

} // namespace

TEST_F(CheckTest, PassingCheckRunsNothingAndSaysNothing) {
    const int five = 5;
    EXPECT_EQ(valueOrMinusOne(&five), 5);
    int evaluations = 0;
    BF_CHECK(++evaluations == 1, FAIL() << "the action ran for a true condition");
    EXPECT_EQ(evaluations, 1);
    EXPECT_TRUE(g_reports.isEmpty()) << g_reports.join(u'\n').toStdString();
}

TEST_F(CheckTest, FailingCheckReportsWhereAndWhatThenRecovers) {
    EXPECT_EQ(valueOrMinusOne(nullptr), -1);
    ASSERT_EQ(g_reports.size(), 1);
    EXPECT_TRUE(g_reports.first().endsWith(QStringLiteral(": value != nullptr")))
        << g_reports.first().toStdString();
    EXPECT_TRUE(g_reports.first().contains(QStringLiteral("CheckTest.cpp:")));

    g_reports.clear();
    EXPECT_EQ(sumSkippingNegatives({1, -2, 3, -4}), 4);
    // Debug and verbose builds report each failure; others report a failing check once.
#if !defined(NDEBUG) || defined(BILLFOLD_CHECK_VERBOSE)
    ASSERT_EQ(g_reports.size(), 2);
#else
    ASSERT_EQ(g_reports.size(), 1);
#endif
    EXPECT_EQ(
        g_reports.first(),
        QStringLiteral("%1:%2: value >= 0").arg(QString::fromUtf8(__FILE__)).arg(failingCheckLine));
}
