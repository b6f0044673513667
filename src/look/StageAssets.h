// StageAssets: where the look's bitmap artwork is found. The build draws it
// into the resources at :/sorvel/artwork (see artwork/ArtworkMaker.cpp). Made
// by QML as a singleton on the GUI thread; the puff lists are looked up once
// each, on first use.
#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

// The steam puffs and the other images of the look, as URLs an Image takes. A
// missing image is left out of a list, or gives an empty URL, without a word:
// the effects then just draw less.
//
//   Repeater { model: StageAssets.puffs(Look.dark) ... }
//   Image { source: StageAssets.url("honey-glow.png") }
class StageAssets : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    // How many puffs there are of each tone, at most.
    static constexpr int puffCount = 6;

    // Looks in the resources the build fills.
    explicit StageAssets(QObject *parent = nullptr);
    // Looks in `folder` instead: a resource folder (":/...") or one on disk.
    explicit StageAssets(const QString &folder, QObject *parent = nullptr);

    // The URLs of the puffs that exist for a dark ground (white steam) or a
    // light one (blue-grey steam with a darker rim), in their fixed order. As
    // text: QML's compiled bindings keep a string list whole in a var.
    Q_INVOKABLE QStringList puffs(bool dark);
    // One image by its file name ("honey-glow.png"); empty when it is missing.
    Q_INVOKABLE QUrl url(const QString &name) const;

private:
    QString m_folder;
    std::optional<QStringList> m_darkPuffs;
    std::optional<QStringList> m_lightPuffs;
};
