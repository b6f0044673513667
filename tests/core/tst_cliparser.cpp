#include "TestMain.h"

#include "core/CliParser.h"

namespace {

// A command line like the tool's: a folder, a repeatable folder option, a
// value option, a fixed-set option and a flag.
CliCommand table()
{
    return {.name = "walk",
            .arguments = {{.name = "PATH", .kind = CliArgument::Kind::folder}},
            .options = {
                {.name = "--exclude", .value = {.name = "PATH", .kind = CliArgument::Kind::folder}, .repeatable = true},
                {.name = "--top", .shortName = "-t", .value = {.name = "N"}},
                {.name = "--shell",
                 .value = {.name = "SHELL", .kind = CliArgument::Kind::choice, .choices = {"bash", "zsh"}}},
                {.name = "--json"},
            }};
}

QByteArrayList words(std::initializer_list<const char *> list)
{
    QByteArrayList out;
    for (const char *w : list)
        out << QByteArray(w);
    return out;
}

} // namespace

class TestCliParser : public QObject
{
    Q_OBJECT

private slots:
    void readsWhatTheTableHolds()
    {
        CliParser p(table());
        QVERIFY2(p.parse(words({"--exclude", "/a", "root", "--exclude=/b", "-t", "7", "--json", "--shell=zsh"})),
                 qPrintable(p.error()));
        QCOMPARE(p.values("--exclude"), words({"/a", "/b"}));
        QCOMPARE(p.value("--top"), QByteArray("7")); // given by its short name, read by its long one
        QCOMPARE(p.value("--shell"), QByteArray("zsh"));
        QVERIFY(p.isSet("--json"));
        QCOMPARE(p.positional(), words({"root"}));

        // A value is the next word even when it looks like an option; after
        // "--" an option's spelling is a path; "-" alone is a path.
        QVERIFY(p.parse(words({"--exclude", "--json", "--", "--json"})));
        QCOMPARE(p.values("--exclude"), words({"--json"}));
        QVERIFY(!p.isSet("--json"));
        QCOMPARE(p.positional(), words({"--json"}));
        QVERIFY(p.parse(words({"-"})));
        QCOMPARE(p.positional(), words({"-"}));

        // Nothing from the previous reading stays; an empty value is a value.
        QVERIFY(p.parse(words({"--top="})));
        QVERIFY(p.isSet("--top"));
        QVERIFY(p.value("--top").isEmpty());
        QVERIFY(!p.isSet("--exclude"));
        QVERIFY(p.value("--shell").isNull());
    }

    void refusesWhatTheTableLacks_data()
    {
        QTest::addColumn<QByteArrayList>("args");
        QTest::addColumn<QString>("error");
        QTest::newRow("unknown") << words({"root", "--colour"}) << "unknown option '--colour'";
        QTest::newRow("unknown with a value") << words({"--colour=red"}) << "unknown option '--colour'";
        QTest::newRow("prefix is no abbreviation") << words({"--js"}) << "unknown option '--js'";
        QTest::newRow("flag with a value") << words({"--json=yes"}) << "--json takes no value";
        QTest::newRow("value missing") << words({"root", "--top"}) << "--top needs N";
        QTest::newRow("outside the set") << words({"--shell", "fish"}) << "--shell takes one of bash, zsh, not 'fish'";
        QTest::newRow("one path too many") << words({"a", "b"}) << "one PATH at a time, please: 'b' is one too many";
    }
    void refusesWhatTheTableLacks()
    {
        QFETCH(QByteArrayList, args);
        QFETCH(QString, error);
        CliParser p(table());
        QVERIFY(!p.parse(args));
        QCOMPARE(p.error(), error);
    }

    void helpWinsOverWhatFollows()
    {
        CliParser p(table());
        QVERIFY(p.parse(words({"root", "-h", "--colour", "x", "y"})));
        QVERIFY(p.helpRequested());
        QVERIFY(p.parse(words({"--help"})));
        QVERIFY(p.helpRequested());
        // A mistake before it still counts; after "--" it is a path.
        QVERIFY(!p.parse(words({"--colour", "--help"})));
        QVERIFY(p.parse(words({"--", "--help"})));
        QVERIFY(!p.helpRequested());
    }

    void positionalChoicesAndRepeats()
    {
        CliParser shells({.name = "completion",
                          .arguments = {{.name = "SHELL", .kind = CliArgument::Kind::choice, .choices = {"bash"}}}});
        QVERIFY(shells.parse(words({"bash"})));
        QVERIFY(!shells.parse(words({"tcsh"})));
        QCOMPARE(shells.error(), u"SHELL is one of bash, not 'tcsh'"_qs);

        CliParser many({.name = "remove", .arguments = {{.name = "PATH", .repeatable = true}}});
        QVERIFY(many.parse(words({"a", "b", "c"})));
        QCOMPARE(many.positional().size(), 3);
        CliParser none({.name = "volumes"});
        QVERIFY(!none.parse(words({"x"})));
        QCOMPARE(none.error(), u"takes no arguments, not 'x'"_qs);
    }
};

SORVEL_TEST(TestCliParser);
#include "tst_cliparser.moc"
