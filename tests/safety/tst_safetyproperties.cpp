#include "TestMain.h"

#include "core/Paths.h"
#include "safety/RiskCatalog.h"
#include "safety/SafetyGuard.h"

#include <QRandomGenerator>

// Properties of the guard and the catalogue over many generated paths: random
// mixes of the tables' own entries with names, ".", "..", doubled and trailing
// slashes and tildes.
class TestSafetyProperties : public QObject
{
    Q_OBJECT

    static constexpr int pathsPerProfile = 10000;

    static QList<QByteArray> pieces(const SafetyProfile &profile)
    {
        QList<QByteArray> out = {".",       "..",         "",        "~",           "a",          "x.key",
                                 "id_rsa",  ".env",       "Caches",  "com.apple.x", "Library",    "node_modules",
                                 ".ssh",    ".sshfoo",    "media",   "run",         "Volumes",    "usr",
                                 "bin",     "Downloads",  "App.dmg", ".git",        "Containers", ".cache",
                                 ".config", "Docker.raw", "x.vmdk",  "~user",       "\xc3\xa9",   "e\xcc\x81"};
        // The tables' own entries, split into pieces.
        auto addPath = [&](const QByteArray &path) {
            for (const QByteArray &piece : path.split('/'))
                if (!piece.isEmpty() && !out.contains(piece))
                    out.append(piece);
        };
        for (const QByteArray &entry : profile.exact())
            addPath(entry);
        for (const SafetyProfile::Prefix &prefix : profile.prefixes())
            addPath(prefix.entry);
        return out;
    }

    // Starts from a table entry, "~" or "/", then adds pieces with odd slashes.
    static QByteArray generate(QRandomGenerator &random, const SafetyProfile &profile, const QList<QByteArray> &parts,
                               const QList<QByteArray> &starts)
    {
        QByteArray path = starts[random.bounded(starts.size())];
        const int count = random.bounded(6);
        for (int i = 0; i < count; ++i) {
            path += random.bounded(5) == 0 ? "//" : "/";
            path += parts[random.bounded(parts.size())];
        }
        if (random.bounded(4) == 0)
            path += random.bounded(2) ? "/" : "//";
        if (random.bounded(10) == 0 && path.startsWith(profile.home()))
            path = "~" + path.mid(profile.home().size());
        return path;
    }

    static QList<QByteArray> starts(const SafetyProfile &profile)
    {
        QList<QByteArray> out = {
            "/", "~", "~/", "", "relative", "/Volumes/Backup", "/media/alice/USB", "/run/media/alice/USB", "/mnt/usb"};
        for (const QByteArray &entry : profile.exact())
            out.append(entry);
        for (const SafetyProfile::Prefix &prefix : profile.prefixes())
            out.append(prefix.entry);
        return out;
    }

private slots:
    void properties_data()
    {
        QTest::addColumn<bool>("linux");
        QTest::newRow("macOS") << false;
        QTest::newRow("Linux") << true;
    }

    void properties()
    {
        QFETCH(bool, linux);
        const SafetyProfile profile(linux ? Platform::linux : Platform::macOS,
                                    linux ? QByteArray("/home/sample") : QByteArray("/Users/sample"));
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        const QList<QByteArray> parts = pieces(profile);
        const QList<QByteArray> first = starts(profile);

        int locked = 0;
        int beneath = 0;
        for (int i = 0; i < pathsPerProfile; ++i) {
            const QByteArray path = generate(random, profile, parts, first);
            const QByteArray normal = profile.normalize(path);
            const auto context = [&] {
                return QStringLiteral("seed %1, path %2").arg(seed).arg(QString::fromUtf8(path)).toUtf8();
            };

            // normalize is idempotent and canonical.
            QVERIFY2(profile.normalize(normal) == normal, context().constData());
            QVERIFY2(Paths::normalize(Paths::normalize(path)) == Paths::normalize(path), context().constData());
            QVERIFY2(normal.startsWith('/') && !normal.contains("//") && !normal.contains("/./") &&
                         !normal.contains("/../") && !normal.endsWith("/.") && !normal.endsWith("/..") &&
                         (normal == "/" || !normal.endsWith('/')),
                     context().constData());

            // The verdicts depend on the normalised text alone.
            const bool isProtected = SafetyGuard::isProtected(path, profile);
            QVERIFY2(isProtected == SafetyGuard::isProtected(normal, profile), context().constData());

            // A protected path that is not contents-only is always locked,
            // whatever the caller says about it.
            const bool isDirectory = random.bounded(2);
            const bool isBuildOutput = random.bounded(2);
            const Risk risk = RiskCatalog::assess(path, isDirectory, isBuildOutput, 100, profile);
            if (isProtected && !SafetyGuard::isContentsOnly(path, profile)) {
                QVERIFY2(risk.level == Risk::Level::locked, context().constData());
                QVERIFY2(risk.why == SafetyGuard::reason(path, profile), context().constData());
                ++locked;
            } else {
                QVERIFY2(risk.level != Risk::Level::locked, context().constData());
            }

            // Whatever lies beneath a protected prefix is protected, except what
            // lies on a volume mounted below a system folder.
            const auto &prefixes = profile.prefixes();
            const SafetyProfile::Prefix &prefix = prefixes[random.bounded(prefixes.size())];
            const QByteArray below = profile.normalize(prefix.entry + "/" + path);
            if (below.startsWith(prefix.probe)) {
                const bool exempt = prefix.system && profile.isInsideMount(below);
                QVERIFY2(SafetyGuard::isProtected(below, profile) || exempt,
                         qPrintable(QStringLiteral("seed %1, path %2").arg(seed).arg(QString::fromUtf8(below))));
                ++beneath;
            }
        }
        // The generator does reach the protected tables.
        QVERIFY(locked > pathsPerProfile / 20);
        QVERIFY(beneath > pathsPerProfile / 2);
    }
};

SORVEL_TEST(TestSafetyProperties);
#include "tst_safetyproperties.moc"
