// SPDX-License-Identifier: MIT
#include "tests/resources/catalogue_keys.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>
#include <algorithm>

namespace
{

const QString root = QStringLiteral(VIRELO_SOURCE_DIR);
const QStringList folders = {"app",      "zeroconf", "control", "device",
                             "overview", "settings", "network", "update"};

struct Text {
    QByteArray context;
    QByteArray source;
};

// Texts that pass through tr and have no key: they are English in German as well, and that is meant.
bool stays_english(const Text &text)
{
    static const QMap<QByteArray, QList<QByteArray>> meant = {
        {"Client_Hood", {"Restart App!"}},
        {"Client_Overview", {"in "}},
        {"Client_Settings_Air", {"SPDIF Vol:"}},
        {"Client_Settings_Empty2", {"TEST!... :-(", "Speaker:"}},
        {"Client_WLANs", {"OK"}},
    };
    return meant.value(text.context).contains(text.source);
}

// Keys that no text asks for, and that is meant.
bool stays_unused(const Text &text)
{
    static const QMap<QByteArray, QList<QByteArray>> meant = {
        {"Client_Hood", {"Restart App to turn on debugging"}},
        {"Client_Overview", {"in WiFi", "in your WiFi"}},
        {"Client_Settings_Air", {"Volume:"}},
    };
    return meant.value(text.context).contains(text.source);
}

QList<Text> texts_of(QIODevice *catalogue)
{
    QList<Text> texts;
    QByteArray context;
    QXmlStreamReader xml(catalogue);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText().toUtf8();
        else if (xml.name() == QLatin1String("source"))
            texts.append({context, xml.readElementText().toUtf8()});
    }
    return texts;
}

} // namespace

// The sources against the catalogues: a text that differs from its key by one character would stay
// untranslated, and so would one that no longer passes through tr.
class tst_translated_texts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void text_of_the_sources_has_a_german_key_data();
    void text_of_the_sources_has_a_german_key();
    void german_key_is_asked_for_by_the_sources_data();
    void german_key_is_asked_for_by_the_sources();

private:
    QTemporaryDir folder;
    QList<Text> texts; // of the sources
};

void tst_translated_texts::initTestCase()
{
    const QString found = folder.filePath("found.ts");
    QStringList arguments = {"-silent", "-locations", "none", "-I", root};
    for (const QString &name : folders)
        arguments.append(root + "/" + name);
    arguments += {"-ts", found};
    QCOMPARE(QProcess::execute(VIRELO_LUPDATE, arguments), 0);
    QFile file(found);
    QVERIFY(file.open(QIODevice::ReadOnly));
    texts = texts_of(&file);
    QVERIFY(!texts.isEmpty());
}

void tst_translated_texts::text_of_the_sources_has_a_german_key_data()
{
    QTest::addColumn<QByteArray>("context");
    QTest::addColumn<QByteArray>("source");
    for (const Text &text : qAsConst(texts))
        QTest::addRow("%s: %s", text.context.constData(), text.source.constData())
            << text.context << text.source;
}

void tst_translated_texts::text_of_the_sources_has_a_german_key()
{
    QFETCH(QByteArray, context);
    QFETCH(QByteArray, source);
    QVERIFY(german_keys.value(context).contains(source) || stays_english({context, source}));
}

void tst_translated_texts::german_key_is_asked_for_by_the_sources_data()
{
    QTest::addColumn<QByteArray>("context");
    QTest::addColumn<QByteArray>("source");
    for (auto keys = german_keys.begin(); keys != german_keys.end(); ++keys) {
        for (const QByteArray &source : keys.value())
            QTest::addRow("%s: %s", keys.key().constData(), source.constData()) << keys.key() << source;
    }
}

void tst_translated_texts::german_key_is_asked_for_by_the_sources()
{
    QFETCH(QByteArray, context);
    QFETCH(QByteArray, source);
    const bool asked = std::any_of(texts.cbegin(), texts.cend(), [&](const Text &text) {
        return text.context == context && text.source == source;
    });
    QCOMPARE(asked, !stays_unused({context, source}));
}

QTEST_GUILESS_MAIN(tst_translated_texts)
#include "tst_translated_texts.moc"
