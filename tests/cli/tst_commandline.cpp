// The two command lines as users meet them: help texts, manual pages and shell
// completions written by the executables from their tables, and the tool
// accepting every option its help names.

#include "Cli.h"
#include "TestMain.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

CliOutcome run(const QString &program, const QStringList &args, const QProcessEnvironment &env = {})
{
    QProcess p;
    if (!env.isEmpty())
        p.setProcessEnvironment(env);
    p.start(program, args);
    if (!p.waitForFinished(120000))
        qFatal("%s did not finish", qPrintable(program));
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(),
            p.readAllStandardError()};
}

QString text(const QByteArray &bytes) { return QString::fromUtf8(bytes); }

QString readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return text(file.readAll());
}

// The items of one "Heading:" list in a help text: the first word of each line
// indented by two spaces, and for options every spelling ("-h, --help N").
QStringList listed(const QString &help, const QString &heading)
{
    QStringList out;
    bool inside = false;
    for (const QString &line : help.split(u'\n')) {
        if (!line.startsWith(u' ')) {
            inside = line == heading;
            continue;
        }
        if (!inside || !line.startsWith(u"  "_qs) || line.startsWith(u"   "_qs))
            continue;
        const QString term = line.mid(2).section(u"  "_qs, 0, 0);
        for (const QString &part : term.split(u", "_qs))
            out << part.section(u' ', 0, 0);
    }
    return out;
}

struct Documented {
    QString command;
    QString option;
    QString value; // the value's name, if it takes one
    QStringList choices;
};

// What `sorvel --help` and `sorvel help COMMAND` name, with values and their sets.
QList<Documented> documented(QStringList *commands = nullptr)
{
    const QString help = text(sorvel({QStringLiteral("--help")}).out);
    const QStringList names = listed(help, u"Commands:"_qs);
    if (commands)
        *commands = names;
    QList<Documented> out;
    static const QRegularExpression line(uR"(^  (?:-\w, )?(-[-\w]+)(?: ([A-Z]+))?\s+(.*)$)"_qs);
    static const QRegularExpression set(uR"(is one of: ([^.]+)\.)"_qs);
    for (const QString &name : names) {
        const QString commandHelp = text(sorvel({QStringLiteral("help"), name}).out);
        // Each option's line, with the lines its text wraps onto.
        QStringList entries;
        bool inside = false;
        for (const QString &l : commandHelp.split(u'\n')) {
            if (!l.startsWith(u' '))
                inside = l == u"Options:"_qs;
            else if (inside && l.startsWith(u"   "_qs) && !entries.isEmpty())
                entries.last() += u' ' + l.trimmed();
            else if (inside)
                entries << l;
        }
        for (const QString &entry : entries) {
            const auto m = line.match(entry);
            if (!m.hasMatch())
                continue;
            Documented d{name, m.captured(1), m.captured(2), {}};
            if (const auto s = set.match(m.captured(3)); s.hasMatch())
                d.choices = s.captured(1).split(u", "_qs);
            out << d;
        }
    }
    return out;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

const QString app = QStringLiteral(SORVEL_APP);
const QString cliDocs = QStringLiteral(SORVEL_CLI_DOCS);
const QString appDocs = QStringLiteral(SORVEL_APP_DOCS);

// COMPREPLY after completing `words` (the last one being completed) with the
// bash script at `script`, in `folder`.
QStringList bashReplies(const QString &script, const QString &function, const QStringList &words, const QString &folder)
{
    QStringList quoted;
    for (const QString &w : words)
        quoted << u'\'' + QString(w).replace(u"'"_qs, u"'\\''"_qs) + u'\'';
    const QString code = QStringLiteral("source '%1' && cd '%2' && COMP_WORDS=(%3) && COMP_CWORD=%4 && %5 && "
                                        "printf '%s\\n' \"${COMPREPLY[@]}\"")
                             .arg(script, folder, quoted.join(u' '))
                             .arg(words.size() - 1)
                             .arg(function);
    const CliOutcome o = run(QStringLiteral("bash"),
                             {QStringLiteral("--norc"), QStringLiteral("--noprofile"), QStringLiteral("-c"), code});
    if (o.status != 0 || !o.err.isEmpty())
        qWarning("bash: %s", o.err.constData());
    return text(o.out).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void helpTexts()
    {
        // Asked for, help goes to standard output with status 0; each line fits
        // a terminal, the usage line aside.
        QStringList commands;
        const QList<Documented> options = documented(&commands);
        QVERIFY(commands.contains(u"scan"_qs) && commands.contains(u"completion"_qs) && commands.size() >= 8);
        for (const QString &name : commands) {
            const CliOutcome asked = sorvel({name, QStringLiteral("--help")});
            QCOMPARE(asked.status, 0);
            QCOMPARE(asked.out, sorvel({QStringLiteral("help"), name}).out);
            const QStringList lines = text(asked.out).split(u'\n');
            QVERIFY2(lines.first().startsWith(u"Usage: sorvel "_qs + name), qPrintable(lines.first()));
            for (const QString &line : lines.mid(1))
                QVERIFY2(line.size() <= 80, qPrintable(line));
        }
        const CliOutcome unknown = sorvel({QStringLiteral("help"), QStringLiteral("nope")});
        QCOMPARE(unknown.status, 2);
        QVERIFY2(unknown.err.contains("Usage: sorvel help [COMMAND]"), unknown.err.constData());

        // README's section on the tool names every option of every command.
        const QString readme = readFile(QStringLiteral(SORVEL_SOURCE_DIR "/README.md"));
        const QString section = readme.section(u"## The command-line tool"_qs, 1).section(u"\n## "_qs, 0, 0);
        for (const Documented &d : options)
            if (d.option != u"--help"_qs)
                QVERIFY2(section.contains(d.option), qPrintable(d.command + u' ' + d.option));

        // The app answers before any window exists: no display is needed.
        QProcessEnvironment bare = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            bare.remove(QString::fromLatin1(name));
        const CliOutcome version = run(app, {QStringLiteral("--version")}, bare);
        QCOMPARE(version.status, 0);
        QCOMPARE(version.out, QByteArray("sorvel-cleaner " SORVEL_VERSION "\n"));
        const CliOutcome help =
            run(app, {QStringLiteral("-section"), QStringLiteral("old"), QStringLiteral("-h")}, bare);
        QCOMPARE(help.status, 0);
        QCOMPARE(listed(text(help.out), u"Options:"_qs),
                 QStringList({"-scan", "-open", "-section", "-demo", "--version", "-h", "--help"}));
        QVERIFY2(text(help.out).simplified().contains(u"overview, largest, old, duplicates, cleanup"_qs),
                 help.out.constData());
    }

    void everyDocumentedOptionIsAccepted()
    {
        // Each option the help names, given to its command with a value from
        // its set (or a plain one) and a path that does not exist: none is
        // refused as unknown, and no command asks for an option its table lacks.
        QTemporaryDir tmp;
        const QString missing = tmp.filePath(QStringLiteral("missing"));
        const QList<Documented> options = documented();
        QVERIFY(options.size() >= 20);
        for (const Documented &d : options) {
            if (d.option == u"--help"_qs || d.command == u"help"_qs || d.command == u"completion"_qs)
                continue;
            QStringList args{d.command, d.option};
            if (!d.value.isEmpty())
                args << (!d.choices.isEmpty() ? d.choices.first() : d.value == u"PATH"_qs ? tmp.path() : u"1"_qs);
            if (d.command == u"remove"_qs)
                args << QStringLiteral("--dry-run");
            if (d.option == u"--import-ncdu"_qs)
                args.last() = missing; // read in place of a folder
            else if (d.command == u"scan"_qs || d.command == u"twins"_qs || d.command == u"remove"_qs ||
                     d.command == u"risk"_qs)
                args << missing;
            const CliOutcome o = sorvel(args);
            QVERIFY2(o.status == 0 || o.status == 1, qPrintable(args.join(u' ') + u": "_qs + text(o.err)));
            QVERIFY2(!o.err.contains("unknown option"), qPrintable(args.join(u' ')));
        }
        // And what it does not name is refused, by every command alike.
        for (const QString &command : {u"scan"_qs, u"junk"_qs, u"undo"_qs, u"volumes"_qs}) {
            const CliOutcome o = sorvel({command, QStringLiteral("--no-such-option")});
            QCOMPARE(o.status, 2);
            QVERIFY2(o.err.startsWith("sorvel " + command.toLatin1() + ": unknown option '--no-such-option'\nUsage: "),
                     o.err.constData());
        }
    }

    void manualPagesRender()
    {
        const QString groff = QStandardPaths::findExecutable(QStringLiteral("groff"));
        if (groff.isEmpty())
            QSKIP("groff is not installed: the manual pages cannot be rendered here");
        QStringList commands;
        const QList<Documented> options = documented(&commands);
        const struct {
            QString page;
            QStringList names;
        } pages[] = {
            {cliDocs + u"/sorvel.1"_qs, commands},
            {appDocs + u"/sorvel-cleaner.1"_qs, {"-scan", "-section", "-demo", "--version", "overview", "cleanup"}},
        };
        for (const auto &page : pages) {
            // Plain text: no bold or underline, for reading back.
            const CliOutcome o = run(groff, {QStringLiteral("-ww"), QStringLiteral("-man"), QStringLiteral("-Tutf8"),
                                             QStringLiteral("-P-cbou"), page.page});
            QCOMPARE(o.status, 0);
            QVERIFY2(o.err.isEmpty(), o.err.constData());
            // A dash may be a minus sign where groff is not told otherwise.
            const QString shown = text(o.out).replace(QChar(0x2212), u'-').replace(QChar(0x2010), u'-');
            for (const QString &heading :
                 {u"NAME"_qs, u"SYNOPSIS"_qs, u"DESCRIPTION"_qs, u"OPTIONS"_qs, u"EXIT STATUS"_qs, u"SEE ALSO"_qs})
                QVERIFY2(shown.contains(u'\n' + heading + u'\n'), qPrintable(page.page + u": "_qs + heading));
            for (const QString &name : page.names)
                QVERIFY2(shown.contains(name), qPrintable(page.page + u": "_qs + name));
            if (page.page.endsWith(u"/sorvel.1"_qs)) {
                // Each command's options under it; -h/--help once, under OPTIONS.
                for (const Documented &d : options)
                    QVERIFY2(d.option == u"--help"_qs || shown.contains(u"  "_qs + d.option),
                             qPrintable(d.command + u' ' + d.option));
                QVERIFY(shown.contains(u"-h, --help"_qs));
                QVERIFY(!shown.contains(u"help-man"_qs));
            }
        }
    }

    void bashCompletes()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("bash")).isEmpty())
            QSKIP("bash is not installed");
        QTemporaryDir tmp;
        QVERIFY(QDir(tmp.path()).mkpath(QStringLiteral("photos")));
        QVERIFY(QDir(tmp.path()).mkpath(QStringLiteral("projects")));
        QFile file(tmp.filePath(QStringLiteral("plan.txt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        const QString bash = cliDocs + u"/bash/sorvel"_qs;
        const QString at = tmp.path();
        auto sorvelWords = [&](std::initializer_list<const char *> words) {
            QStringList list{QStringLiteral("sorvel")};
            for (const char *w : words)
                list << QString::fromUtf8(w);
            return bashReplies(bash, u"_sorvel"_qs, list, at);
        };

        QCOMPARE(sorvelWords({"sc"}), QStringList{u"scan"_qs});
        QCOMPARE(sorvelWords({"scan", "--mi"}), QStringList{u"--min-size"_qs});
        QCOMPARE(sorvelWords({"--ver"}), QStringList{u"--version"_qs});
        // Where a folder goes, folders only; where any path goes, files too.
        QCOMPARE(sorted(sorvelWords({"scan", "p"})), QStringList({"photos", "projects"}));
        QCOMPARE(sorted(sorvelWords({"scan", "--json", "--exclude", "p"})), QStringList({"photos", "projects"}));
        QCOMPARE(sorvelWords({"scan", "--exclude", "=", "ph"}), QStringList{u"photos"_qs});
        QCOMPARE(sorvelWords({"remove", "pl"}), QStringList{u"plan.txt"_qs});
        // A value from a fixed set, and nothing offered for a number.
        QCOMPARE(sorvelWords({"completion", "z"}), QStringList{u"zsh"_qs});
        QCOMPARE(sorvelWords({"help", "tw"}), QStringList{u"twins"_qs});
        QVERIFY(sorvelWords({"junk", "--contents", ""}).contains(u"caches"_qs));
        QCOMPARE(sorvelWords({"scan", "--top", ""}), QStringList());

        const QString appBash = appDocs + u"/bash/sorvel-cleaner"_qs;
        QCOMPARE(bashReplies(appBash, u"_sorvel_cleaner"_qs, {u"sorvel-cleaner"_qs, u"-sec"_qs}, at),
                 QStringList{u"-section"_qs});
        QCOMPARE(bashReplies(appBash, u"_sorvel_cleaner"_qs, {u"sorvel-cleaner"_qs, u"-section"_qs, u"l"_qs}, at),
                 QStringList{u"largest"_qs});
        QCOMPARE(bashReplies(appBash, u"_sorvel_cleaner"_qs, {u"sorvel-cleaner"_qs, u"-scan"_qs, u"pr"_qs}, at),
                 QStringList{u"projects"_qs});
    }

    void zshAndFishReadTheirScripts_data()
    {
        QTest::addColumn<QString>("shell");
        QTest::addColumn<QString>("script");
        QTest::newRow("zsh sorvel") << "zsh" << cliDocs + u"/zsh/_sorvel"_qs;
        QTest::newRow("zsh sorvel-cleaner") << "zsh" << appDocs + u"/zsh/_sorvel-cleaner"_qs;
        QTest::newRow("fish sorvel") << "fish" << cliDocs + u"/fish/sorvel.fish"_qs;
        QTest::newRow("fish sorvel-cleaner") << "fish" << appDocs + u"/fish/sorvel-cleaner.fish"_qs;
    }
    void zshAndFishReadTheirScripts()
    {
        QFETCH(QString, shell);
        QFETCH(QString, script);
        if (QStandardPaths::findExecutable(shell).isEmpty())
            QSKIP(qPrintable(shell + u" is not installed: its completion script is not checked"_qs));
        const CliOutcome o = run(shell, {QStringLiteral("-n"), script});
        QCOMPARE(o.status, 0);
        QVERIFY2(o.err.isEmpty(), o.err.constData());
        // The installed script is what the tool prints.
        if (script.endsWith(u"/_sorvel"_qs) || script.endsWith(u"/sorvel.fish"_qs))
            QCOMPARE(sorvel({QStringLiteral("completion"), shell}).out, readFile(script).toUtf8());
        // fish answers a completion without a terminal.
        if (shell == u"fish"_qs) {
            const bool app = script.endsWith(u"sorvel-cleaner.fish"_qs);
            const QString line = app ? u"sorvel-cleaner -section d"_qs : u"sorvel scan --mi"_qs;
            const CliOutcome asked = run(shell, {QStringLiteral("--no-config"), QStringLiteral("-c"),
                                                 QStringLiteral("source '%1'; complete -C'%2'").arg(script, line)});
            QCOMPARE(text(asked.out).section(u'\t', 0, 0), app ? u"duplicates"_qs : u"--min-size"_qs);
        }
    }
};

SORVEL_TEST(TestCommandLine);
#include "tst_commandline.moc"
