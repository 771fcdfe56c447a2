// A seeded mutation loop over the JSON importer. The sample business, in the interchange form,
// is damaged a few edits at a time; whatever the importer makes of a text, it must not crash,
// a refusal must name where (a JSON path or an offset) on one short line, and an accepted text
// must export, import and export again to the same bytes.
//
// BILLFOLD_FUZZ_SECONDS sets the run time (15 s by default), BILLFOLD_FUZZ_SEED the seed (printed
// at the start): the same seed gives the same texts in the same order.
#include "importsync/json/JsonDocumentExporter.h"
#include "importsync/json/JsonDocumentImporter.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocModel.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace {

using Rng = std::mt19937_64;

std::size_t below(Rng &rng, std::size_t bound) {
    return bound == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, bound - 1)(rng);
}

template <class T, std::size_t N> const T &pick(Rng &rng, const T (&items)[N]) {
    return items[below(rng, N)];
}

// The sample's source made into an interchange text: the header of the form, and invoices
// without their designs, which the source names by name. A few design columns are added for
// the floating-point values that the business itself has none of.
QByteArray sampleInterchange() {
    QFile source(QStringLiteral(BILLFOLD_SOURCE_DIR "/src/resources/sample/Sample.json"));
    if (!source.open(QIODevice::ReadOnly))
        return {};
    QJsonObject root = QJsonDocument::fromJson(source.readAll()).object();
    root.remove(QStringLiteral("datesRelativeTo"));
    root.insert(QStringLiteral("format"), JsonDocumentExporter::kFormat);
    root.insert(QStringLiteral("model"), TADocModel::kVersionName);
    QJsonObject objects = root.value(QStringLiteral("objects")).toObject();
    for (auto it = objects.begin(); it != objects.end(); ++it) {
        QJsonObject object = it.value().toObject();
        if (object.contains(QStringLiteral("template"))) {
            object.insert(QStringLiteral("template"), QJsonValue());
            it.value() = object;
        }
    }
    const QJsonValue widths[] = {72.5, QStringLiteral("NaN"), QStringLiteral("-Infinity")};
    for (int i = 0; i < 3; ++i)
        objects.insert(QStringLiteral("InvoiceTemplateColumn/%1").arg(i + 1),
                       QJsonObject{{QStringLiteral("width"), widths[i]},
                                   {QStringLiteral("name"), QStringLiteral("Column")}});
    root.insert(QStringLiteral("objects"), objects);
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

struct Outcome {
    bool accepted = false;
    QString message;    // why it was refused
    QByteArray export_; // what an accepted text exports to
};

Outcome importAndExport(const QByteArray &json) {
    JsonDocumentImporter importer;
    if (auto read = importer.read(json); !read)
        return {false, read.error().message, {}};
    auto store = PersistentStore::createInMemory(TADocModel::model());
    if (!store)
        return {false, QStringLiteral("no store: ") + store.error().message, {}};
    ManagedObjectContext context(*store);
    if (auto built = importer.build(context); !built)
        return {false, built.error().message, {}};
    auto exported = JsonDocumentExporter(context).exportDocument();
    if (!exported)
        return {false, QStringLiteral("export failed: ") + exported.error().message, {}};
    return {true, {}, *exported};
}

// --- Mutations ---------------------------------------------------------------------------

void flipBit(QByteArray &text, Rng &rng) {
    if (!text.isEmpty())
        text[qsizetype(below(rng, text.size()))] ^= char(1 << below(rng, 8));
}

void insertBytes(QByteArray &text, Rng &rng) {
    static const char alphabet[] = "{}[]\",:\\ \n0123456789.-+eEtrufalsn/u";
    QByteArray bytes;
    for (std::size_t n = 1 + below(rng, 8); n > 0; --n)
        bytes.append(below(rng, 8) == 0 ? char(below(rng, 256))
                                        : alphabet[below(rng, sizeof alphabet - 1)]);
    text.insert(qsizetype(below(rng, text.size() + 1)), bytes);
}

void deleteRange(QByteArray &text, Rng &rng) {
    const qsizetype at = qsizetype(below(rng, text.size()));
    text.remove(at, qsizetype(1 + below(rng, 64)));
}

// Copies a piece of the text elsewhere: members, values and keys land in new places.
void splice(QByteArray &text, Rng &rng) {
    const qsizetype from = qsizetype(below(rng, text.size()));
    const QByteArray piece = text.mid(from, qsizetype(1 + below(rng, 200)));
    text.insert(qsizetype(below(rng, text.size() + 1)), piece);
}

// Where the value of a member starts: just past a '": ' at or after a random place.
qsizetype someValue(const QByteArray &text, Rng &rng) {
    const qsizetype at = text.indexOf("\": ", qsizetype(below(rng, text.size())));
    return at < 0 ? -1 : at + 3;
}

// The end of the value at `at`: a string, or a token up to the next ',' '}' or ']'.
qsizetype valueEnd(const QByteArray &text, qsizetype at) {
    if (at < text.size() && text[at] == '"') {
        for (qsizetype i = at + 1; i < text.size(); ++i) {
            if (text[i] == '\\')
                ++i;
            else if (text[i] == '"')
                return i + 1;
        }
        return text.size();
    }
    qsizetype end = at;
    while (end < text.size() && !QByteArrayView(",}]\n").contains(text[end]))
        ++end;
    return end;
}

void replaceValue(QByteArray &text, Rng &rng, const QByteArray &with) {
    if (const qsizetype at = someValue(text, rng); at >= 0)
        text.replace(at, valueEnd(text, at) - at, with);
}

// Values at and past the edges of every type the form knows.
void edgeValue(QByteArray &text, Rng &rng) {
    static const char *const values[] = {"0",
                                         "-0",
                                         "-0.0",
                                         "1.0",
                                         "1e0",
                                         "1e308",
                                         "1e309",
                                         "-1e-400",
                                         "5e-324",
                                         "9223372036854775807",
                                         "9223372036854775808",
                                         "-9223372036854775809",
                                         "18446744073709551616",
                                         "123456789012345678901234567890",
                                         "true",
                                         "null",
                                         "[]",
                                         "{}",
                                         "\"\"",
                                         "\"NaN\"",
                                         "\"Infinity\"",
                                         "\"-Infinity\"",
                                         "\"-0\"",
                                         "\"99999999999999999999999999999999999999\"",
                                         "\"-99999999999999999999999999999999999999\"",
                                         "\"999999999999999999999999999999999999.99\"",
                                         "\"999999999999999999999999999999999999999\"",
                                         "\"0.00000000000000000000000000000000000001\"",
                                         "\"1e5\"",
                                         "\"0,5\"",
                                         "\".5\"",
                                         "\"0001-01-01T00:00:00+14:00\"",
                                         "\"0001-01-01T14:00:00+14:00\"",
                                         "\"9999-12-31T23:59:59-12:00\"",
                                         "\"9999-12-31T09:59:59.999-14:00\"",
                                         "\"0000-12-31T23:59:59Z\"",
                                         "\"2024-02-30T00:00:00Z\"",
                                         "\"2024-01-01T00:00:00.1234Z\"",
                                         "\"QQ==\"",
                                         "\"QQ=\"",
                                         "\"Q===\"",
                                         "\"A\"",
                                         "{\"objectURI\": \"Project/1\"}",
                                         "{\"objectURI\": \"Client/1\"}",
                                         "{\"objectURI\": \"Gizmo/1\"}",
                                         "\"Client/1\"",
                                         "\"Project/2\"",
                                         "\"Invoice/99\"",
                                         "\"Timer/1\"",
                                         "\"Item/1\"",
                                         "\"Client/01\""};
    replaceValue(text, rng, pick(rng, values));
    if (below(rng, 3) == 0) { // a decimal far past 38 digits
        QByteArray digits(qsizetype(39 + below(rng, 200)), '9');
        if (below(rng, 2) == 0)
            digits = "0." + QByteArray(qsizetype(120 + below(rng, 20)), '0') + '1';
        replaceValue(text, rng, '"' + digits + '"');
    }
}

void swapNumber(QByteArray &text, Rng &rng) {
    qsizetype at = qsizetype(below(rng, text.size()));
    while (at < text.size() && !(text[at] >= '0' && text[at] <= '9'))
        ++at;
    qsizetype end = at;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9')
        ++end;
    static const char *const numbers[] = {
        "0", "1", "2", "99", "00", "4294967296", "99999999999999999999999999", "1.5", "1e2"};
    if (at < text.size())
        text.replace(at, end - at, pick(rng, numbers));
}

// A member line written twice: the importer must name the second.
void duplicateMember(QByteArray &text, Rng &rng) {
    const qsizetype start = text.indexOf("\n      \"", qsizetype(below(rng, text.size())));
    if (start < 0)
        return;
    const qsizetype end = text.indexOf('\n', start + 1);
    if (end < 0)
        return;
    QByteArray line = text.mid(start, end - start);
    if (!line.endsWith(','))
        line.append(',');
    text.insert(start, line);
}

void deepNesting(QByteArray &text, Rng &rng) {
    static const qsizetype depths[] = {64, 5000, 200000};
    const qsizetype depth = pick(rng, depths);
    const bool arrays = below(rng, 2) == 0;
    QByteArray nested = arrays
                            ? QByteArray(depth, '[') + QByteArray(depth, ']')
                            : QByteArray("{\"a\": ").repeated(depth) + "1" + QByteArray(depth, '}');
    replaceValue(text, rng, nested);
}

// Escapes and bytes that strings may or may not hold: surrogates of both kinds alone, paired,
// doubled and reversed, escapes that are none, raw control and non-UTF-8 bytes.
void oddEscape(QByteArray &text, Rng &rng) {
    static const char *const pieces[] = {"\\udc00",
                                         "\\ud800",
                                         "\\ud800\\udc00",
                                         "\\udbff\\udfff",
                                         "\\udc00\\ud800",
                                         "\\udc00\\udc00",
                                         "\\ud800\\ud800",
                                         "\\u0000",
                                         "\\\\",
                                         "\\\"",
                                         "\\/",
                                         "\\b",
                                         "\\x41",
                                         "\\u12",
                                         "\\uZZZZ",
                                         "\x01",
                                         "\xff",
                                         "\xed\xa0\x80",
                                         "\xc0\xaf",
                                         "\xf0\x9d\x84\x9e",
                                         "\\"};
    const qsizetype quote = text.indexOf('"', qsizetype(below(rng, text.size())));
    if (quote >= 0)
        text.insert(quote + (below(rng, 2) == 0 ? 1 : 0), pick(rng, pieces));
}

void header(QByteArray &text, Rng &rng) {
    static const std::pair<const char *, const char *> edits[] = {
        {"\"formatVersion\": 1", "\"formatVersion\": 1.0"},
        {"\"formatVersion\": 1", "\"formatVersion\": 1e0"},
        {"\"formatVersion\": 1", "\"formatVersion\": \"1\""},
        {"\"model\": \"TADoc_1.3\"", "\"model\": \"TADoc_1.2\""},
        {"\"model\": \"TADoc_1.3\"", "\"model\": \"TADoc_1.3\", \"model\": \"TADoc_1.3\""},
        {"\"format\": \"billfold-json\"", "\"format\": \"billfold-sample\""},
        {"\"objects\": {", "\"objects\": {\"Tax/1\": {},"},
    };
    const auto &edit = pick(rng, edits);
    text.replace(edit.first, edit.second);
}

using Mutation = void (*)(QByteArray &, Rng &);
// The structure-keeping edits come more often: most flipped bytes only make text no JSON.
const Mutation kMutations[] = {flipBit,     insertBytes, deleteRange, splice,     edgeValue,
                               edgeValue,   edgeValue,   swapNumber,  swapNumber, duplicateMember,
                               deepNesting, oddEscape,   oddEscape,   header};

bool namesWhere(const QString &message) {
    return message.startsWith(u'$') ||
           message.startsWith(QLatin1String("not valid JSON at offset "));
}

QByteArray failureFile(quint64 seed, int iteration, const QByteArray &text) {
    const QString path = QDir::temp().filePath(
        QStringLiteral("billfold-json-fuzz-%1-%2.json").arg(seed).arg(iteration));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(text);
    return path.toUtf8();
}

double secondsToRun() {
    bool ok = false;
    const double seconds = qEnvironmentVariable("BILLFOLD_FUZZ_SECONDS").toDouble(&ok);
    return ok && seconds > 0 ? seconds : 15.0;
}

quint64 seedToUse() {
    bool ok = false;
    const quint64 seed = qEnvironmentVariable("BILLFOLD_FUZZ_SEED").toULongLong(&ok);
    return ok ? seed : 20261123;
}

} // namespace

TEST(JsonImportFuzzTest, DamagedTextsAreRefusedByPlaceOrRoundTrip) {
    const QByteArray sample = sampleInterchange();
    ASSERT_FALSE(sample.isEmpty());
    const Outcome start = importAndExport(sample);
    ASSERT_TRUE(start.accepted) << start.message.toStdString();
    // Texts to damage: the source, its export, and texts accepted along the way.
    std::vector<QByteArray> pool{sample, start.export_};

    const quint64 seed = seedToUse();
    const double seconds = secondsToRun();
    std::printf("JSON import fuzz: seed %llu, %.0f s (BILLFOLD_FUZZ_SEED, BILLFOLD_FUZZ_SECONDS)\n",
                static_cast<unsigned long long>(seed), seconds);
    Rng rng(seed);
    QElapsedTimer clock;
    clock.start();
    int iteration = 0, accepted = 0;
    for (; clock.elapsed() < qint64(seconds * 1000); ++iteration) {
        QByteArray text = pool[below(rng, pool.size())];
        for (std::size_t edits = 1 + below(rng, 3); edits > 0; --edits)
            pick(rng, kMutations)(text, rng);
        const Outcome outcome = importAndExport(text);
        const auto where = [&] {
            return "seed " + std::to_string(seed) + ", text " + std::to_string(iteration) +
                   " saved as " + failureFile(seed, iteration, text).toStdString();
        };
        if (!outcome.accepted) {
            ASSERT_TRUE(namesWhere(outcome.message))
                << outcome.message.left(400).toStdString() << "\n"
                << where();
            ASSERT_FALSE(outcome.message.contains(u'\n')) << where();
            ASSERT_LT(outcome.message.size(), 1000) << where();
            continue;
        }
        ++accepted;
        const Outcome again = importAndExport(outcome.export_);
        ASSERT_TRUE(again.accepted) << again.message.toStdString() << "\n" << where();
        ASSERT_EQ(again.export_, outcome.export_) << "export, import, export differ\n" << where();
        if (pool.size() < 48)
            pool.push_back(text);
        else
            pool[2 + below(rng, pool.size() - 2)] = text;
    }
    std::printf("JSON import fuzz: %d texts, %d accepted\n", iteration, accepted);
    EXPECT_GT(accepted, 0) << "no damaged text was accepted: the loop tried nothing past reading";
}
