// ScanControls: the state and texts of the top bar's scan controls. Owns the
// scan's running flag, target and file count as Shell hands them in; owned by
// Shell, on the GUI thread.
#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QString>

// The state of the top bar's scan controls. While a scan runs: the loader,
// "Reading <target>", the file count and Stop. Otherwise "Scan", which opens
// the scan menu, and, once there is a target, "Rescan <target>".
//
// Rescan is enabled when there is a target and no scan runs; Stop only while a
// scan runs. The target reads as "your disk" when it is the root of the file
// system (or not known).
class ScanControls : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(bool isScanning READ isScanning WRITE setIsScanning NOTIFY changed)
    // The target in its lossless text form; empty when there is none.
    Q_PROPERTY(QString scanTarget READ scanTarget WRITE setScanTarget NOTIFY changed)
    Q_PROPERTY(qint64 filesScanned READ filesScanned WRITE setFilesScanned NOTIFY changed)
    Q_PROPERTY(bool compact READ compact WRITE setCompact NOTIFY changed)

    Q_PROPERTY(bool canStop READ canStop NOTIFY changed)
    Q_PROPERTY(bool canRescan READ canRescan NOTIFY changed)
    Q_PROPERTY(QString targetName READ targetName NOTIFY changed)
    Q_PROPERTY(QString readingText READ readingText NOTIFY changed)
    Q_PROPERTY(QString rescanText READ rescanText NOTIFY changed)
    Q_PROPERTY(QString filesText READ filesText NOTIFY changed)

public:
    using QObject::QObject;

    bool isScanning() const { return m_scanning; }
    void setIsScanning(bool value);
    QString scanTarget() const { return m_target; }
    void setScanTarget(const QString &value);
    qint64 filesScanned() const { return m_files; }
    void setFilesScanned(qint64 value);
    bool compact() const { return m_compact; }
    void setCompact(bool value);

    bool canStop() const { return m_scanning; }
    bool canRescan() const { return !m_scanning && !m_target.isEmpty(); }
    QString targetName() const;
    QString readingText() const;
    QString rescanText() const;
    QString filesText() const;

    // "12,345" in the long form; "12K", "1.2M" in the short one.
    static QString count(qint64 files, bool compact);
    static bool isWholeDisk(const QByteArray &path);

Q_SIGNALS:
    void changed();

private:
    template <typename T>
    void set(T &field, const T &value)
    {
        if (field == value)
            return;
        field = value;
        Q_EMIT changed();
    }

    bool m_scanning = false;
    QString m_target;
    qint64 m_files = 0;
    bool m_compact = false;
};
